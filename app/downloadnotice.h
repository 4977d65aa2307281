// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QWidget>

class QAbstractButton;
class QLabel;
class QMainWindow;
class QNetworkAccessManager;
class QNetworkReply;

// Says at the right end of the status bar that structure images are on their way, and lets the user
// cancel them. Owned by the main window, whose layout it leaves as it is.
class DownloadNotice final : public QWidget
{
    Q_OBJECT

public:
    // For the window with the button that starts the downloads, buttonDownload, and the manager
    // that runs them.
    explicit DownloadNotice(QMainWindow *window);

private:
    [[nodiscard]] QList<QNetworkReply *> running() const;
    void follow();
    void cancel();
    void showRunning();

    QNetworkAccessManager *m_manager;
    QAbstractButton *m_starter;
    QLabel *m_label;
    QAbstractButton *m_cancel;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QWidget>

class QAbstractButton;
class QLabel;
class QMainWindow;
class QNetworkAccessManager;
class QNetworkReply;

// Shows at the right end of the status bar that structure images are being downloaded, with a
// button to cancel. Owned by the main window, whose layout does not change.
class DownloadNotice final : public QWidget
{
    Q_OBJECT

public:
    // The window must have the button buttonDownload and the network manager that runs the
    // downloads.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/endsignals.h"

#include <QSessionManager>
#include <QTimer>

class MainWindow;

// Handles quit requests from signals and the desktop's session. Unsaved changes bring up the same
// question as closing the window; without any, the editor ends at once.
class EndRequests final : public QObject
{
    Q_OBJECT

public:
    // The window must outlive this object.
    explicit EndRequests(MainWindow *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void endOrAsk();
    void answerSession(QSessionManager &session);
    void setAgreed(bool agreed);

    MainWindow *m_window;
    EndSignals m_signals;
    QTimer m_later; // asks again when the open dialog is closed
    bool m_isAsking = false;
    bool m_isAgreed = false; // the user lets the session end and gives up unsaved changes
};

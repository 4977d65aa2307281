// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/endsignals.h"

#include <QSessionManager>
#include <QTimer>

class MainWindow;

// Answers what asks the editor from outside to end: signals, and the desktop's session when it
// ends. Nothing is lost without the question that closing the window asks; without changes there is
// none, and the editor ends at once.
class EndRequests final : public QObject
{
    Q_OBJECT

public:
    // For this window, which must outlive it.
    explicit EndRequests(MainWindow *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void endOrAsk();
    void answerSession(QSessionManager &session);
    void setAgreed(bool agreed);

    MainWindow *m_window;
    EndSignals m_signals;
    QTimer m_later; // asks once what is open now is over
    bool m_isAsking = false;
    bool m_isAgreed = false; // the user has let the session end, and with it what was not saved
};

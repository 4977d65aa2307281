// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/endrequests.h"

#include "app/mainwindow.h"

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QThread>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

// Whether a dialog, a menu or a drag has the user's attention, and code of the program waits for
// its outcome: a file dialog's save has not been made yet, for example.
bool isBusy()
{
    return QApplication::activeModalWidget() || QThread::currentThread()->loopLevel() > 1;
}

void showDialog()
{
    QWidget *dialog = QApplication::activeModalWidget();
    if (!dialog)
        return;
    dialog->raise();
    dialog->activateWindow();
}

} // namespace

EndRequests::EndRequests(MainWindow *window) : m_window(window)
{
    m_later.setSingleShot(true);
    m_later.setInterval(100ms);
    // To look for changes commits fields and reads points: not ten times a second.
    connect(&m_later, &QTimer::timeout, this, [this] {
        if (isBusy())
            m_later.start();
        else
            endOrAsk();
    });
    connect(&m_signals, &EndSignals::received, this, [this] {
        showDialog();
        endOrAsk();
    });
    // The session waits for the return.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &EndRequests::answerSession,
            Qt::DirectConnection);
}

void EndRequests::endOrAsk()
{
    // A request that comes while the question is open is the same one: whoever has answered Cancel
    // shall not be asked again at once.
    if (m_isAsking)
        return;
    if (m_isAgreed || !m_window->hasUnsavedChanges()) {
        QCoreApplication::exit();
    } else if (isBusy()) {
        m_later.start();
    } else {
        const QScopedValueRollback asking(m_isAsking, true);
        m_window->close();
    }
}

void EndRequests::answerSession(QSessionManager &session)
{
    setAgreed(false);
    if (!m_window->hasUnsavedChanges())
        return;
    // The answer to the question that is open is awaited first. Where none may be asked, the
    // session learns that there is something to be lost: it may stay, or say so.
    if (m_isAsking) {
        showDialog();
        session.cancel();
        return;
    }
    const QScopedValueRollback asking(m_isAsking, true);
    const bool mayAsk = session.allowsInteraction() || session.allowsErrorInteraction();
    setAgreed(mayAsk && m_window->promptToSaveChanges());
    if (!m_isAgreed)
        session.cancel();
    session.release();
}

// Watches the application as long as the agreement holds.
void EndRequests::setAgreed(bool agreed)
{
    m_isAgreed = agreed;
    if (agreed)
        qApp->installEventFilter(this);
    else
        qApp->removeEventFilter(this);
}

bool EndRequests::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Quit:
        // The end of the session. The windows would be closed one by one, and the question asked
        // again.
        if (watched == qApp) {
            QCoreApplication::exit();
            return true;
        }
        break;
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::InputMethod:
    case QEvent::Drop:
        // The work goes on: another program has kept the session from ending.
        setAgreed(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

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

// Whether a dialog, a menu or a drag is open whose outcome the program waits for: a file dialog's
// save has not been made yet, for example.
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
    // Looking for changes commits fields and reads points, which is too much for ten times a
    // second.
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
    // The session waits until this returns.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &EndRequests::answerSession,
            Qt::DirectConnection);
}

void EndRequests::endOrAsk()
{
    // A request that comes while the question is open is the same one: a user who answers Cancel is
    // not asked twice.
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
    // An open question is answered first. If the session allows no question, cancel() tells it that
    // there are unsaved changes.
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

// Watches the application while the user agrees to the end of the session.
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
        // The session ends. Qt would close the windows one by one and ask again.
        if (watched == qApp) {
            QCoreApplication::exit();
            return true;
        }
        break;
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::InputMethod:
    case QEvent::Drop:
        // The user works on: another program has stopped the end of the session.
        setAgreed(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

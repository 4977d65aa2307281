// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/closedboxes.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMessageBox>

#include <utility>

ClosedBoxes::ClosedBoxes()
{
    QCoreApplication::instance()->installEventFilter(this);
}

QStringList ClosedBoxes::take()
{
    return std::exchange(m_seen, {});
}

bool ClosedBoxes::eventFilter(QObject *watched, QEvent *event)
{
    auto *box = event->type() == QEvent::Show ? qobject_cast<QMessageBox *>(watched) : nullptr;
    if (box) {
        m_seen.append(box->windowTitle() + QLatin1String(": ") + box->text());
        // The box waits for its answer in an event loop that starts after this.
        QMetaObject::invokeMethod(box, &QDialog::reject, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

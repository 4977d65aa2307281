// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/wheelguard.h"

#include <QEvent>
#include <QWidget>

WheelGuard::WheelGuard(QWidget *widget) : QObject(widget)
{
    widget->setFocusPolicy(Qt::StrongFocus);
    widget->installEventFilter(this);
}

bool WheelGuard::eventFilter(QObject *watched, QEvent *event)
{
    const auto *widget = qobject_cast<QWidget *>(watched);
    if (event->type() != QEvent::Wheel || !widget || widget->hasFocus())
        return QObject::eventFilter(watched, event);
    event->ignore(); // Qt passes it to the parent
    return true;
}

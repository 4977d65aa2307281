// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/tabstepping.h"

#include <QKeyEvent>
#include <QTabBar>

namespace
{

bool isStep(const QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent *>(event)->key();
    return key == Qt::Key_Left || key == Qt::Key_Right;
}

} // namespace

TabStepping::TabStepping(QTabBar *tabs) : QObject(tabs) {}

bool TabStepping::eventFilter(QObject *watched, QEvent *event)
{
    auto *tabs = qobject_cast<QTabBar *>(watched);
    if (!tabs || !isStep(event))
        return QObject::eventFilter(watched, event);
    watched->event(event);
    tabs->setFocus(Qt::OtherFocusReason);
    return true;
}

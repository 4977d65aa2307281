// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/tabchain.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QWidget>

namespace
{

// Of an area's sub-windows, in tabs, only the current one can be seen.
bool isCovered(const QWidget *widget)
{
    for (; widget && !widget->isWindow(); widget = widget->parentWidget()) {
        const auto *subWindow = qobject_cast<const QMdiSubWindow *>(widget);
        if (subWindow && subWindow->mdiArea())
            return subWindow->mdiArea()->currentSubWindow() != subWindow;
    }
    return false;
}

bool takesTab(const QWidget *widget)
{
    return (widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy() && widget->isVisible()
           && widget->isEnabled() && !qobject_cast<const QMdiSubWindow *>(widget)
           && !isCovered(widget);
}

} // namespace

bool moveFocusByTab(const QWidget *window, bool next)
{
    const auto follow = [next](const QWidget *widget) {
        return next ? widget->nextInFocusChain() : widget->previousInFocusChain();
    };
    const QWidget *from = window->focusWidget() ? window->focusWidget() : window;
    for (QWidget *to = follow(from); to && to != from; to = follow(to)) {
        if (to->window() == window && takesTab(to)) {
            to->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    }
    return false;
}

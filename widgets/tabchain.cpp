// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/tabchain.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QWidget>

#include <algorithm>

namespace
{

// Only the current sub-window of a tabbed area is visible.
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

// How far to scroll so that the stretch from first to last is visible within 0 to size; if it is
// longer, its beginning.
int distance(int first, int last, int size)
{
    if (first < 0 || last - first >= size)
        return first;
    return std::max(0, last - size + 1);
}

} // namespace

void scrollIntoSight(const QWidget *widget)
{
    const QMdiArea *area = nullptr;
    for (const QWidget *around = widget; around && !area; around = around->parentWidget()) {
        if (const auto *subWindow = qobject_cast<const QMdiSubWindow *>(around))
            area = subWindow->mdiArea();
    }
    if (!area)
        return;
    const QWidget *viewport = area->viewport();
    const QRect place(widget->mapTo(viewport, QPoint()), widget->size());
    QScrollBar *horizontal = area->horizontalScrollBar();
    QScrollBar *vertical = area->verticalScrollBar();
    horizontal->setValue(horizontal->value()
                         + distance(place.left(), place.right(), viewport->width()));
    vertical->setValue(vertical->value()
                       + distance(place.top(), place.bottom(), viewport->height()));
}

bool moveFocusByTab(const QWidget *window, bool next)
{
    const auto follow = [next](const QWidget *widget) {
        return next ? widget->nextInFocusChain() : widget->previousInFocusChain();
    };
    const QWidget *from = window->focusWidget() ? window->focusWidget() : window;
    for (QWidget *to = follow(from); to && to != from; to = follow(to)) {
        if (to->window() == window && takesTab(to)) {
            to->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            scrollIntoSight(to);
            return true;
        }
    }
    return false;
}

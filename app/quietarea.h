// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

class QMdiArea;
class QMdiSubWindow;
class QTabBar;
class QWidget;

// Sub-windows by the hundred. Each one that is shown, and each successor of one that is closed,
// becomes the active one: the area lays it out at full size, gives it the focus and visits all the
// others. And with each that comes or goes it has all tabs laid out that are shown. So the time
// would grow with the square of their number.

// The tabs of an area, none of which is shown for as long as it lives but the current one.
class HiddenTabs
{
    Q_DISABLE_COPY_MOVE(HiddenTabs)

public:
    explicit HiddenTabs(const QMdiArea *area);
    ~HiddenTabs();

private:
    QTabBar *m_tabs;
};

// For as long as it lives, sub-windows that are added to an area and shown do not become active and
// are not painted, and their tabs are not shown.
class QuietArea
{
    Q_DISABLE_COPY_MOVE(QuietArea)

public:
    explicit QuietArea(QMdiArea *area);
    ~QuietArea();

private:
    QMdiArea *m_area;
    HiddenTabs m_tabs;
};

// Adds a widget to an area in a sub-window of the default flags. QMdiArea::addSubWindow() itself
// takes longer the more the area has.
QMdiSubWindow *addSubWindow(QMdiArea *area, QWidget *widget);

// Shows a sub-window that was just added to its area; it becomes active unless the area is quiet.
void showSubWindow(QMdiSubWindow *subWindow);

// Closes all sub-windows of an area, the current one last, so that none becomes active on the way.
void closeQuietly(QMdiArea *area);

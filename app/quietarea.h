// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

class QMdiArea;
class QMdiSubWindow;
class QTabBar;
class QWidget;

// QMdiArea activates each sub-window that is shown, and the successor of each that is closed: it
// lays it out at full size, gives it the focus and visits all others. It also lays out all visible
// tabs whenever a sub-window comes or goes. With many sub-windows the time grows with the square of
// their number, so bulk changes suppress both.

// Hides all tabs of an area but the current one for as long as it lives.
class HiddenTabs
{
    Q_DISABLE_COPY_MOVE(HiddenTabs)

public:
    explicit HiddenTabs(const QMdiArea *area);
    ~HiddenTabs();

private:
    QTabBar *m_tabs;
};

// For as long as it lives, sub-windows that are added to an area and shown do not become active,
// are not painted, and have no visible tab.
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

// Adds a widget to an area in a sub-window with the default flags. QMdiArea::addSubWindow() takes
// longer the more sub-windows there are.
QMdiSubWindow *addSubWindow(QMdiArea *area, QWidget *widget);

// Shows a sub-window that was just added to its area; it becomes active unless the area is quiet.
void showSubWindow(QMdiSubWindow *subWindow);

// Closes all sub-windows of an area, the current one last, so that no other becomes active in
// between.
void closeQuietly(QMdiArea *area);

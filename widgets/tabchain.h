// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

// Scrolls the area of sub-windows in which a widget is, if it is in one, until as much of it as has
// room can be seen.
void scrollIntoSight(const QWidget *widget);

// What Tab and Shift+Tab do in a window with an area of sub-windows: the keyboard goes to the next
// or previous widget of the whole window that takes it. The toolkit would keep it within a
// sub-window for good and, from outside, turn to the first one instead of the one that is shown.
// What it reaches is scrolled into sight. False, and nothing done, if there is no such widget.
bool moveFocusByTab(const QWidget *window, bool next);

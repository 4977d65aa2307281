// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

// Scrolls the area of sub-windows that contains a widget, if any, until as much of it as possible
// is visible.
void scrollIntoSight(const QWidget *widget);

// Handles Tab and Shift+Tab in a window with an area of sub-windows: the keyboard goes to the next
// or previous widget of the whole window that accepts it, which is scrolled into sight. Qt would
// never leave a sub-window and, from outside, would enter the first one instead of the visible one.
// False, and nothing done, if there is no such widget.
bool moveFocusByTab(const QWidget *window, bool next);

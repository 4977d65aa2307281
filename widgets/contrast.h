// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>

class QColor;
class QWidget;

// Text is readable from this contrast on, as the Web Content Accessibility Guidelines 2.1 set it
// for text of normal size (criterion 1.4.3).
inline constexpr double leastTextContrast = 4.5;

// The contrast of two opaque colours as those guidelines define it, from 1 to 21.
[[nodiscard]] double contrast(const QColor &one, const QColor &other);

// The colours of selected text in palette, and only these: the background as it is, or moved away
// from the text's colour as far as the text needs it to be readable.
[[nodiscard]] QPalette readableSelection(const QPalette &palette);

// The palette with which check boxes have an outline that can be made out on palette's windows, and
// only what that needs: Qt's own style draws the outline by the colour of windows, which is too
// near to it, in dark themes most of all.
[[nodiscard]] QPalette outlinedBoxes(const QPalette &palette);

// Keeps the texts and the lines of a widget dark whatever the desktop's theme is. For a widget
// whose style sheet fixes a light background but no colour of the text: a dark theme would write
// white on white there. The same for the menus that come up from the widget, which its style sheet
// reaches.
void keepTextDark(QWidget *widget);

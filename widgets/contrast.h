// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>

class QColor;
class QWidget;

// The least contrast of readable text of normal size (Web Content Accessibility Guidelines 2.1,
// criterion 1.4.3).
inline constexpr double leastTextContrast = 4.5;

// The contrast of two opaque colours by those guidelines, from 1 to 21.
[[nodiscard]] double contrast(const QColor &one, const QColor &other);

// The colours of selected text for palette, and only these: the background moves away from the
// text's colour as far as reading requires.
[[nodiscard]] QPalette readableSelection(const QPalette &palette);

// The palette with which check boxes have a visible outline on palette's windows, and only what
// that needs: Qt's Fusion style derives the outline from the colour of windows and comes too near
// to it, most of all in dark themes.
[[nodiscard]] QPalette outlinedBoxes(const QPalette &palette);

// Keeps the texts and lines of a widget and its menus dark in every theme. For a widget whose style
// sheet fixes a light background but no text colour: a dark theme would write white on white.
void keepTextDark(QWidget *widget);

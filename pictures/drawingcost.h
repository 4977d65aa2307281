// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

class QSvgRenderer;

// Whether painting a drawing at a size, in pixels, takes seconds at most: by the areas and corners
// of all that it paints, and not by the clock, so that it is the same everywhere.
[[nodiscard]] bool isCheapDrawing(QSvgRenderer &renderer, QSize size);

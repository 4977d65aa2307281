// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

class QSvgRenderer;

// Whether painting a drawing at a size, in pixels, takes a few seconds at most. The areas and
// corners of all shapes decide, not the clock, so that the answer is the same everywhere.
[[nodiscard]] bool isCheapDrawing(QSvgRenderer &renderer, QSize size);

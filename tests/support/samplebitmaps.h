// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/samplepictures.h"

#include <QSize>

// The parts of all sample formats, and the samples of BMP and ICO files.

inline constexpr QSize sampleSize(13, 9); // no multiple of what lines are filled up to

// The lowest size bytes of value, the lowest first.
[[nodiscard]] QByteArray little(quint32 value, int size);

[[nodiscard]] QImage coloured();

// Of 16 colours.
[[nodiscard]] QImage indexed();

[[nodiscard]] QList<SamplePicture> sampleBitmaps();
[[nodiscard]] QList<SamplePicture> sampleIcons();

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

// Whether two images show the same: equal size and equal pixels in one format. The pixel format, a
// colour-space tag, the colour under full transparency and texts kept with the picture do not
// count. Two null images are the same picture.
[[nodiscard]] bool isSamePicture(const QImage &left, const QImage &right);

// Whether decodePicture() takes what encodePng() makes of image: one that it would refuse as too
// large would be lost with the next load.
[[nodiscard]] bool canBeReloaded(const QImage &image);

// The image in the bytes of an image file, whose format is recognised by its content: any that Qt
// decodes here; an SVG file is drawn at its own size (decodeDrawing()). A null image if there is
// none, if it is too large to decode safely, if a PNG, JPEG, GIF or WebP file is cut off or damaged
// so that it shows, or if its decoder refuses it. The same bytes always give the same pixels.
[[nodiscard]] QImage decodePicture(const QByteArray &bytes);

// The bytes of a PNG file of image; empty for a null image.
[[nodiscard]] QByteArray encodePng(const QImage &image);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

// Whether two images look the same: equal size and equal pixels in one format. The pixel format,
// the colour space, the colour under full transparency and texts in the file do not count. Two null
// images are equal.
[[nodiscard]] bool isSamePicture(const QImage &left, const QImage &right);

// Whether decodePicture() accepts the PNG of image: a larger one would be lost at the next load.
[[nodiscard]] bool canBeReloaded(const QImage &image);

// The image in the bytes of an image file, recognised by its content: any format that Qt decodes
// here; an SVG file is drawn at its own size (decodeDrawing()). A null image if there is none, if
// it is too large to decode safely, if a PNG, JPEG, GIF or WebP file is cut off or visibly damaged,
// or if its decoder refuses it. The same bytes always give the same pixels.
[[nodiscard]] QImage decodePicture(const QByteArray &bytes);

// A PNG file of image; empty for a null image.
[[nodiscard]] QByteArray encodePng(const QImage &image);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

// The toolkit's name of the format of a picture file, "png" for instance, by how it begins; null if
// it is none of those that are taken, or if the file is cut off or damaged as far as its format can
// tell without decoding it. Only formats are taken of which that can be told: PNG, JPEG, GIF, BMP,
// PBM, PGM, PPM, WebP, TIFF and ICO. Whether the toolkit has a decoder for it is another question.
[[nodiscard]] const char *pictureFormat(QByteArrayView bytes);

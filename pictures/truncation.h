// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

// Whether a picture file is complete, as far as its format tells without decoding. These are the
// formats whose decoders check this late, with all pixels in memory, or never. Each function
// expects the first bytes of its format, takes at most one pass and no memory. Bytes after the end
// do not count.

// Chunks up to the end, pixels with their checksums: https://www.w3.org/TR/png-3/
[[nodiscard]] bool isWholePng(QByteArrayView bytes);

// Segments and scans up to the end marker: https://www.w3.org/Graphics/JPEG/itu-t81.pdf, annex B
[[nodiscard]] bool isWholeJpeg(QByteArrayView bytes);

// Blocks up to the trailer: https://www.w3.org/Graphics/GIF/spec-gif89a.txt
[[nodiscard]] bool isWholeGif(QByteArrayView bytes);

// Chunks as long as the header says: https://developers.google.com/speed/webp/docs/riff_container
[[nodiscard]] bool isWholeWebp(QByteArrayView bytes);

// All parts, and all pixels of run-length coded parts:
// https://en.wikipedia.org/wiki/Apple_Icon_Image_format
[[nodiscard]] bool isWholeIcns(QByteArrayView bytes);

// No loops, in which the decoder may never end: http://www.libpng.org/pub/mng/spec/
[[nodiscard]] bool isMngWithoutLoops(QByteArrayView bytes);

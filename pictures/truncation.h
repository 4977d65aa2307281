// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

// Whether the file of a picture is all there, as far as its format can tell without decoding it:
// for those formats whose decoders look at that when they have all pixels in memory, or never. Each
// is asked about bytes that begin as files of its format do, takes at most a pass over them and no
// memory. Bytes after the end do not count.

// Chunks up to the end, the pixels with their checksums: https://www.w3.org/TR/png-3/
[[nodiscard]] bool isWholePng(QByteArrayView bytes);

// Segments and scans up to the end marker: https://www.w3.org/Graphics/JPEG/itu-t81.pdf, annex B
[[nodiscard]] bool isWholeJpeg(QByteArrayView bytes);

// Blocks up to the trailer: https://www.w3.org/Graphics/GIF/spec-gif89a.txt
[[nodiscard]] bool isWholeGif(QByteArrayView bytes);

// Chunks as long as the header says: https://developers.google.com/speed/webp/docs/riff_container
[[nodiscard]] bool isWholeWebp(QByteArrayView bytes);

// All parts, and those in runs with all their pixels:
// https://en.wikipedia.org/wiki/Apple_Icon_Image_format
[[nodiscard]] bool isWholeIcns(QByteArrayView bytes);

// Without a loop, in which the decoder may go round for ever: http://www.libpng.org/pub/mng/spec/
[[nodiscard]] bool isMngWithoutLoops(QByteArrayView bytes);

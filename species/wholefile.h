// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

// Whether the file of a picture is all there, as far as its format can tell without decoding it:
// what the toolkit's decoders look at when they have all pixels in memory, or never. Each is asked
// about bytes that begin as files of its format do, takes at most a pass over them and no memory.
// Bytes after the end do not count.

// Chunks up to the end, the pixels with their checksums: https://www.w3.org/TR/png-3/
[[nodiscard]] bool isWholePng(QByteArrayView bytes);

// Segments and scans up to the end marker: https://www.w3.org/Graphics/JPEG/itu-t81.pdf, annex B
[[nodiscard]] bool isWholeJpeg(QByteArrayView bytes);

// Blocks up to the trailer: https://www.w3.org/Graphics/GIF/spec-gif89a.txt
[[nodiscard]] bool isWholeGif(QByteArrayView bytes);

// Chunks as long as the header says: https://developers.google.com/speed/webp/docs/riff_container
[[nodiscard]] bool isWholeWebp(QByteArrayView bytes);

// The headers, the palette and as many lines as the height says, or the runs up to their end:
// https://learn.microsoft.com/en-us/windows/win32/gdi/bitmap-storage
[[nodiscard]] bool isWholeBmp(QByteArrayView bytes);

// All pictures within the file, and the first, which is the one that is shown, whole:
// https://learn.microsoft.com/en-us/previous-versions/ms997538(v=msdn.10)
[[nodiscard]] bool isWholeIcon(QByteArrayView bytes);

// The header and as many values as its size says, in bytes or, up to 16 MB, in text:
// https://netpbm.sourceforge.net/doc/ppm.html
[[nodiscard]] bool isWholeAnymap(QByteArrayView bytes);

// The first directory, and all strips or tiles that it lists within the file:
// https://www.itu.int/itudoc/itu-t/com16/tiff-fx/docs/tiff6.pdf, with the long offsets of
// http://bigtiff.org/ too
[[nodiscard]] bool isWholeTiff(QByteArrayView bytes);

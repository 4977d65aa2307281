// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/pictureformat.h"

#include "species/wholefile.h"

namespace
{

struct Format {
    const char *name;
    QByteArrayView start; // a dot stands for any byte
    bool (*isWhole)(QByteArrayView bytes);
};

const Format formats[]{
    {"png", "\x89PNG\r\n\x1a\n", isWholePng},
    {"jpeg", "\xff\xd8\xff", isWholeJpeg},
    {"gif", "GIF87a", isWholeGif},
    {"gif", "GIF89a", isWholeGif},
    {"bmp", "BM", isWholeBmp},
    {"pbm", "P1", isWholeAnymap},
    {"pgm", "P2", isWholeAnymap},
    {"ppm", "P3", isWholeAnymap},
    {"pbm", "P4", isWholeAnymap},
    {"pgm", "P5", isWholeAnymap},
    {"ppm", "P6", isWholeAnymap},
    {"webp", "RIFF....WEBP", isWholeWebp},
    {"tiff", QByteArrayView("II*\0", 4), isWholeTiff},
    {"tiff", QByteArrayView("II+\0", 4), isWholeTiff},
    {"tiff", QByteArrayView("MM\0*", 4), isWholeTiff},
    {"tiff", QByteArrayView("MM\0+", 4), isWholeTiff},
    {"ico", QByteArrayView("\0\0\1\0", 4), isWholeIcon},
};

bool startsAs(QByteArrayView bytes, QByteArrayView start)
{
    if (bytes.size() < start.size())
        return false;
    for (qsizetype i = 0; i < start.size(); ++i) {
        if (start[i] != '.' && start[i] != bytes[i])
            return false;
    }
    return true;
}

} // namespace

const char *pictureFormat(QByteArrayView bytes)
{
    for (const Format &format : formats) {
        if (startsAs(bytes, format.start))
            return format.isWhole(bytes) ? format.name : nullptr;
    }
    return nullptr;
}

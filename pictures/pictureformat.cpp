// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/pictureformat.h"

#include "pictures/truncation.h"

namespace
{

struct Format {
    const char *name;
    QByteArrayView start;                            // a dot stands for any byte
    bool (*isWhole)(QByteArrayView bytes) = nullptr; // where the decoder has to be kept from it
};

const Format formats[]{
    {"png", "\x89PNG\r\n\x1a\n", isWholePng},
    {"jpeg", "\xff\xd8\xff", isWholeJpeg},
    {"gif", "GIF87a", isWholeGif},
    {"gif", "GIF89a", isWholeGif},
    {"webp", "RIFF....WEBP", isWholeWebp},
    {"icns", "icns", isWholeIcns},
    {"mng", "\x8aMNG\r\n\x1a\n", isMngWithoutLoops},
    {"xpm", "/* XPM"},
    {"xbm", "#define"},
    {"bmp", "BM"},
    {"pbm", "P1"},
    {"pgm", "P2"},
    {"ppm", "P3"},
    {"pbm", "P4"},
    {"pgm", "P5"},
    {"ppm", "P6"},
    {"tiff", QByteArrayView("II*\0", 4)},
    {"tiff", QByteArrayView("II+\0", 4)},
    {"tiff", QByteArrayView("MM\0*", 4)},
    {"tiff", QByteArrayView("MM\0+", 4)},
    {"ico", QByteArrayView("\0\0\1\0", 4)},
    // A cursor, and a picture that may be taken for one.
    {"ico", QByteArrayView("\0\0\2\0", 4)},
    {"tga", QByteArrayView("\0\0\2\0", 4)},
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

QByteArrayList pictureFormats(QByteArrayView bytes)
{
    QByteArrayList names;
    for (const Format &format : formats) {
        if (!startsAs(bytes, format.start))
            continue;
        if (format.isWhole && !format.isWhole(bytes))
            return {};
        names.append(format.name);
    }
    return names.isEmpty() ? QByteArrayList{QByteArray()} : names;
}

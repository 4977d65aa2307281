// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/filenumbers.h"
#include "species/pngchunks.h"
#include "species/wholefile.h"

#include <algorithm>
#include <array>
#include <optional>

namespace
{

constexpr quint64 fileHeaderSize = 14;
constexpr quint32 oldHeaderSize = 12; // of OS/2; the size says which header it is
constexpr quint32 headerSize = 40;
constexpr quint32 headerWithMasksSize = 108;
constexpr std::array<quint32, 5> headerSizes{oldHeaderSize, headerSize, 64, headerWithMasksSize,
                                             124};
constexpr quint32 runsOfBytes = 1;
constexpr quint32 runsOfNibbles = 2;
constexpr quint32 bitFields = 3;

// What the header of a bitmap says, which begins at a place of a file.
struct BitmapHeader {
    quint64 width;
    quint64 height;
    quint64 bits; // a pixel
    quint32 compression;
    quint64 pixels; // the place where header, palette and masks have ended

    [[nodiscard]] bool isRuns() const
    {
        return compression == runsOfBytes || compression == runsOfNibbles;
    }
};

quint64 magnitude(qint64 value)
{
    return static_cast<quint64>(value < 0 ? -value : value);
}

std::optional<BitmapHeader> oldBitmapHeader(const FileNumbers &file, quint64 place)
{
    const auto width = file.at<quint16>(place + 4);
    const auto height = file.at<qint16>(place + 6);
    const auto bits = file.at<quint16>(place + 10);
    if (!width || !height || !bits)
        return std::nullopt;
    const quint64 colours = *bits <= 8 ? quint64{1} << *bits : 0;
    return BitmapHeader{*width, magnitude(*height), *bits, 0, place + oldHeaderSize + colours * 3};
}

std::optional<BitmapHeader> bitmapHeader(const FileNumbers &file, quint64 place)
{
    const quint32 size = file.at<quint32>(place).value_or(0);
    if (std::ranges::find(headerSizes, size) == headerSizes.end())
        return std::nullopt;
    if (size == oldHeaderSize)
        return oldBitmapHeader(file, place);
    const auto width = file.at<qint32>(place + 4);
    const auto height = file.at<qint32>(place + 8);
    const auto bits = file.at<quint16>(place + 14);
    const auto compression = file.at<quint32>(place + 16);
    const auto used = file.at<quint32>(place + 32);
    if (!used || *width <= 0 || *bits == 0 || *bits > 32)
        return std::nullopt;
    quint64 colours = 0;
    if (*bits <= 8)
        colours = *used != 0 ? *used : quint64{1} << *bits;
    const quint64 masks = *compression == bitFields && size < headerWithMasksSize ? 12 : 0;
    return BitmapHeader{static_cast<quint64>(*width), magnitude(*height), *bits, *compression,
                        place + size + colours * 4 + masks};
}

// The bytes of the lines, each filled up to four bytes.
quint64 linesSize(const BitmapHeader &header, quint64 bits)
{
    return (header.width * bits + 31) / 32 * 4 * header.height;
}

// Whether runs that begin at a place go on to the mark of their end.
bool areWholeRuns(const FileNumbers &file, quint64 place, bool nibbles)
{
    constexpr quint8 endOfPicture = 1;
    constexpr quint8 skip = 2;
    while (file.holds(place, 2)) {
        const quint8 count = *file.at<quint8>(place);
        const quint8 code = *file.at<quint8>(place + 1);
        place += 2;
        if (count != 0)
            continue;
        if (code == endOfPicture)
            return true;
        if (code == skip) {
            place += 2;
        } else if (code > skip) {
            const quint64 length = nibbles ? (code + 1) / 2 : code;
            place += (length + 1) / 2 * 2;
        }
    }
    return false;
}

} // namespace

bool isWholeBmp(QByteArrayView bytes)
{
    const FileNumbers file(bytes, FileNumbers::Order::LittleEndian);
    const std::optional<BitmapHeader> header = bitmapHeader(file, fileHeaderSize);
    const auto offset = file.at<qint32>(10);
    if (!header || !offset)
        return false;
    // The decoder, too, goes forwards only.
    const quint64 place = std::max(header->pixels, static_cast<quint64>(std::max(*offset, 0)));
    if (header->isRuns())
        return areWholeRuns(file, place, header->compression == runsOfNibbles);
    return file.holds(place, linesSize(*header, header->bits));
}

bool isWholeIcon(QByteArrayView bytes)
{
    const FileNumbers file(bytes, FileNumbers::Order::LittleEndian);
    constexpr quint64 listSize = 6;
    constexpr quint64 entrySize = 16;
    const quint64 count = file.at<quint16>(4).value_or(0);
    if (count == 0 || !file.holds(listSize, count * entrySize))
        return false;
    for (quint64 entry = listSize; entry < listSize + count * entrySize; entry += entrySize) {
        if (!file.holds(*file.at<quint32>(entry + 12), *file.at<quint32>(entry + 8)))
            return false;
    }
    const quint32 first = *file.at<quint32>(listSize + 12);
    const QByteArrayView inner = bytes.sliced(first, *file.at<quint32>(listSize + 8));
    if (PngChunks(inner).isPng())
        return isWholePng(inner);
    std::optional<BitmapHeader> header = bitmapHeader(file, first);
    if (!header || header->compression != 0 || *file.at<quint32>(first) != headerSize)
        return false;
    // The height is that of the picture and of its mask, one bit a pixel, together.
    header->height /= 2;
    const quint64 mask = header->bits < 32 ? linesSize(*header, 1) : 0;
    return file.holds(header->pixels, linesSize(*header, header->bits) + mask);
}

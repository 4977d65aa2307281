// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/filenumbers.h"
#include "species/wholefile.h"

#include <optional>

namespace
{

// How wide the numbers of a file are, in bytes.
struct Widths {
    quint64 count;  // of entries in a directory
    quint64 offset; // into the file, and the number of values of an entry
    [[nodiscard]] quint64 entry() const { return 4 + 2 * offset; }
};

std::optional<quint64> numberAt(const FileNumbers &file, quint64 place, quint64 width)
{
    switch (width) {
    case 2:
        return file.at<quint16>(place);
    case 4:
        return file.at<quint32>(place);
    case 8:
        return file.at<quint64>(place);
    default:
        return std::nullopt;
    }
}

// The values of one entry of a directory.
struct Values {
    quint64 count = 0;
    quint64 width = 0; // of each, in bytes
    quint64 place = 0; // of the first

    [[nodiscard]] quint64 at(const FileNumbers &file, quint64 index) const
    {
        return numberAt(file, place + index * width, width).value_or(0);
    }
};

// Those of the entry at a place; none if they are no whole numbers or not within the file.
Values valuesOf(const FileNumbers &file, quint64 place, Widths widths)
{
    constexpr quint16 shorts = 3;
    constexpr quint16 longs = 4;
    constexpr quint16 longLongs = 16;
    const quint16 type = file.at<quint16>(place + 2).value_or(0);
    Values values;
    values.width = type == shorts ? 2 : type == longs ? 4 : type == longLongs ? 8 : 0;
    const quint64 count = numberAt(file, place + 4, widths.offset).value_or(0);
    if (values.width == 0 || count > file.size())
        return {};
    const quint64 inEntry = place + 4 + widths.offset;
    values.place = count * values.width <= widths.offset
                       ? inEntry
                       : numberAt(file, inEntry, widths.offset).value_or(file.size());
    if (file.holds(values.place, count * values.width))
        values.count = count;
    return values;
}

} // namespace

bool isWholeTiff(QByteArrayView bytes)
{
    constexpr quint16 stripOffsets = 273;
    constexpr quint16 stripSizes = 279;
    constexpr quint16 tileOffsets = 324;
    constexpr quint16 tileSizes = 325;
    constexpr quint16 longOffsets = 43;
    const FileNumbers file(bytes, bytes.startsWith("II") ? FileNumbers::Order::LittleEndian
                                                         : FileNumbers::Order::BigEndian);
    const bool isLong = file.at<quint16>(2) == longOffsets;
    const Widths widths = isLong ? Widths{8, 8} : Widths{2, 4};
    const auto directory = numberAt(file, isLong ? 8 : 4, widths.offset);
    const quint64 entries = directory ? numberAt(file, *directory, widths.count).value_or(0) : 0;
    if (entries > 0xffff || !file.holds(*directory + widths.count, entries * widths.entry()))
        return false;
    Values offsets;
    Values sizes;
    for (quint64 i = 0; i < entries; ++i) {
        const quint64 entry = *directory + widths.count + i * widths.entry();
        const quint16 tag = *file.at<quint16>(entry);
        if (tag == stripOffsets || tag == tileOffsets)
            offsets = valuesOf(file, entry, widths);
        else if (tag == stripSizes || tag == tileSizes)
            sizes = valuesOf(file, entry, widths);
    }
    if (offsets.count == 0 || offsets.count != sizes.count)
        return false;
    for (quint64 i = 0; i < offsets.count; ++i) {
        if (!file.holds(offsets.at(file, i), sizes.at(file, i)))
            return false;
    }
    return true;
}

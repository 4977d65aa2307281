// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/truncation.h"

#include "pictures/filenumbers.h"
#include "pictures/pngchunks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace
{

// The place after the scan data of a JPEG file that starts at place: that of the next marker.
quint64 endOfScan(QByteArrayView bytes, quint64 place)
{
    const char *const end = bytes.data() + bytes.size();
    const char *at = bytes.data() + place;
    while (at != end) {
        at = static_cast<const char *>(std::memchr(at, 0xff, static_cast<std::size_t>(end - at)));
        if (!at || end - at < 2)
            break;
        const auto code = static_cast<uchar>(at[1]);
        const bool isData = code == 0 || (code >= 0xd0 && code <= 0xd7);
        if (!isData && code != 0xff)
            return static_cast<quint64>(at - bytes.data());
        at += isData ? 2 : 1;
    }
    return static_cast<quint64>(bytes.size());
}

// The place after the data blocks of a GIF file that start at place; past the file's end if they do
// not end.
quint64 endOfBlocks(const FileNumbers &file, quint64 place)
{
    while (const quint8 length = file.at<quint8>(place).value_or(0))
        place += 1 + quint64{length};
    return place + 1;
}

// The size in bytes of a GIF palette, from the flags before it.
quint64 paletteSize(quint8 flags)
{
    return flags & 0x80 ? quint64{3} << ((flags & 7) + 1) : 0;
}

// Run-length coded pictures of three channels: their types and the bytes before the runs.
struct RunType {
    QByteArrayView name;
    quint64 side; // pixels
    quint64 start;
};

constexpr std::array runTypes{RunType{"is32", 16, 0}, RunType{"il32", 32, 0},
                              RunType{"ih32", 48, 0}, RunType{"it32", 128, 4}};

// Whether the runs in a part of a file fill all three channels, one after the other.
bool areWholeRuns(const FileNumbers &data, quint64 place, quint64 pixels)
{
    for (int channel = 0; channel < 3; ++channel) {
        quint64 done = 0;
        while (done < pixels) {
            const std::optional<quint8> code = data.at<quint8>(place);
            if (!code)
                return false;
            const bool repeats = *code >= 128;
            const quint64 length = repeats ? *code - 125u : *code + 1u;
            const quint64 stored = repeats ? 1 : length;
            if (!data.holds(place + 1, stored) || length > pixels - done)
                return false;
            place += 1 + stored;
            done += length;
        }
    }
    return true;
}

} // namespace

bool isWholePng(QByteArrayView bytes)
{
    PngChunks chunks(bytes);
    if (!chunks.isPng())
        return false;
    while (chunks.nextType() != "IEND") {
        const std::optional<PngChunk> chunk = chunks.next();
        if (!chunk || (chunk->type == "IDAT" && !chunk->isIntact()))
            return false;
    }
    return true;
}

bool isWholeJpeg(QByteArrayView bytes)
{
    constexpr quint8 endOfImage = 0xd9;
    constexpr quint8 startOfScan = 0xda;
    // Progressive files have some ten scans. Each is a pass over all pixels, however short it is.
    constexpr int mostScans = 100;
    const FileNumbers file(bytes, FileNumbers::Order::BigEndian);
    int scans = 0;
    quint64 place = 2;
    while (const auto first = file.at<quint8>(place)) {
        const quint8 code = file.at<quint8>(place + 1).value_or(0);
        if (first != 0xff || code == 0)
            return false;
        if (code == endOfImage)
            return scans > 0;
        if (code == 0xff) {
            ++place; // markers are filled up with any number of these
            continue;
        }
        place += 2;
        if (code == 0x01 || (code >= 0xd0 && code <= 0xd7))
            continue; // has no length
        const quint64 length = file.at<quint16>(place).value_or(0);
        if (length < 2 || !file.holds(place, length))
            return false;
        place += length;
        if (code != startOfScan)
            continue;
        if (++scans > mostScans)
            return false;
        place = endOfScan(bytes, place);
    }
    return false;
}

bool isWholeGif(QByteArrayView bytes)
{
    constexpr quint64 headerSize = 13;
    const FileNumbers file(bytes, FileNumbers::Order::LittleEndian);
    int pictures = 0;
    quint64 place = headerSize + paletteSize(file.at<quint8>(10).value_or(0));
    while (const auto kind = file.at<quint8>(place)) {
        if (kind == ';')
            return pictures > 0;
        if (kind == '!') {
            place = endOfBlocks(file, place + 2);
        } else if (kind == ',') {
            const quint8 flags = file.at<quint8>(place + 9).value_or(0);
            place = endOfBlocks(file, place + 10 + paletteSize(flags) + 1);
            ++pictures;
        } else {
            return false;
        }
    }
    return false;
}

bool isWholeWebp(QByteArrayView bytes)
{
    const FileNumbers file(bytes, FileNumbers::Order::LittleEndian);
    const quint64 end = quint64{file.at<quint32>(4).value_or(0)} + 8;
    quint64 place = 12;
    if (end <= place || end > file.size())
        return false;
    while (place < end) {
        const auto length = file.at<quint32>(place + 4);
        if (!length)
            return false;
        place += 8 + quint64{*length};
        if (place > end)
            return false;
        place += *length % 2; // which some leave out at the end
    }
    return true;
}

bool isMngWithoutLoops(QByteArrayView bytes)
{
    return !bytes.contains("LOOP");
}

bool isWholeIcns(QByteArrayView bytes)
{
    constexpr quint64 headerSize = 8; // of the file and of each part
    const FileNumbers file(bytes, FileNumbers::Order::BigEndian);
    quint64 place = headerSize;
    while (place < file.size()) {
        const quint64 length = file.at<quint32>(place + 4).value_or(0);
        if (length < headerSize || !file.holds(place, length))
            return false;
        const QByteArrayView part = bytes.sliced(qsizetype(place), qsizetype(length));
        for (const RunType &type : runTypes) {
            const quint64 pixels = type.side * type.side;
            if (part.startsWith(type.name) && length != headerSize + 4 * pixels // without runs
                && !areWholeRuns(FileNumbers(part, FileNumbers::Order::BigEndian),
                                 headerSize + type.start, pixels))
                return false;
        }
        place += length;
    }
    return true;
}

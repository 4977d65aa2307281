// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/filenumbers.h"
#include "species/wholefile.h"

#include <array>
#include <optional>

namespace
{

// Pictures of three channels in runs: their types and the bytes that go before the runs.
struct RunType {
    QByteArrayView name;
    quint64 side; // pixels
    quint64 start;
};

constexpr std::array runTypes{RunType{"is32", 16, 0}, RunType{"il32", 32, 0},
                              RunType{"ih32", 48, 0}, RunType{"it32", 128, 4}};

// Whether the runs in a part of a file make up all three channels, one after the other.
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

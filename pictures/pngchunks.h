// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

#include <optional>

// One chunk of a PNG file: https://www.w3.org/TR/png-3/#5Chunk-layout.
struct PngChunk {
    QByteArrayView type; // four letters
    QByteArrayView data;
    QByteArrayView summed; // type and data, which lie together
    quint32 checksum;      // as the file says

    // Whether the checksum is that of the type and the data.
    [[nodiscard]] bool isIntact() const;
};

// Walks through the chunks of a PNG file, whose bytes must outlive it and what it gives.
class PngChunks
{
public:
    // There are none in bytes that are not of a PNG file.
    explicit PngChunks(QByteArrayView bytes);

    // Whether the bytes begin as a PNG file does.
    [[nodiscard]] bool isPng() const;

    // The type of the next chunk, though the chunk be cut off; empty at the end.
    [[nodiscard]] QByteArrayView nextType() const;

    // The next chunk; nothing at the end or if it is cut off.
    [[nodiscard]] std::optional<PngChunk> next();

private:
    QByteArrayView m_rest;
    bool m_isPng;
};

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

    // Whether the checksum matches the type and the data.
    [[nodiscard]] bool isIntact() const;
};

// Walks through the chunks of a PNG file, whose bytes must outlive it and its chunks.
class PngChunks
{
public:
    // Bytes that are no PNG file have no chunks.
    explicit PngChunks(QByteArrayView bytes);

    // Whether the bytes begin like a PNG file.
    [[nodiscard]] bool isPng() const;

    // The type of the next chunk, even if the chunk is cut off; empty at the end.
    [[nodiscard]] QByteArrayView nextType() const;

    // The next chunk; nothing at the end or if it is cut off.
    [[nodiscard]] std::optional<PngChunk> next();

private:
    QByteArrayView m_rest;
    bool m_isPng;
};

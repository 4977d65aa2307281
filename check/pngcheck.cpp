// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/pngcheck.h"

#include "pictures/pngchunks.h"

#include <QByteArray>
#include <QtEndian>

#include <libdeflate.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace
{

constexpr qint64 mostPixels = 4'000'000;

struct Header {
    QSize size;
    int bitsPerPixel;
    bool needsPalette;
};

quint32 bigEndian(QByteArrayView bytes, qsizetype at)
{
    return qFromBigEndian<quint32>(bytes.data() + at);
}

std::optional<Header> headerOf(QByteArrayView data)
{
    if (data.size() != 13)
        return std::nullopt;
    const quint32 width = bigEndian(data, 0);
    const quint32 height = bigEndian(data, 4);
    const int depth = static_cast<unsigned char>(data[8]);
    if (width < 1 || height < 1 || qint64(width) * height > mostPixels)
        return std::nullopt;
    // Compression, filter and interlace methods.
    if (data[10] != 0 || data[11] != 0 || data[12] != 0)
        return std::nullopt;
    const bool anyDepth = depth == 1 || depth == 2 || depth == 4 || depth == 8;
    const bool wholeBytes = depth == 8 || depth == 16;
    int channels = 0;
    switch (data[9]) {
    case 0: // grey
        channels = anyDepth || wholeBytes ? 1 : 0;
        break;
    case 2: // red, green, blue
        channels = wholeBytes ? 3 : 0;
        break;
    case 3: // palette
        channels = anyDepth ? 1 : 0;
        break;
    case 4: // grey with alpha
        channels = wholeBytes ? 2 : 0;
        break;
    case 6: // red, green, blue, alpha
        channels = wholeBytes ? 4 : 0;
        break;
    default:
        break;
    }
    if (channels == 0)
        return std::nullopt;
    return Header{QSize(static_cast<int>(width), static_cast<int>(height)), channels * depth,
                  data[9] == 3};
}

// Whether the compressed data are exactly the picture's lines, each with a valid filter.
bool holdsLines(const QByteArray &compressed, const Header &header)
{
    const std::size_t line =
        1 + (static_cast<std::size_t>(header.size.width()) * header.bitsPerPixel + 7) / 8;
    const std::size_t expected = line * static_cast<std::size_t>(header.size.height());
    // Each thread keeps its own: clearing new pages would take as long as inflating.
    thread_local const std::unique_ptr<libdeflate_decompressor,
                                       decltype(&libdeflate_free_decompressor)>
        decompressor(libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
    thread_local std::vector<unsigned char> pixels;
    if (pixels.size() < expected)
        pixels.resize(expected);
    std::size_t actual = 0;
    const libdeflate_result result = libdeflate_zlib_decompress(
        decompressor.get(), compressed.constData(), static_cast<std::size_t>(compressed.size()),
        pixels.data(), expected, &actual);
    if (result != LIBDEFLATE_SUCCESS || actual != expected)
        return false;
    constexpr unsigned char lastFilter = 4;
    for (std::size_t at = 0; at < expected; at += line) {
        if (pixels[at] > lastFilter)
            return false;
    }
    return true;
}

} // namespace

std::optional<QSize> soundPngSize(QByteArrayView bytes)
{
    PngChunks chunks(bytes);
    std::optional<Header> header;
    QByteArray compressed;
    bool hasPalette = false;
    for (bool ended = false; !ended;) {
        const std::optional<PngChunk> chunk = chunks.next();
        if (!chunk || !chunk->isIntact() || (chunk->type != "IHDR") != header.has_value())
            return std::nullopt;
        const QByteArrayView data = chunk->data;
        if (chunk->type == "IHDR") {
            header = headerOf(data);
            if (!header)
                return std::nullopt;
        } else if (chunk->type == "PLTE") {
            hasPalette = !data.isEmpty() && data.size() % 3 == 0 && data.size() <= 768
                         && compressed.isEmpty();
        } else if (chunk->type == "IDAT") {
            compressed += data;
        } else if (chunk->type == "IEND") {
            ended = true;
        } else if ((chunk->type[0] & 0x20) == 0) {
            return std::nullopt; // critical, and not known here
        }
    }
    if ((header->needsPalette && !hasPalette) || !holdsLines(compressed, *header))
        return std::nullopt;
    return header->size;
}

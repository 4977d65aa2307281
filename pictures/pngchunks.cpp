// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/pngchunks.h"

#include <QtEndian>

#include <libdeflate.h>

#include <cstddef>

namespace
{

constexpr QByteArrayView signature("\x89PNG\r\n\x1a\n", 8);
// Sizes of the parts of a chunk, in bytes.
constexpr qsizetype lengthSize = 4;
constexpr qsizetype typeSize = 4;
constexpr qsizetype checksumSize = 4;

} // namespace

bool PngChunk::isIntact() const
{
    return libdeflate_crc32(0, summed.data(), static_cast<std::size_t>(summed.size())) == checksum;
}

PngChunks::PngChunks(QByteArrayView bytes) : m_isPng(bytes.startsWith(signature))
{
    if (m_isPng)
        m_rest = bytes.sliced(signature.size());
}

bool PngChunks::isPng() const
{
    return m_isPng;
}

QByteArrayView PngChunks::nextType() const
{
    return m_rest.size() < lengthSize + typeSize ? QByteArrayView()
                                                 : m_rest.sliced(lengthSize, typeSize);
}

std::optional<PngChunk> PngChunks::next()
{
    constexpr qsizetype frame = lengthSize + typeSize + checksumSize;
    if (m_rest.size() < frame)
        return std::nullopt;
    const auto length = qsizetype(qFromBigEndian<quint32>(m_rest.data()));
    if (m_rest.size() - frame < length)
        return std::nullopt;
    const QByteArrayView summed = m_rest.sliced(lengthSize, typeSize + length);
    const auto checksum = qFromBigEndian<quint32>(summed.data() + summed.size());
    m_rest = m_rest.sliced(frame + length);
    return PngChunk{summed.first(typeSize), summed.sliced(typeSize), summed, checksum};
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/picture.h"

#include "species/pngchunks.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QPixelFormat>

#include <algorithm>
#include <optional>

namespace
{

constexpr qint64 largestPicture = 64'000'000; // pixels
// Pixels; the encoder and the decoder of PNG take no longer ones (PNG_USER_WIDTH_MAX of libpng).
constexpr int longestSide = 1'000'000;
constexpr qint64 megabyte = qint64{1024} * 1024;

// Whether bytes are a PNG file that is cut off or whose pixels were damaged. The decoder would find
// out too, but only when it gets there, with all pixels before that in memory.
bool isDamagedPng(const QByteArray &bytes)
{
    PngChunks chunks(bytes);
    if (!chunks.isPng())
        return false;
    while (chunks.nextType() != "IEND") {
        const std::optional<PngChunk> chunk = chunks.next();
        if (!chunk || (chunk->type == "IDAT" && !chunk->isIntact()))
            return true;
    }
    return false;
}

// More than eight bits a channel.
bool isDeep(const QImage &image)
{
    return image.format() == QImage::Format_Grayscale16 || image.pixelFormat().redSize() > 8;
}

// The image as the encoder gives it back: what was saved once is saved in the same bytes again.
QImage encodable(const QImage &image)
{
    QImage result = image;
    // The encoder keeps sixteen bits a channel, but not ten.
    if (isDeep(image) && image.format() != QImage::Format_Grayscale16)
        result = image.convertToFormat(QImage::Format_RGBA64);
    // It would write the bits that fill up a line too, which no decoder sets.
    else if (image.depth() == 1)
        result = image.convertToFormat(QImage::Format_Indexed8);
    // A colour space that was put together goes by its name once it has been read.
    if (result.colorSpace().isValid())
        result.setColorSpace(QColorSpace::fromIccProfile(result.colorSpace().iccProfile()));
    return result;
}

} // namespace

bool isSamePicture(const QImage &left, const QImage &right)
{
    if (left.size() != right.size())
        return false;
    if (left.isNull())
        return true;
    // Premultiplied, since a picture that went through a pixmap has lost the colour under
    // transparency; deep ones do not go through pixmaps, and files hold them as they are compared
    // here.
    const QImage::Format common =
        isDeep(left) || isDeep(right) ? QImage::Format_RGBA64 : QImage::Format_ARGB32_Premultiplied;
    QImage first = left.convertToFormat(common);
    QImage second = right.convertToFormat(common);
    first.setColorSpace({});
    second.setColorSpace({});
    return first == second;
}

bool canBeReloaded(const QImage &image)
{
    const qint64 pixels = qint64(image.width()) * image.height();
    const qint64 bytes = pixels * (isDeep(image) ? 8 : 4);
    return std::max(image.width(), image.height()) <= longestSide && pixels <= largestPicture
           && bytes <= QImageReader::allocationLimit() * megabyte;
}

QImage decodePicture(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    // Drawings in XML can be bombs of any size and refer to files of the machine that shows them.
    if (reader.format().startsWith("svg") || bytes.startsWith("\x1f\x8b"))
        return {};
    if (isDamagedPng(bytes))
        return {};
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > largestPicture)
        return {};
    QImage image = reader.read();
    // It would be shown, but be gone after the next save.
    return canBeReloaded(image) ? image : QImage();
}

QByteArray encodePng(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!encodable(image).save(&buffer, "PNG"))
        return {};
    return bytes;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/picture.h"

#include "pictures/drawing.h"
#include "pictures/pictureformat.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QList>
#include <QPixelFormat>
#include <QSize>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <type_traits>

namespace
{

constexpr qint64 largestPicture = 64'000'000; // pixels
// In pixels: PNG's encoder and decoder accept no longer sides (PNG_USER_WIDTH_MAX of libpng).
constexpr int longestSide = 1'000'000;
constexpr qint64 megabyte = qint64{1024} * 1024;

// Whether a channel has more than eight bits.
bool isDeep(QImage::Format format)
{
    return format == QImage::Format_Grayscale16 || QImage::toPixelFormat(format).redSize() > 8;
}

// The format of a reader's picture. Some decoders make a number of a damaged header that is no
// format: it must not be treated as an enumerator.
QImage::Format formatIn(const QImageReader &reader)
{
    using Number = std::underlying_type_t<QImage::Format>;
    const auto number = std::bit_cast<Number>(reader.imageFormat());
    return number < Number{QImage::NImageFormats} ? static_cast<QImage::Format>(number)
                                                  : QImage::Format_Invalid;
}

// A bitmap stored from the top down has a negative height.
QSize sizeIn(const QImageReader &reader)
{
    constexpr int most = std::numeric_limits<int>::max();
    const QSize size = reader.size();
    return {size.width(), std::abs(std::max(size.height(), -most))};
}

bool isWithinLimits(QSize size, QImage::Format format)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    const qint64 bytes = pixels * (isDeep(format) ? 8 : 4);
    return std::max(size.width(), size.height()) <= longestSide && pixels <= largestPicture
           && bytes <= QImageReader::allocationLimit() * megabyte;
}

// An image of zeros. Some decoders skip pixels of a damaged file and would show what was in that
// memory before. Rows that they do not reach take no memory.
QImage clearedImage(QSize size, QImage::Format format)
{
    if (format == QImage::Format_Invalid)
        return {};
    const qsizetype bits = qsizetype{size.width()} * QImage(1, 1, format).depth();
    const qsizetype line = (bits + 31) / 32 * 4;
    void *pixels =
        std::calloc(static_cast<std::size_t>(size.height()), static_cast<std::size_t>(line));
    return pixels ? QImage(static_cast<uchar *>(pixels), size.width(), size.height(), line, format,
                           std::free, pixels)
                  : QImage();
}

// Pads short palettes with black: readers of the pixels would read past their end.
void completePalette(QImage &image)
{
    if (image.format() != QImage::Format_Indexed8)
        return;
    uchar highest = 0;
    for (int y = 0; y < image.height(); ++y) {
        const uchar *line = image.constScanLine(y);
        highest = std::max(highest, *std::max_element(line, line + image.width()));
    }
    QList<QRgb> colours = image.colorTable();
    if (highest < colours.size())
        return;
    colours.resize(qsizetype{highest} + 1, qRgb(0, 0, 0));
    image.setColorTable(colours);
}

// The image as the encoder returns it, so that saving it again gives the same bytes.
QImage encodable(const QImage &image)
{
    QImage result = image;
    // The encoder keeps sixteen bits a channel, but not ten.
    if (isDeep(image.format()) && image.format() != QImage::Format_Grayscale16)
        result = image.convertToFormat(QImage::Format_RGBA64);
    // The encoder writes the unused bits of a line too, which no decoder sets.
    else if (image.depth() == 1)
        result = image.convertToFormat(QImage::Format_Indexed8);
    // The encoder leaves out a resolution of 0, for which the decoder puts in the usual one.
    const QImage usual(1, 1, result.format());
    if (result.dotsPerMeterX() <= 0)
        result.setDotsPerMeterX(usual.dotsPerMeterX());
    if (result.dotsPerMeterY() <= 0)
        result.setDotsPerMeterY(usual.dotsPerMeterY());
    // A colour space made from parts has its profile's name once it has been read.
    if (result.colorSpace().isValid())
        result.setColorSpace(QColorSpace::fromIccProfile(result.colorSpace().iccProfile()));
    return result;
}

// The picture in the bytes of a file of this format; an empty format is detected.
QImage decodedAs(const QByteArray &bytes, const QByteArray &format)
{
    QBuffer buffer;
    buffer.setData(bytes);
    // The format is named, so that plugins that accept any file are not asked.
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(format.isEmpty());
    QImage image;
    const QSize size = sizeIn(reader);
    // Some decoders do not tell the size; Qt's limit of memory holds then.
    if (!size.isEmpty()) {
        const QImage::Format pixels = formatIn(reader);
        if (!isWithinLimits(size, pixels))
            return {};
        image = clearedImage(size, pixels);
    }
    // A picture that is too large would be shown but lost at the next save.
    if (!reader.read(&image) || !isWithinLimits(image.size(), image.format()))
        return {};
    completePalette(image);
    return image;
}

} // namespace

bool isSamePicture(const QImage &left, const QImage &right)
{
    if (left.size() != right.size())
        return false;
    if (left.isNull())
        return true;
    // Colours are premultiplied, as a picture that went through a pixmap has lost its colour under
    // transparency. Deep pictures do not go through pixmaps.
    const QImage::Format common = isDeep(left.format()) || isDeep(right.format())
                                      ? QImage::Format_RGBA64
                                      : QImage::Format_ARGB32_Premultiplied;
    QImage first = left.convertToFormat(common);
    QImage second = right.convertToFormat(common);
    first.setColorSpace({});
    second.setColorSpace({});
    return first == second;
}

bool canBeReloaded(const QImage &image)
{
    return isWithinLimits(image.size(), image.format());
}

QImage decodePicture(const QByteArray &bytes)
{
    const QByteArrayList formats = pictureFormats(bytes);
    // Qt's SVG decoder fetches what a drawing refers to.
    if (formats.contains(QByteArray()) && isDrawing(bytes))
        return decodeDrawing(bytes, [](QSize size) {
            return isWithinLimits(size, QImage::Format_ARGB32_Premultiplied);
        });
    for (const QByteArray &format : formats) {
        QImage image = decodedAs(bytes, format);
        if (!image.isNull())
            return image;
    }
    return {};
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

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
// Pixels; the encoder and the decoder of PNG take no longer ones (PNG_USER_WIDTH_MAX of libpng).
constexpr int longestSide = 1'000'000;
constexpr qint64 megabyte = qint64{1024} * 1024;

// More than eight bits a channel.
bool isDeep(QImage::Format format)
{
    return format == QImage::Format_Grayscale16 || QImage::toPixelFormat(format).redSize() > 8;
}

// The format that a reader's picture will have. Of a damaged header some decoders make one that
// there is not, which must not be looked at as what it claims to be.
QImage::Format formatIn(const QImageReader &reader)
{
    using Number = std::underlying_type_t<QImage::Format>;
    const auto number = std::bit_cast<Number>(reader.imageFormat());
    return number < Number{QImage::NImageFormats} ? static_cast<QImage::Format>(number)
                                                  : QImage::Format_Invalid;
}

// A bitmap whose lines are stored from the top down says so by a negative height.
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

// An image of zeros: for the decoders that leave out pixels of a damaged file, and would show what
// was in that memory before. What they do not reach takes no memory.
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

// Makes the colours black that pixels have but the palette does not: what reads them would read
// past its end.
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

// The image as the encoder gives it back: what was saved once is saved in the same bytes again.
QImage encodable(const QImage &image)
{
    QImage result = image;
    // The encoder keeps sixteen bits a channel, but not ten.
    if (isDeep(image.format()) && image.format() != QImage::Format_Grayscale16)
        result = image.convertToFormat(QImage::Format_RGBA64);
    // It would write the bits that fill up a line too, which no decoder sets.
    else if (image.depth() == 1)
        result = image.convertToFormat(QImage::Format_Indexed8);
    // It would leave out a resolution that is none, and the decoder would put in the usual one.
    const QImage usual(1, 1, result.format());
    if (result.dotsPerMeterX() <= 0)
        result.setDotsPerMeterX(usual.dotsPerMeterX());
    if (result.dotsPerMeterY() <= 0)
        result.setDotsPerMeterY(usual.dotsPerMeterY());
    // A colour space that was put together goes by its name once it has been read.
    if (result.colorSpace().isValid())
        result.setColorSpace(QColorSpace::fromIccProfile(result.colorSpace().iccProfile()));
    return result;
}

// The picture in the bytes of a file of a format; an empty one is detected.
QImage decodedAs(const QByteArray &bytes, const QByteArray &format)
{
    QBuffer buffer;
    buffer.setData(bytes);
    // Named, so that no plugin that would take any file is asked to.
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(format.isEmpty());
    QImage image;
    const QSize size = sizeIn(reader);
    // Some decoders do not tell it; Qt then keeps to the limit of memory.
    if (!size.isEmpty()) {
        const QImage::Format pixels = formatIn(reader);
        if (!isWithinLimits(size, pixels))
            return {};
        image = clearedImage(size, pixels);
    }
    // One that is too large would be shown, but be gone after the next save.
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
    // Premultiplied, since a picture that went through a pixmap has lost the colour under
    // transparency; deep ones do not go through pixmaps, and files hold them as they are compared
    // here.
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
    // Qt's decoder of drawings fetches what they refer to.
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

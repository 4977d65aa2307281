// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/picture.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QPixelFormat>

namespace
{

// More than eight bits a channel.
bool isDeep(const QImage &image)
{
    return image.format() == QImage::Format_Grayscale16 || image.pixelFormat().redSize() > 8;
}

} // namespace

bool isSamePicture(const QImage &left, const QImage &right)
{
    if (left.size() != right.size())
        return false;
    if (left.isNull())
        return true;
    // Premultiplied, since a picture that went through a pixmap has lost the colour under transparency.
    const QImage::Format common = isDeep(left) || isDeep(right)
        ? QImage::Format_RGBA64_Premultiplied
        : QImage::Format_ARGB32_Premultiplied;
    QImage first = left.convertToFormat(common);
    QImage second = right.convertToFormat(common);
    first.setColorSpace({});
    second.setColorSpace({});
    return first == second;
}

QImage decodePicture(const QByteArray &bytes)
{
    constexpr qint64 largestPicture = 64'000'000; // pixels
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > largestPicture)
        return {};
    return reader.read();
}

QByteArray encodePng(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return {};
    return bytes;
}

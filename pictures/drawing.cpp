// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/drawing.h"

#include "pictures/drawingcost.h"
#include "pictures/ownsvg.h"

#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

#include <libdeflate.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace
{

constexpr qsizetype largestText = 4'000'000; // bytes
constexpr std::string_view gzipMark("\x1f\x8b", 2);

std::optional<QByteArray> unpacked(const QByteArray &bytes)
{
    const std::unique_ptr<libdeflate_decompressor, void (*)(libdeflate_decompressor *)>
        decompressor(libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    QByteArray text(largestText, Qt::Uninitialized);
    std::size_t size = 0;
    if (!decompressor
        || libdeflate_gzip_decompress(decompressor.get(), bytes.constData(),
                                      static_cast<std::size_t>(bytes.size()), text.data(),
                                      static_cast<std::size_t>(text.size()), &size)
               != LIBDEFLATE_SUCCESS)
        return std::nullopt;
    text.truncate(static_cast<qsizetype>(size));
    return text;
}

} // namespace

bool isDrawing(QByteArrayView bytes)
{
    constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");
    if (bytes.startsWith(byteOrderMark))
        bytes = bytes.sliced(byteOrderMark.size());
    return bytes.startsWith(gzipMark) || bytes.trimmed().startsWith('<');
}

QImage decodeDrawing(const QByteArray &bytes, bool (*fits)(QSize))
{
    // Drawing letters requires a QGuiApplication.
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return {};
    const std::optional<QByteArray> text = bytes.startsWith(gzipMark) ? unpacked(bytes) : bytes;
    if (!text || text->size() > largestText)
        return {};
    const QByteArray own = ownSvg(*text);
    QSvgRenderer renderer;
    if (own.isEmpty() || !renderer.load(own))
        return {};
    const QSize size = renderer.defaultSize();
    if (size.isEmpty() || !fits(size) || !isCheapDrawing(renderer, size))
        return {};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

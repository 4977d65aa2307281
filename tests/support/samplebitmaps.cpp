// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/samplebitmaps.h"

#include <QColor>
#include <QtEndian>

namespace
{

struct Bitmap {
    int headerSize = 40; // bytes: 12, 40, 64, 108 or 124
    int bits = 24;
    int compression = 0; // 0 none, 1 RLE8, 2 RLE4, 3 bit fields
    int height = sampleSize.height();
    QByteArray palette;
    QByteArray body;
};

// Where the bits of red, green and blue are.
QByteArray longMasks()
{
    return little(0xff0000, 4) + little(0xff00, 4) + little(0xff, 4);
}

QByteArray bitmapFile(const Bitmap &bitmap)
{
    QByteArray header = little(quint32(bitmap.headerSize), 4);
    if (bitmap.headerSize == 12) {
        header += little(sampleSize.width(), 2) + little(quint32(bitmap.height), 2) + little(1, 2)
                  + little(quint32(bitmap.bits), 2);
    } else {
        header += little(sampleSize.width(), 4) + little(quint32(bitmap.height), 4) + little(1, 2)
                  + little(quint32(bitmap.bits), 2) + little(quint32(bitmap.compression), 4)
                  + little(quint32(bitmap.body.size()), 4) + little(2835, 4) + little(2835, 4)
                  + little(bitmap.bits <= 8 ? quint32(bitmap.palette.size() / 4) : 0, 4)
                  + little(0, 4);
        // Masks of the colours stand in the longer headers, and after the shorter ones.
        QByteArray rest(bitmap.headerSize - header.size(), 0);
        if (bitmap.headerSize >= 108)
            rest.replace(0, 12, longMasks());
        header += rest;
    }
    header += bitmap.palette;
    const auto offset = quint32(14 + header.size());
    return "BM" + little(offset + quint32(bitmap.body.size()), 4) + little(0, 4) + little(offset, 4)
           + header + bitmap.body;
}

// The lines of image, from the last or the first on, each filled up to four bytes.
template <typename Append>
QByteArray bitmapLines(const QImage &image, bool topDown, Append append)
{
    QByteArray body;
    for (int line = 0; line < image.height(); ++line) {
        const int y = topDown ? line : image.height() - 1 - line;
        for (int x = 0; x < image.width(); ++x)
            append(body, x, y);
        body.append((4 - body.size() % 4) % 4, 0);
    }
    return body;
}

QByteArray colourLines(const QImage &image, int bits, bool topDown)
{
    return bitmapLines(image, topDown, [&](QByteArray &body, int x, int y) {
        const QRgb colour = image.pixel(x, y);
        if (bits == 16)
            body += little(
                (qRed(colour) >> 3 << 11) | (qGreen(colour) >> 2 << 5) | (qBlue(colour) >> 3), 2);
        else
            body += little(colour & 0xffffff, bits / 8);
    });
}

QByteArray paletteOf(const QImage &image, bool old)
{
    QByteArray palette;
    for (int i = 0; i < (old ? 256 : 16); ++i)
        palette += little(i < 16 ? image.color(i) & 0xffffff : 0, old ? 3 : 4);
    return palette;
}

// Runs of at most two pixels and, in every other line, three pixels as they are first.
QByteArray runs(const QImage &image, bool nibbles)
{
    QByteArray body;
    for (int y = image.height() - 1; y >= 0; --y) {
        const uchar *line = image.constScanLine(y);
        int x = 0;
        if (y % 2 == 1) {
            body += QByteArray("\0\3", 2);
            if (nibbles)
                body += QByteArray(1, char(line[0] << 4 | line[1])) + char(line[2] << 4);
            else
                body += QByteArray(reinterpret_cast<const char *>(line), 3) + '\0';
            x = 3;
        }
        for (; x < image.width(); ++x)
            body += QByteArray(1, 1) + char(nibbles ? line[x] << 4 : line[x]);
        body += QByteArray("\0\0", 2);
    }
    return body + QByteArray("\0\1", 2);
}

// An icon that holds the file of a picture.
QByteArray iconOf(const QByteArray &inner, int bits)
{
    return QByteArray("\0\0\1\0\1\0", 6) + char(sampleSize.width()) + char(sampleSize.height())
           + QByteArray("\0\0\1\0", 4) + little(quint32(bits), 2) + little(quint32(inner.size()), 4)
           + little(22, 4) + inner;
}

} // namespace

QByteArray little(quint32 value, int size)
{
    QByteArray bytes(4, 0);
    qToLittleEndian(value, bytes.data());
    return bytes.first(size);
}

QImage coloured()
{
    QImage image(sampleSize, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor(x * 19, y * 28, (x * y * 7) % 256));
    }
    return image;
}

QImage indexed()
{
    QImage image(sampleSize, QImage::Format_Indexed8);
    image.setColorCount(16);
    for (int i = 0; i < 16; ++i)
        image.setColor(i, qRgb(i * 16, 255 - i * 9, (i * 37) % 256));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.scanLine(y)[x] = static_cast<uchar>((x / 2 + y) % 16);
    }
    return image;
}

QList<SamplePicture> sampleBitmaps()
{
    const QImage colours = coloured();
    const QImage palette = indexed();
    QList<SamplePicture> samples;
    const auto add = [&](const char *name, const Bitmap &bitmap, const QImage &image) {
        samples.append({name, "bmp", bitmapFile(bitmap), image});
    };
    const int height = sampleSize.height();
    const QByteArray indices = bitmapLines(palette, false, [&](QByteArray &body, int x, int y) {
        body += char(palette.constScanLine(y)[x]);
    });
    for (const int size : {40, 64, 108, 124})
        samples.append({"BMP with a header of " + QByteArray::number(size), "bmp",
                        bitmapFile({size, 24, 0, height, {}, colourLines(colours, 24, false)}),
                        colours});
    add("BMP of OS/2", {12, 24, 0, height, {}, colourLines(colours, 24, false)}, colours);
    add("BMP of OS/2 with a palette", {12, 8, 0, height, paletteOf(palette, true), indices},
        palette);
    add("BMP, top-down", {40, 24, 0, -height, {}, colourLines(colours, 24, true)}, colours);
    add("BMP of 32 bits", {40, 32, 0, height, {}, colourLines(colours, 32, false)}, colours);
    add("BMP with a palette", {40, 8, 0, height, paletteOf(palette, false), indices}, palette);
    const QByteArray masks = little(0xf800, 4) + little(0x7e0, 4) + little(0x1f, 4);
    add("BMP of 16 bits with bit fields",
        {40, 16, 3, height, masks, colourLines(colours, 16, false)}, QImage());
    add("BMP of 32 bits with bit fields",
        {40, 32, 3, height, longMasks(), colourLines(colours, 32, false)}, colours);
    add("BMP of 32 bits with bit fields in its header",
        {108, 32, 3, height, {}, colourLines(colours, 32, false)}, colours);
    add("BMP with runs of bytes",
        {40, 8, 1, height, paletteOf(palette, false), runs(palette, false)}, palette);
    add("BMP with runs of half bytes",
        {40, 4, 2, height, paletteOf(palette, false), runs(palette, true)}, palette);
    QImage mostlyFirst = palette;
    mostlyFirst.fill(0);
    mostlyFirst.setPixel(3, height - 3, 5);
    // Skips three pixels and two lines, sets one pixel, and ends.
    add("BMP with runs that skip pixels",
        {40, 8, 1, height, paletteOf(palette, false), QByteArray("\0\2\3\2\1\5\0\1", 8)},
        mostlyFirst);
    return samples;
}

QList<SamplePicture> sampleIcons()
{
    const QImage palette = indexed();
    QByteArray inner = bitmapFile({40, 8, 0, 2 * sampleSize.height(), paletteOf(palette, false),
                                   bitmapLines(palette, false, [&](QByteArray &body, int x, int y) {
                                       body += char(palette.constScanLine(y)[x]);
                                   })});
    inner = inner.sliced(14) + QByteArray(4 * qsizetype{sampleSize.height()}, 0);
    return {{"ICO", "ico", pictureFile(coloured(), "ico"), coloured()},
            {"ICO with a palette", "ico", iconOf(inner, 8), palette},
            {"ICO with a PNG", "ico", iconOf(pictureFile(coloured(), "png"), 32), coloured()}};
}

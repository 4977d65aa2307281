// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/samplepictures.h"

#include "support/samplebitmaps.h"

#include <QBuffer>
#include <QColor>
#include <QImageReader>
#include <QImageWriter>
#include <QtEndian>

#include <cstdlib>
#include <cstring>
#include <vector>

// Sanitizers have a heap of their own; each compiler says so in its own way.
#if defined __SANITIZE_ADDRESS__ || !defined __GLIBC__
#define ZORAVEL_OTHER_HEAP
#elif defined __has_feature
#if __has_feature(address_sanitizer)
#define ZORAVEL_OTHER_HEAP
#endif
#endif
#ifndef ZORAVEL_OTHER_HEAP
#include <malloc.h>
#endif

namespace
{

QList<SamplePicture> jpegs()
{
    const QImage colours = coloured();
    const QByteArray plain = pictureFile(colours, "jpeg");
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    writer.write(colours);
    // A whole picture within a segment, as cameras write them.
    QByteArray thumbnail = QByteArray("Exif\0\0II*\0\x8\0\0\0\0\0\0\0\0\0", 20) + plain;
    QByteArray withThumbnail = plain;
    withThumbnail.insert(2, "\xff\xe1" + QByteArray(1, char((thumbnail.size() + 2) >> 8))
                                + char((thumbnail.size() + 2) & 0xff) + thumbnail);
    QByteArray filled = plain;
    filled.insert(2, "\xff\xff\xff\xfe"
                         + QByteArray("\0\x8"
                                      "a\xff\xd9\xff\xda\0",
                                      8));
    return {{"JPEG", "jpeg", plain, {}},
            {"JPEG, progressive", "jpeg", buffer.data(), {}},
            {"JPEG, grey",
             "jpeg",
             pictureFile(colours.convertToFormat(QImage::Format_Grayscale8), "jpeg"),
             {}},
            {"JPEG with bytes after its end", "jpeg", plain + "some more\xff\xd8", {}},
            {"JPEG with a thumbnail", "jpeg", withThumbnail, {}},
            {"JPEG with filled-up markers and a comment", "jpeg", filled, {}}};
}

// One frame of a GIF file with the indices of image, in codes of nine bits that stand for a pixel.
QByteArray gifFrame(const QImage &image)
{
    QByteArray codes;
    quint32 waiting = 0;
    int bits = 0;
    const auto put = [&](quint32 code) {
        waiting |= code << bits;
        for (bits += 9; bits >= 8; bits -= 8, waiting >>= 8)
            codes += char(waiting & 0xff);
    };
    put(256);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            put(image.constScanLine(y)[x]);
    }
    put(257);
    codes += char(waiting);
    QByteArray frame = "," + little(0, 4) + little(quint32(image.width()), 2)
                       + little(quint32(image.height()), 2) + '\0' + '\x8';
    for (qsizetype at = 0; at < codes.size(); at += 100) {
        const QByteArray block = codes.sliced(at, qMin<qsizetype>(100, codes.size() - at));
        frame += char(block.size()) + block;
    }
    return frame + '\0';
}

QList<SamplePicture> gifs()
{
    const QImage image = indexed();
    const QByteArray control("!\xf9\4\0\x0a\0\0\0", 8);
    QByteArray start = "GIF89a" + little(sampleSize.width(), 2) + little(sampleSize.height(), 2)
                       + QByteArray("\xf3\0\0", 3);
    for (const QRgb colour : image.colorTable())
        start += QByteArray(1, char(qRed(colour))) + char(qGreen(colour)) + char(qBlue(colour));
    const QByteArray comment("!\xfe\5hello\0", 9);
    const QByteArray loop("!\xff\x0bNETSCAPE2.0\3\1\0\0\0", 19);
    QByteArray old = start;
    old.replace(0, 6, "GIF87a");
    return {{"GIF", "gif", old + gifFrame(image) + ';', image},
            {"GIF with a comment", "gif", start + comment + control + gifFrame(image) + ';', image},
            {"GIF, animated", "gif",
             start + loop + control + gifFrame(image) + control + gifFrame(image.mirrored()) + ';',
             image},
            {"GIF with bytes after its end", "gif", old + gifFrame(image) + "; more", image}};
}

QList<SamplePicture> anymaps()
{
    const QImage colours = coloured();
    const QImage grey = colours.convertToFormat(QImage::Format_Grayscale8);
    const QImage mono = colours.convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
    QByteArray bits = "P1\n# bits\n13 9\n";
    QByteArray greys = "P2 13 # wide\n9\n255\n";
    QByteArray plain = "P3 13 9 255\n";
    QByteArray deep = "P5 13 9 65535\n";
    QByteArray deepColours = "P6 13 9 65535\n";
    for (int y = 0; y < sampleSize.height(); ++y) {
        for (int x = 0; x < sampleSize.width(); ++x) {
            const QRgb colour = colours.pixel(x, y);
            const int bit = qGray(mono.pixel(x, y)) == 0;
            bits += QByteArray::number(bit) + ' ';
            greys += QByteArray::number(qGray(grey.pixel(x, y))) + (x == 12 ? '\n' : ' ');
            deep += QByteArray(2, char(qGray(grey.pixel(x, y))));
            for (const int value : {qRed(colour), qGreen(colour), qBlue(colour)}) {
                plain += QByteArray::number(value) + (x == 12 ? "\n" : "  ");
                deepColours += QByteArray(2, char(value));
            }
        }
    }
    return {{"PBM", "pbm", pictureFile(mono, "pbm"), mono},
            {"PGM", "pgm", pictureFile(grey, "pgm"), grey},
            {"PPM", "ppm", pictureFile(colours, "ppm"), colours},
            {"PBM in text", "pbm", bits, mono},
            {"PGM in text", "pgm", greys, grey},
            {"PPM in text", "ppm", plain, colours},
            {"PGM of 16 bits", "pgm", deep, grey.convertToFormat(QImage::Format_Grayscale16)},
            {"PPM of 16 bits", "ppm", deepColours, colours},
            {"PPM with bytes after its end", "ppm", pictureFile(colours, "ppm") + "more", colours}};
}

// The directory comes first, so that the file ends with its pixels.
QByteArray tiffFile(const QImage &image, bool bigEndian, bool big)
{
    const auto number = [&](quint64 value, int size) {
        QByteArray bytes(8, 0);
        if (!bigEndian)
            qToLittleEndian(value, bytes.data());
        else
            qToBigEndian(value << (64 - 8 * size), bytes.data());
        return bytes.first(size);
    };
    const int word = big ? 8 : 4;
    const auto tag = [&](quint64 id, quint64 value) -> QByteArray {
        const bool isShort = id == 258 || id == 259 || id == 262 || id == 277;
        QByteArray bytes = number(value, isShort ? 2 : 4);
        bytes.append(word - bytes.size(), 0);
        return number(id, 2) + number(isShort ? 3 : 4, 2) + number(1, word) + bytes;
    };
    constexpr int tags = 9;
    const int start = big ? 16 : 8;
    const int data = start + (big ? 8 + tags * 20 + 8 : 2 + tags * 12 + 4);
    QByteArray pixels;
    for (int y = 0; y < image.height(); ++y)
        pixels.append(reinterpret_cast<const char *>(image.constScanLine(y)), image.width());
    QByteArray header(bigEndian ? "MM" : "II");
    if (big)
        header += number(43, 2) + number(8, 2) + number(0, 2) + number(quint64(start), 8);
    else
        header += number(42, 2) + number(quint64(start), 4);
    return header + number(tags, big ? 8 : 2) + tag(256, quint64(image.width()))
           + tag(257, quint64(image.height())) + tag(258, 8) + tag(259, 1) + tag(262, 1)
           + tag(273, quint64(data)) + tag(277, 1) + tag(278, quint64(image.height()))
           + tag(279, quint64(pixels.size())) + number(0, word) + pixels;
}

// What was usual before, and what other systems have.
QList<SamplePicture> others()
{
    const QImage mono = coloured().convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
    const QByteArray footer = QByteArray(8, 0) + QByteArray("TRUEVISION-XFILE.\0", 18);
    QByteArray tga = QByteArray("\0\0\2\0\0\0\0\0\0\0\0\0\x0d\0\x09\0\x18\0", 18);
    for (int i = 0; i < 13 * 9 * 3; ++i)
        tga += char(i * 7);
    QByteArray cursor = pictureFile(coloured(), "ico");
    cursor.replace(2, 1, "\2");
    // Three channels of 256 bytes in two runs each.
    const QByteArray runs("\xff\x11\xfb\x22\xff\x33\xfb\x44\xff\x55\xfb\x66", 12);
    const QByteArray icns = QByteArray("icns\0\0\0\x1cis32\0\0\0\x14", 16) + runs;
    const QImage square = picturePattern(QImage::Format_ARGB32).scaled(16, 16);
    return {{"XBM", "xbm", pictureFile(mono, "xbm"), {}},
            {"XPM", "xpm", pictureFile(coloured(), "xpm"), {}},
            {"WBMP", "wbmp", pictureFile(mono, "wbmp"), {}},
            {"ICNS", "icns", pictureFile(square, "icns"), {}},
            {"ICNS with runs", "icns", icns, {}},
            {"CUR", "cur", cursor, {}},
            {"TGA", "tga", tga + footer, {}}};
}

QList<SamplePicture> tiffs()
{
    const QImage grey = coloured().convertToFormat(QImage::Format_Grayscale8);
    QList<SamplePicture> samples{
        {"TIFF, directory first", "tiff", tiffFile(grey, false, false), grey},
        {"TIFF, big-endian", "tiff", tiffFile(grey, true, false), grey},
        {"TIFF with long offsets", "tiff", tiffFile(grey, false, true), grey}};
    for (const int compression : {0, 1}) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "tiff");
        writer.setCompression(compression);
        writer.write(coloured());
        samples.append(
            {compression == 0 ? "TIFF" : "TIFF, compressed", "tiff", buffer.data(), coloured()});
    }
    return samples;
}

} // namespace

QImage picturePattern(QImage::Format format)
{
    QImage image(37, 23, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y,
                                QColor(x * 6, y * 11, (x * y) % 256, (x + y) % 3 ? 255 : x * 6));
    }
    return image.convertToFormat(format);
}

QByteArray pictureFile(const QImage &image, const char *format, int quality)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, format, quality) ? buffer.data() : QByteArray();
}

QList<SamplePicture> samplePictures()
{
    const QImage colours = coloured();
    QImage commented = colours;
    commented.setText(QStringLiteral("Comment"), QStringLiteral("a structure"));
    QList<SamplePicture> samples{
        {"PNG", "png", pictureFile(colours, "png"), colours},
        {"PNG with a palette", "png", pictureFile(indexed(), "png"), indexed()},
        {"PNG with a comment", "png", pictureFile(commented, "png"), colours},
        {"BMP", "bmp", pictureFile(colours, "bmp"), colours},
        {"WebP", "webp", pictureFile(colours, "webp", 50), {}},
        {"WebP, lossless", "webp", pictureFile(colours, "webp", 100), colours}};
    samples += sampleBitmaps() + jpegs() + gifs() + anymaps() + tiffs() + sampleIcons() + others();
    // Not every machine has all formats.
    const QList<QByteArray> readable = QImageReader::supportedImageFormats();
    samples.removeIf([&](const SamplePicture &sample) {
        return sample.file.isEmpty() || !readable.contains(sample.format);
    });
    return samples;
}

void dirtyHeap([[maybe_unused]] unsigned char byte)
{
#ifndef ZORAVEL_OTHER_HEAP
    mallopt(M_PERTURB, byte ^ 0xff);
    // Small pieces that were given back are handed out again as they are.
    std::vector<void *> pieces;
    for (std::size_t size = 16; size <= 1040; size += 16) {
        for (int i = 0; i < 3; ++i) {
            pieces.push_back(std::malloc(size));
            std::memset(pieces.back(), byte, size);
        }
    }
    for (void *piece : pieces)
        std::free(piece);
#endif
}

// SPDX-License-Identifier: GPL-3.0-or-later
// Refusing a picture of any format that is cut off, damaged or claims too much, against decoding a
// good one of four megapixels. tst_picturelimits holds the memory that it takes.
#include "benchmarks/measure.h"
#include "pictures/picture.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>

#include <cstdlib>

namespace
{

// Neither plain nor noise, as pictures are.
QByteArray fileOf(int width, int height, const char *format)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < width; ++x)
            line[x] = qRgb(x >> 3, y >> 3, (x * y) >> 9);
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        std::exit(2);
    return buffer.data();
}

bool refusing(const char *what, const QByteArray &bad, const QByteArray &good)
{
    if (!decodePicture(bad).isNull() || decodePicture(good).isNull())
        std::exit(2);
    const Ratio ratio = measureRatio(
        7, [&] { keep(decodePicture(bad)); }, [&] { keep(decodePicture(good)); });
    return report(what, ratio, "decoding 4 megapixels", 0.5);
}

} // namespace

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    qputenv("QT_LOGGING_RULES", "qt.gui.imageio*=false");
    const QByteArray good = fileOf(2000, 2000, "png");
    const QByteArray large = fileOf(5700, 5700, "png"); // as large as can be
    QByteArray damaged = large;
    damaged[damaged.size() - 5000] = char(damaged[damaged.size() - 5000] ^ 1);
    QByteArray claiming = good;
    claiming.replace(16, 8, QByteArray("\0\0\xff\xff\0\0\xff\xff", 8));

    bool kept = refusing("refusing 32 megapixels that are cut off", large.chopped(100), good);
    kept = refusing("refusing 32 megapixels with a wrong byte", damaged, good) && kept;
    kept = refusing("refusing what claims 65,535 squared", claiming, good) && kept;
    kept = refusing("refusing a bitmap of 30,000 squared without its pixels",
                    QByteArray("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x30\x75\0\0\x30\x75\0\0"
                               "\1\0\x18\0",
                               30)
                        + QByteArray(1024, 0),
                    good)
           && kept;
    for (const char *format : {"jpeg", "webp"}) {
        if (!QImageWriter::supportedImageFormats().contains(format))
            continue;
        // Writing WebP takes long.
        const int side = QByteArrayView(format) == "webp" ? 3000 : 5500;
        const QByteArray file = fileOf(side, side, format);
        for (const int percent : {10, 90}) {
            const QByteArray what = QByteArrayLiteral("refusing ") + format + " of "
                                    + QByteArray::number(side) + " squared, cut off at "
                                    + QByteArray::number(percent) + " %";
            kept =
                refusing(what.constData(), file.first(file.size() * percent / 100), good) && kept;
        }
    }
    const QByteArray gif("GIF89a\x7c\x15\x7c\x15\xf0\0\0\0\0\0\xff\xff\xff,\0\0\0\0"
                         "\x7c\x15\x7c\x15\0\x2",
                         30);
    kept =
        refusing("refusing gif of 5500 squared, cut off", gif + QByteArray(5'000'000, '\x44'), good)
        && kept;
    kept = refusing("refusing text", QByteArray(10'000'000, 'x'), good) && kept;
    return kept ? 0 : 1;
}

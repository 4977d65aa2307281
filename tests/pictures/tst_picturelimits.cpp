// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/picture.h"
#include "support/samplepictures.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QTest>
#include <QtEndian>

#include <cstdlib>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

quint32 crcOf(const QByteArray &bytes)
{
    quint32 crc = 0xffffffff;
    for (const char byte : bytes) {
        crc ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xedb88320 : 0);
    }
    return ~crc;
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, 0);
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray littleEndian(quint32 value, int size)
{
    QByteArray bytes(4, 0);
    qToLittleEndian(value, bytes.data());
    return bytes.first(size);
}

QByteArray pngChunk(const QByteArray &name, const QByteArray &data)
{
    return bigEndian(quint32(data.size())) + name + data + bigEndian(crcOf(name + data));
}

// depth in bits a channel; colour type 0 grey, 2 RGB, 3 palette, 6 RGBA.
QByteArray pngOf(quint32 width, quint32 height, char depth, char colourType,
                 const QByteArray &chunks)
{
    return "\x89PNG\r\n\x1a\n"
           + pngChunk("IHDR", bigEndian(width) + bigEndian(height) + QByteArray(1, depth)
                                  + QByteArray(1, colourType) + QByteArray(3, 0))
           + chunks + pngChunk("IEND", {});
}

// As PNG compresses: 64 MB of zeros in a few kilobytes.
QByteArray compressedZeros(int megabytes)
{
    return qCompress(QByteArray(qsizetype(megabytes) << 20, 0), 9).sliced(4);
}

// By how many bytes the peak memory of a separate process grows when it decodes these bytes; -1 if
// it gets a picture, -2 if it dies.
qint64 memoryToRefuse(const QByteArray &bytes)
{
    int ends[2];
    if (pipe(ends) != 0)
        return -2;
    const pid_t child = fork();
    if (child == 0) {
        const auto peak = [] {
            rusage usage{};
            getrusage(RUSAGE_SELF, &usage);
            return qint64(usage.ru_maxrss) * 1024;
        };
        const qint64 before = peak();
        const bool refused = decodePicture(bytes).isNull();
        const qint64 grown = refused ? peak() - before : -1;
        const bool told = write(ends[1], &grown, sizeof grown) == sizeof grown;
        _exit(told ? 0 : 1);
    }
    close(ends[1]);
    qint64 grown = -2;
    if (read(ends[0], &grown, sizeof grown) != sizeof grown)
        grown = -2;
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return grown;
}

} // namespace

// What pictures of strangers may cost.
class TestPictureLimits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // What the decoders complain of is no concern here.
        qputenv("QT_LOGGING_RULES", "qt.gui.imageio*=false");
        (void)decodePicture(pictureFile(picturePattern(QImage::Format_ARGB32), "PNG"));
    }

    void aBombIsRefusedWithLittleMemory_data()
    {
        QTest::addColumn<QByteArray>("file");
        const auto row = [](const char *name, const QByteArray &file) {
            QTest::newRow(name) << file;
        };
        const QByteArray zeros = compressedZeros(64);
        row("PNG that claims 60,000 squared", pngOf(60000, 60000, 8, 6, pngChunk("IDAT", zeros)));
        row("PNG of 62 megapixels in 32 bits", pngOf(7900, 7900, 8, 6, pngChunk("IDAT", zeros)));
        row("PNG of 62 megapixels in 64 bits", pngOf(7900, 7900, 16, 6, pngChunk("IDAT", zeros)));
        row("PNG of 100 megapixels in one bit each",
            pngOf(10000, 10000, 1, 0, pngChunk("IDAT", compressedZeros(13))));
        // 32 megapixels, which are within the limits.
        const QByteArray good = pngOf(5700, 5700, 8, 2, pngChunk("IDAT", compressedZeros(93)));
        row("large PNG that is cut off", good.chopped(100));
        row("large PNG without its end", good.chopped(12));
        QByteArray damaged = good;
        damaged[damaged.size() / 2] = char(damaged[damaged.size() / 2] ^ 1);
        row("large PNG with a wrong byte", damaged);
        row("PNG of one very long line", pngOf(1'000'000'000, 1, 8, 0, pngChunk("IDAT", zeros)));
        row("PNG with a bomb for a colour profile and no pixels",
            pngOf(10, 10, 8, 2, pngChunk("iCCP", QByteArray("x\0\0", 3) + zeros)));
        row("PNG with a bomb for a text and no pixels",
            pngOf(10, 10, 8, 2, pngChunk("zTXt", QByteArray("x\0\0", 3) + zeros)));
        row("PNG with an international text and no pixels",
            pngOf(10, 10, 8, 2, pngChunk("iTXt", QByteArray("x\0\1\0\0\0", 6) + zeros)));
        row("BMP that claims 30,000 squared", "BM" + littleEndian(0, 4) + littleEndian(0, 4)
                                                  + littleEndian(54, 4) + littleEndian(40, 4)
                                                  + littleEndian(30000, 4) + littleEndian(30000, 4)
                                                  + littleEndian(1, 2) + littleEndian(24, 2)
                                                  + QByteArray(24, 0) + QByteArray(1000, 0));
        row("compressed BMP that claims 16,000 squared",
            "BM" + littleEndian(0, 4) + littleEndian(0, 4) + littleEndian(54 + 1024, 4)
                + littleEndian(40, 4) + littleEndian(16000, 4) + littleEndian(16000, 4)
                + littleEndian(1, 2) + littleEndian(8, 2) + littleEndian(1, 4) + QByteArray(20, 0)
                + QByteArray(1024, 0) + QByteArray(1000, 0));
        const QByteArray inner = pngOf(60000, 60000, 8, 6, pngChunk("IDAT", zeros));
        row("icon with a PNG that claims 60,000 squared",
            QByteArray("\0\0\1\0\1\0\0\0\0\0\1\0\x20\0", 14)
                + littleEndian(quint32(inner.size()), 4) + littleEndian(22, 4) + inner);
        row("GIF that claims 65,535 squared",
            QByteArray("GIF89a\xff\xff\xff\xff\xf0\0\0\0\0\0\xff\xff\xff,\0\0\0\0\xff\xff\xff\xff"
                       "\0\2\2\x44\1\0;",
                       33));
        row("PGM that claims 60,000 squared", "P5 60000 60000 255\n" + QByteArray(1000, 0));
        row("PBM that claims 60,000 squared", "P4 60000 60000\n" + QByteArray(1000, 0));
        row("PPM that claims 11,000 squared", "P6 11000 11000 255\n" + QByteArray(1000, 0));
        row("XPM that claims 60,000 squared",
            "/* XPM */\nstatic char *x[] = {\n\"60000 60000 2 1\",\n\"a c #000000\",\n"
            "\"b c #ffffff\",\n\"ab\"};\n");
        row("XPM that claims 10,000 squared",
            "/* XPM */\nstatic char *x[] = {\n\"10000 10000 2 1\",\n\"a c #000000\",\n"
            "\"b c #ffffff\",\n\"ab\"};\n");
        row("XBM that claims 30,000 squared",
            "#define x_width 30000\n#define x_height 30000\nstatic char x_bits[] = { 0x00 };\n");
        row("TGA that claims 65,535 squared",
            QByteArray("\0\0\2\0\0\0\0\0\0\0\0\0\xff\xff\xff\xff\x18\0", 18) + QByteArray(1000, 0));
        row("TIFF that claims 60,000 squared", tiff(60000, 60000));
        row("WebP that claims 16,384 squared",
            QByteArray("RIFF") + littleEndian(100, 4) + "WEBPVP8X" + littleEndian(10, 4)
                + QByteArray("\0\0\0\0\xff\x3f\0\xff\x3f\0", 10) + QByteArray(80, 0));
        row("JPEG that claims 65,500 squared", jpeg(65500, 65500));
        // As much work each as one over all pixels.
        QByteArray scans = jpeg(5000, 5000);
        scans.insert(scans.size() - 2,
                     QByteArray("\xff\xda\0\x8\1\1\0\0\x3f\0\x55", 11).repeated(100));
        row("JPEG of very many scans", scans);
        row("compressed drawing", QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\3", 10) + zeros);
        const QByteArray start =
            "<svg xmlns='http://www.w3.org/2000/svg' width='900' height='900'>";
        QByteArray uses = start + "<g id='a0'><rect width='9' height='9'/></g>";
        for (int i = 1; i < 60; ++i) {
            const QByteArray use = "<use href='#a" + QByteArray::number(i - 1) + "'/>";
            uses += "<g id='a" + QByteArray::number(i) + "'>" + use + use + "</g>";
        }
        row("drawing that uses things 2^60 times", uses + "</svg>");
        row("drawing that uses itself", start + "<g id='a'><use href='#a'/></g></svg>");
        row("drawing nested 100,000 deep", start + QByteArray("<g>").repeated(100'000)
                                               + QByteArray("</g>").repeated(100'000) + "</svg>");
        QByteArray chain = start + "<g id='a0'/>";
        for (int i = 1; i < 50'000; ++i)
            chain += "<g id='a" + QByteArray::number(i) + "'><use href='#a"
                     + QByteArray::number(i - 1) + "'/></g>";
        row("drawing with a chain of 50,000 uses", chain + "</svg>");
        row("drawing that covers itself 100,000 times",
            start + QByteArray("<rect width='900' height='900'/>").repeated(100'000) + "</svg>");
        row("drawing with entities",
            "<!DOCTYPE svg [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'>"
            "<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'><!ENTITY d '&c;&c;&c;&c;&c;&c;&c;'>"
            "<!ENTITY e '&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;'>]>"
                + start + "<text>&e;</text></svg>");
        row("MNG that loops",
            "\x8aMNG\r\n\x1a\n"
                + pngChunk("MHDR", bigEndian(37) + bigEndian(23) + QByteArray(20, 0))
                + pngChunk("LOOP", QByteArray(1, 0) + bigEndian(0x7fffffff))
                + pngChunk("ENDL", QByteArray(1, 0)) + pngChunk("MEND", {}));
        row("drawing", "<svg xmlns='http://www.w3.org/2000/svg' width='60000' height='60000'/>");
    }
    void aBombIsRefusedWithLittleMemory()
    {
        QFETCH(QByteArray, file);
#ifdef __SANITIZE_ADDRESS__
        constexpr qint64 limit = 256 << 20; // the sanitizer keeps what is freed for a while
#else
        constexpr qint64 limit = 64 << 20;
#endif
        const qint64 grown = memoryToRefuse(file);
        QVERIFY2(grown >= 0, grown == -1 ? "it is a picture" : "the process died");
        QVERIFY2(grown < limit, QByteArray::number(grown).constData());
    }

    void aLargeFileThatIsCutOffIsRefusedWithLittleMemory_data()
    {
        QTest::addColumn<QByteArray>("file");
        // 30 megapixels, which are within the limits; fewer where writing takes long.
        for (const auto &[format, side] :
             QList<QPair<const char *, int>>{{"jpeg", 5500}, {"webp", 3000}}) {
            if (!QImageWriter::supportedImageFormats().contains(format))
                continue;
            const QByteArray file = pictureFile(large(side), format);
            for (const int percent : {10, 50, 90, 99})
                QTest::addRow("%s at %d %%", format, percent)
                    << file.first(file.size() * percent / 100);
        }
        QTest::newRow("gif at 90 %") << QByteArray("GIF89a\x7c\x15\x7c\x15\xf0\0\0\0\0\0"
                                                   "\xff\xff\xff,\0\0\0\0\x7c\x15\x7c\x15\0\x2",
                                                   30)
                                            + QByteArray(1'000'000, '\x44');
    }
    void aLargeFileThatIsCutOffIsRefusedWithLittleMemory()
    {
        QFETCH(QByteArray, file);
        const qint64 grown = memoryToRefuse(file);
        QVERIFY2(grown >= 0, grown == -1 ? "it is a picture" : "the process died");
        // Nothing is decoded.
        QVERIFY2(grown < 8 << 20, QByteArray::number(grown).constData());
    }

    // The check before decoding must refuse nothing that can be decoded.
    void whatCanBeDecodedOfADamagedPngIsDecoded()
    {
        const QByteArray file = pictureFile(picturePattern(QImage::Format_ARGB32), "PNG");
        const auto agrees = [](const QByteArray &bytes) {
            return decodePicture(bytes) == QImage::fromData(bytes);
        };
        for (qsizetype size = 0; size <= file.size(); ++size)
            QVERIFY2(agrees(file.first(size)), QByteArray::number(size).constData());
        for (qsizetype at = 0; at < file.size(); ++at) {
            for (const int change : {1, 0x20, 0x80, 0xff}) {
                QByteArray bytes = file;
                bytes[at] = char(bytes[at] ^ change);
                QVERIFY2(agrees(bytes), QByteArray::number(at).constData());
            }
        }
    }

    void theMeasureSeesWhatAPictureTakes()
    {
        // Large but within the limits: it is decoded.
        QImage large(5000, 5000, QImage::Format_RGB32);
        large.fill(Qt::red);
        QCOMPARE(memoryToRefuse(pictureFile(large, "PNG")), -1);
        // So is one that does not compress.
        QByteArray noise(9 << 20, 0);
        for (qsizetype i = 0; i < noise.size(); ++i)
            noise[i] = char(i * 2654435761u >> 13);
        const QImage grey(reinterpret_cast<const uchar *>(noise.constData()), 3000, 3000, 3000,
                          QImage::Format_Grayscale8);
        QVERIFY(memoryToRefuse(pictureFile(grey, "PNG")) == -1);
    }

    void whatIsOverTheLimitIsRefusedInEveryFormat_data()
    {
        QTest::addColumn<QByteArray>("format");
        // Those that write one bit a pixel quickly.
        for (const char *format : {"png", "bmp", "pbm", "xbm", "tiff"}) {
            if (QImageWriter::supportedImageFormats().contains(format))
                QTest::newRow(format) << QByteArray(format);
        }
    }
    void whatIsOverTheLimitIsRefusedInEveryFormat()
    {
        QFETCH(QByteArray, format);
        // Lines of whole words: Qt leaves what fills them up unset, and looks at it.
        QImage large(8032, 7969, QImage::Format_Mono);
        large.fill(1);
        const QByteArray file = pictureFile(large, format.constData());
        QVERIFY(!file.isEmpty());
        QVERIFY(decodePicture(file).isNull());
    }

    // Its height is negative, but its pixels are as many.
    void aBitmapFromTheTopDownIsNoSmaller()
    {
        constexpr qsizetype heightField = 22; // bytes from the start of the file
        QImage large(16'000, 16'000, QImage::Format_Mono);
        large.fill(1);
        QByteArray file = pictureFile(large, "bmp");
        qToLittleEndian<qint32>(-large.height(), file.data() + heightField);
        const qint64 grown = memoryToRefuse(file);
        QVERIFY2(grown >= 0 && grown < 8 << 20, QByteArray::number(grown).constData());
    }

    // A picture that cannot be written would be gone after the next save.
    void aPictureThatIsTooLongToBeSavedIsRefused()
    {
        constexpr int longest = 1'000'000;
        for (const QSize side : {QSize(1, 0), QSize(0, 1)}) {
            for (const int length : {longest, longest + 1}) {
                const bool fits = length == longest;
                QImage image(side * length + QSize(1, 1) - side, QImage::Format_RGB32);
                image.fill(Qt::darkCyan);
                QCOMPARE(image.width() * image.height(), length);
                QByteArray bytes;
                QBuffer buffer(&bytes);
                QVERIFY(image.save(&buffer, "BMP"));
                QCOMPARE(decodePicture(bytes).isNull(), !fits);
                QCOMPARE(canBeReloaded(image), fits);
                QCOMPARE(isSamePicture(decodePicture(encodePng(image)), image), fits);
            }
        }
    }

private:
    static QByteArray tiff(quint32 width, quint32 height)
    {
        const auto tag = [](quint32 id, quint32 type, quint32 value) -> QByteArray {
            return littleEndian(id, 2) + littleEndian(type, 2) + littleEndian(1, 4)
                   + littleEndian(value, 4);
        };
        return QByteArray("II*\0\x8\0\0\0", 8) + littleEndian(9, 2) + tag(256, 4, width)
               + tag(257, 4, height) + tag(258, 3, 8) + tag(259, 3, 1) + tag(262, 3, 1)
               + tag(273, 4, 200) + tag(277, 3, 1) + tag(278, 4, height) + tag(279, 4, 1000)
               + QByteArray(1200, 0);
    }

    static QImage large(int side)
    {
        QImage image(side, side, QImage::Format_RGB32);
        for (int y = 0; y < side; ++y) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
            for (int x = 0; x < side; ++x)
                line[x] = qRgb(x >> 5, y >> 5, 80);
        }
        return image;
    }

    // A real one with another size in its frame header.
    static QByteArray jpeg(quint16 width, quint16 height)
    {
        QByteArray file = pictureFile(picturePattern(QImage::Format_RGB32), "JPEG");
        const qsizetype frame = file.indexOf("\xff\xc0");
        qToBigEndian(height, file.data() + frame + 5);
        qToBigEndian(width, file.data() + frame + 7);
        return file;
    }
};

QTEST_MAIN(TestPictureLimits)
#include "tst_picturelimits.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/picture.h"
#include "support/samplepictures.h"

#include <QColorSpace>
#include <QCoreApplication>
#include <QImageReader>
#include <QLoggingCategory>
#include <QPair>
#include <QSet>
#include <QTest>
#include <QVariant>

namespace
{

using namespace Qt::Literals::StringLiterals;

// Everything of two images that is kept, and not only what is compared as the same picture.
bool isIdentical(const QImage &left, const QImage &right)
{
    return left == right && left.format() == right.format()
           && left.colorTable() == right.colorTable();
}

// What decodePicture() makes of bytes with some byte all over the free heap, and with another.
QPair<QImage, QImage> decodedTwice(const QByteArray &bytes)
{
    dirtyHeap(0x35);
    const QImage first = decodePicture(bytes);
    dirtyHeap(0xca);
    const QImage second = decodePicture(bytes);
    return {first, second};
}

// All pixels but the last.
QImage withoutTheLastPixel(QImage image)
{
    if (!image.isNull())
        image.setPixel(image.width() - 1, image.height() - 1, 0);
    return image;
}

void addSamples()
{
    QTest::addColumn<SamplePicture>("sample");
    for (const SamplePicture &sample : samplePictures())
        QTest::newRow(sample.name.constData()) << sample;
}

} // namespace

// Which files are taken for pictures, of every format: whole ones with their pixels, others not, or
// at least always as the same.
class TestPictureFormats : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::addLibraryPath(QStringLiteral(STRANGER_PLUGINS));
        // What the decoders complain of is no concern here.
        QLoggingCategory::setFilterRules(u"default=false\nqt.gui.imageio*=false\n"
                                         "qt.imageformats*=false"_s);
    }

    void thePluginOfAnotherIsThere()
    {
        QVERIFY(QImageReader::supportedImageFormats().contains("stranger"));
        QVERIFY(!QImage::fromData("whatever"_ba).isNull());
        QVERIFY(QCoreApplication::instance()->property("strangerHasRead").toBool());
        QCoreApplication::instance()->setProperty("strangerHasRead", {});
    }

    void onlyTheDecodersOfTheListAreUsed()
    {
        QVERIFY(decodePicture("whatever"_ba).isNull());
        QVERIFY(decodePicture("stranger"_ba).isNull());
        QVERIFY(decodePicture({}).isNull());
        for (const SamplePicture &sample : samplePictures()) {
            (void)decodePicture(sample.file);
            (void)decodePicture(sample.file.first(sample.file.size() / 2));
            (void)decodePicture(sample.file.first(12));
            (void)decodePicture(sample.file.first(12) + QByteArray(500, 'x'));
        }
        QVERIFY(!QCoreApplication::instance()->property("strangerHasRead").toBool());
    }

    void otherFormatsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QImage image = samplePictures().constFirst().image;
        for (const char *format : {"xbm", "xpm", "wbmp", "icns"}) {
            const QByteArray file = pictureFile(image, format);
            if (!file.isEmpty())
                QTest::newRow(format) << file;
        }
        QTest::newRow("tga") << QByteArray("\0\0\2\0\0\0\0\0\0\0\0\0\2\0\1\0\x18\0abcdef", 24);
        QByteArray cursor = pictureFile(image, "ico");
        cursor[2] = 2;
        QTest::newRow("cur") << cursor;
        QTest::newRow("svg") << "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"_ba;
    }
    void otherFormatsAreRefused()
    {
        QFETCH(QByteArray, file);
        QVERIFY(decodePicture(file).isNull());
    }

    void everyFormatIsAmongTheSamples()
    {
        QSet<QByteArray> formats;
        for (const SamplePicture &sample : samplePictures())
            formats.insert(sample.format);
        for (const char *format : {"png", "bmp", "jpeg", "gif", "pbm", "pgm", "ppm", "ico"})
            QVERIFY2(formats.contains(format), format);
    }

    void aGoodFileOfEveryFormIsTakenWithItsPixels_data() { addSamples(); }
    void aGoodFileOfEveryFormIsTakenWithItsPixels()
    {
        QFETCH(SamplePicture, sample);
        const auto [image, second] = decodedTwice(sample.file);
        QVERIFY(!image.isNull());
        QVERIFY(isIdentical(image, second));
        const QImage expected = sample.image.isNull()
                                    ? QImage::fromData(sample.file, sample.format.constData())
                                    : sample.image;
        QVERIFY(isSamePicture(image, expected));
        QVERIFY(isSamePicture(decodePicture(encodePng(image)), image));
    }

    void aPictureOfAnyKindKeepsItsPixels_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("format");
        const QList<QByteArray> readable = QImageReader::supportedImageFormats();
        const QList<QPair<const char *, QImage::Format>> kinds{
            {"one bit", QImage::Format_Mono},
            {"palette", QImage::Format_Indexed8},
            {"grey", QImage::Format_Grayscale8},
            {"deep grey", QImage::Format_Grayscale16},
            {"16 bits", QImage::Format_RGB16},
            {"colour", QImage::Format_RGB32},
            {"alpha", QImage::Format_ARGB32},
            {"premultiplied alpha", QImage::Format_ARGB32_Premultiplied},
            {"deep colour", QImage::Format_RGBX64},
            {"deep alpha", QImage::Format_RGBA64}};
        for (const char *format :
             {"png", "jpeg", "bmp", "pbm", "pgm", "ppm", "webp", "tiff", "ico"}) {
            for (const auto &[kind, pixels] : kinds) {
                const QByteArray file = pictureFile(picturePattern(pixels), format);
                if (readable.contains(format) && !file.isEmpty())
                    QTest::addRow("%s, %s", format, kind) << file << QByteArray(format);
            }
        }
    }
    void aPictureOfAnyKindKeepsItsPixels()
    {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, format);
        const QImage original = QImage::fromData(file, format.constData());
        QVERIFY(!original.isNull());
        const QImage loaded = decodePicture(file);
        QVERIFY(isSamePicture(loaded, original));
        const QImage again = decodePicture(encodePng(loaded));
        QCOMPARE(again.size(), original.size());
        QVERIFY(isSamePicture(again, original));
        // Not by the comparison that the program itself uses, too.
        const bool deep = original.depth() > 32 || original.format() == QImage::Format_Grayscale16;
        const QImage::Format common = deep ? QImage::Format_RGBA64 : QImage::Format_ARGB32;
        QImage left = again.convertToFormat(common);
        QImage right = original.convertToFormat(common);
        left.setColorSpace({});
        right.setColorSpace({});
        if (original.format() != QImage::Format_ARGB32_Premultiplied
            && original.format() != QImage::Format_RGBA64_Premultiplied)
            QCOMPARE(left, right);
    }

    void aFileThatIsCutOffIsRefusedOrWhole_data() { addSamples(); }
    void aFileThatIsCutOffIsRefusedOrWhole()
    {
        QFETCH(SamplePicture, sample);
        const QImage whole = decodePicture(sample.file);
        // Where the last number of a text ends does not show.
        const bool isText = sample.name.contains("in text");
        int refused = 0;
        for (qsizetype size = 0; size < sample.file.size(); ++size) {
            const auto [image, second] = decodedTwice(sample.file.first(size));
            QVERIFY2(isIdentical(image, second), QByteArray::number(size).constData());
            if (image.isNull())
                ++refused;
            else if (isText)
                QVERIFY2(isIdentical(withoutTheLastPixel(image), withoutTheLastPixel(whole)),
                         QByteArray::number(size).constData());
            else
                QVERIFY2(isIdentical(image, whole), QByteArray::number(size).constData());
        }
        QCOMPARE_GE(refused, sample.file.size() - 20);
    }

    void aChangedByteGivesTheSameEachTime_data() { addSamples(); }
    void aChangedByteGivesTheSameEachTime()
    {
        QFETCH(SamplePicture, sample);
        for (qsizetype at = 0; at < sample.file.size(); ++at) {
            for (const int change : {1, 0x90, 0xff}) {
                QByteArray bytes = sample.file;
                bytes[at] = char(bytes[at] ^ change);
                const auto [image, second] = decodedTwice(bytes);
                const QByteArray where =
                    QByteArray::number(at) + " ^ " + QByteArray::number(change);
                QVERIFY2(isIdentical(image, second), where.constData());
                if (!image.isNull() && image.width() * image.height() < 100'000)
                    QVERIFY2(isSamePicture(decodePicture(encodePng(image)), image),
                             where.constData());
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestPictureFormats)
#include "tst_pictureformats.moc"

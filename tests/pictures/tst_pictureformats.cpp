// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/picture.h"
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

// Everything that is stored in two images, beyond what makes them the same picture.
bool isIdentical(const QImage &left, const QImage &right)
{
    return left == right && left.format() == right.format()
           && left.colorTable() == right.colorTable();
}

// The results of decodePicture() with the free heap full of one byte, and of another.
QPair<QImage, QImage> decodedTwice(const QByteArray &bytes)
{
    dirtyHeap(0x35);
    const QImage first = decodePicture(bytes);
    dirtyHeap(0xca);
    const QImage second = decodePicture(bytes);
    return {first, second};
}

// Whether each pixel is that of the whole picture or empty: the decoder shows what there is of the
// file.
bool showsWhatIsThere(const QImage &image, const QImage &whole)
{
    if (image.size() != whole.size())
        return false;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool isNothing = image.depth() <= 8 ? image.pixelIndex(x, y) == 0
                                                      : (image.pixel(x, y) & 0xffffff) == 0;
            if (!isNothing && image.pixel(x, y) != whole.pixel(x, y))
                return false;
        }
    }
    return true;
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

// Which files of each format are accepted: whole ones with their pixels; of others none, or always
// the same pixels.
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

    // Other files may be decoded by any plugin, but no plugin sees a file of a known format.
    void aPluginOfAnotherIsAskedForUnknownFormatsOnly()
    {
        QCoreApplication *const application = QCoreApplication::instance();
        QVERIFY(decodePicture("whatever"_ba).isNull());
        application->setProperty("strangerTakesAll", true);
        QCOMPARE(decodePicture("whatever"_ba).size(), QSize(3, 3));
        QVERIFY(application->property("strangerHasRead").toBool());
        application->setProperty("strangerHasRead", {});
        for (const SamplePicture &sample : samplePictures()) {
            (void)decodePicture(sample.file);
            (void)decodePicture(sample.file.first(sample.file.size() / 2));
            if (sample.format != "wbmp")
                QVERIFY2(!application->property("strangerHasRead").toBool(),
                         sample.name.constData());
            application->setProperty("strangerHasRead", {});
        }
        application->setProperty("strangerTakesAll", {});
    }

    void aDrawingHasItsOwnSize()
    {
        const QByteArray svg = "<?xml version='1.0'?><!-- drawn --><svg "
                               "xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
                               "<defs><rect id='r' width='10' height='30' fill='#00f'/></defs>"
                               "<rect width='20' height='30' fill='#f00'/>"
                               "<use href='#r' x='0'/><g transform='translate(30,0)'>"
                               "<use xlink:href='#r' xmlns:xlink='http://www.w3.org/1999/xlink'/>"
                               "</g></svg>";
        const QImage image = decodePicture(svg);
        QCOMPARE(image.size(), QSize(40, 30));
        QCOMPARE(image.pixel(15, 15), qRgb(255, 0, 0));
        QCOMPARE(image.pixel(25, 15), qRgba(0, 0, 0, 0));
        QCOMPARE(image.pixel(35, 15), qRgb(0, 0, 255));
        const QImage again = decodePicture(encodePng(image));
        QVERIFY(isSamePicture(again, image));
        QVERIFY(!decodePicture("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                               "<text y='9'>H<tspan>2</tspan></text></svg>")
                     .isNull());
        QVERIFY(decodePicture("<html><svg width='9' height='9'/></html>").isNull());
    }

    void aPictureWithinADrawingIsKept()
    {
        QImage red(4, 4, QImage::Format_RGB32);
        red.fill(Qt::red);
        const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8' "
                               "xmlns:xlink='http://www.w3.org/1999/xlink'><image width='4' "
                               "height='4' xlink:href='data:image/png;base64,"
                               + pictureFile(red, "png").toBase64() + "'/></svg>";
        const QImage image = decodePicture(svg);
        QCOMPARE(image.pixel(2, 2), qRgb(255, 0, 0));
        QCOMPARE(image.pixel(6, 6), qRgba(0, 0, 0, 0));
    }

    void everyFormatIsAmongTheSamples()
    {
        QSet<QByteArray> formats;
        for (const SamplePicture &sample : samplePictures())
            formats.insert(sample.format);
        for (const char *format : {"png", "bmp", "jpeg", "gif", "pbm", "pgm", "ppm", "ico", "xbm",
                                   "xpm", "wbmp", "icns", "cur", "tga"})
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
        const bool isPartShown = sample.format == "bmp" || sample.format == "xbm";
        int refused = 0;
        for (qsizetype size = 0; size < sample.file.size(); ++size) {
            const auto [image, second] = decodedTwice(sample.file.first(size));
            QVERIFY2(isIdentical(image, second), QByteArray::number(size).constData());
            if (image.isNull())
                ++refused;
            else if (isText)
                QVERIFY2(isIdentical(withoutTheLastPixel(image), withoutTheLastPixel(whole)),
                         QByteArray::number(size).constData());
            else if (isPartShown)
                // Of a run that is cut off the decoder takes the end of the file for a colour.
                QVERIFY2(sample.name.contains("runs") ? image.size() == whole.size()
                                                      : showsWhatIsThere(image, whole),
                         QByteArray::number(size).constData());
            else
                QVERIFY2(isIdentical(image, whole), QByteArray::number(size).constData());
        }
        if (!isPartShown)
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

QTEST_MAIN(TestPictureFormats)
#include "tst_pictureformats.moc"

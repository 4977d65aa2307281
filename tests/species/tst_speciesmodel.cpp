// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/picture.h"
#include "species/speciesmodel.h"
#include "support/warnings.h"

#include <QAbstractItemModelTester>
#include <QBuffer>
#include <QColorSpace>
#include <QElapsedTimer>
#include <QImageReader>
#include <QImageWriter>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QMetaEnum>
#include <QPixmap>
#include <QSignalSpy>
#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto imageKey = "StructuralFormula"_L1;

// A record, checked by Qt's model tester.
struct Fixture {
    SpeciesModel model{nullptr};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QSignalSpy changes{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy imageChanges{&model, &SpeciesModel::imageChanged};

    [[nodiscard]] QModelIndex cell(int column) const { return model.index(0, column); }
    [[nodiscard]] QVariant value(int column) const
    {
        return model.data(cell(column), Qt::DisplayRole);
    }
    void forget()
    {
        changes.clear();
        imageChanges.clear();
    }
};

// Keeps the decoders' own complaints about broken files out of the log.
class QuietDecoders
{
    Q_DISABLE_COPY_MOVE(QuietDecoders)

public:
    QuietDecoders() { QLoggingCategory::setFilterRules(u"qt.gui.imageio*=false"_s); }
    ~QuietDecoders() { QLoggingCategory::setFilterRules({}); }
};

// A different colour in every pixel, with full and no transparency among them.
QImage colours()
{
    QImage image(9, 7, QImage::Format_RGBA64);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y,
                                QColor::fromRgba64(static_cast<quint16>(x * 7'001),
                                                   static_cast<quint16>(y * 9'001),
                                                   static_cast<quint16>((x + y) * 4'001),
                                                   static_cast<quint16>(65'535 - x * y * 1'365)));
    }
    return image;
}

QImage filled(const QColor &colour, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(5, 4, format);
    image.fill(colour);
    return image;
}

QByteArray imageFile(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, format))
        QTest::qFail("the image cannot be written", __FILE__, __LINE__);
    return bytes;
}

QJsonObject withImage(const QByteArray &file)
{
    return {{imageKey, QString::fromLatin1(file.toBase64())}};
}

QImage savedImage(const QJsonObject &species)
{
    const QByteArray base64 = species.value(imageKey).toString().toLatin1();
    return QImage::fromData(QByteArray::fromBase64(base64), "PNG");
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<char>(value >> (24 - 8 * i));
    return bytes;
}

// The check sum of a PNG chunk.
quint32 crc32(const QByteArray &bytes)
{
    quint32 crc = 0xffffffff;
    for (const char byte : bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) ? 0xedb88320 : 0);
    }
    return ~crc;
}

QByteArray pngChunk(const QByteArray &nameAndData)
{
    return bigEndian(static_cast<quint32>(nameAndData.size() - 4)) + nameAndData
           + bigEndian(crc32(nameAndData));
}

QByteArray pngOfClaimedSize(quint32 side)
{
    // Eight bits a channel, red, green, blue and alpha; then the first bytes of compressed data.
    return "\x89PNG\r\n\x1a\n"_ba
           + pngChunk("IHDR" + bigEndian(side) + bigEndian(side) + QByteArray("\x08\x06\0\0\0", 5))
           + pngChunk(QByteArray("IDAT\x78\x9c\x63\0\0", 9)) + pngChunk("IEND"_ba);
}

// One grey pixel of linear colours: gamma 1 and the primaries of sRGB, told number by number.
QByteArray pngWithPrimaries()
{
    QByteArray primaries("cHRM");
    for (const quint32 coordinate : {31270, 32900, 64000, 33000, 30000, 60000, 15000, 6000})
        primaries += bigEndian(coordinate);
    return "\x89PNG\r\n\x1a\n"_ba
           + pngChunk("IHDR" + bigEndian(1) + bigEndian(1) + QByteArray("\x08\x02\0\0\0", 5))
           + pngChunk("gAMA" + bigEndian(100'000)) + pngChunk(primaries)
           + pngChunk("IDAT" + QByteArray::fromHex("789c63686868000003040181"))
           + pngChunk("IEND"_ba);
}

QByteArray littleEndian(quint32 value)
{
    QByteArray bytes = bigEndian(value);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

QByteArray bmpOfClaimedSize(quint32 side)
{
    // One plane of 32 bits, not compressed.
    return "BM" + littleEndian(70) + littleEndian(0) + littleEndian(54) + littleEndian(40)
           + littleEndian(side) + littleEndian(side) + QByteArray("\1\0\x20\0", 4)
           + QByteArray(40, '\0');
}

QJsonObject wholeSpecies()
{
    return {{u"Name"_s, u"Water α 🧪 מים"_s},
            {u"Aliases"_s, u"aqua<br>oxidane"_s},
            {u"Mass"_s, 18.01528},
            {u"Formula"_s, u"H<sub>2</sub>O"_s},
            {u"InChI"_s, u"InChI=1S/H2O/h1H2"_s},
            {u"CAS"_s, u"7732-18-5"_s},
            {u"PubChem"_s, u"962"_s},
            {u"AIE"_s, u"12.62"_s},
            {u"VIE"_s, u"12.6<sup>+</sup>"_s},
            {u"AIE_Comment"_s, u"adiabatic & so on"_s},
            {u"VIE_Comment"_s, u"vertical &amp; so on"_s},
            {imageKey, QString::fromLatin1(encodePng(filled(Qt::green)).toBase64())}};
}

QString keyOf(int column)
{
    return speciesFields[static_cast<std::size_t>(column)].key;
}

constexpr int massColumn = 2;

} // namespace

class TestSpeciesModel : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void hasOneRowOfTwelveUnsetCells()
    {
        const Fixture f;
        QCOMPARE(f.model.rowCount(), 1);
        QCOMPARE(f.model.columnCount(), 12);
        for (int column = 0; column < 12; ++column)
            QVERIFY(!f.value(column).isValid());
        QVERIFY(f.model.getImage().isNull());
    }

    void declaresTheImageSignalOnly()
    {
        const QMetaObject &meta = SpeciesModel::staticMetaObject;
        QCOMPARE(meta.className(), "SpeciesModel");
        QCOMPARE(meta.superClass(), &MyStandardItemModel::staticMetaObject);
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        const QMetaMethod method = meta.method(meta.methodOffset());
        QCOMPARE(method.methodSignature(), "imageChanged()"_ba);
        QCOMPARE(method.methodType(), QMetaMethod::Signal);
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    }

    void theColumnsHaveTheirKeys_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("key");
        const QStringList keys{u"Name"_s,        u"Aliases"_s,     u"Mass"_s,
                               u"Formula"_s,     u"InChI"_s,       u"CAS"_s,
                               u"PubChem"_s,     u"AIE"_s,         u"VIE"_s,
                               u"AIE_Comment"_s, u"VIE_Comment"_s, u"StructuralFormula"_s};
        for (int column = 0; column < keys.size(); ++column)
            QTest::newRow(qPrintable(keys[column])) << column << keys[column];
    }
    void theColumnsHaveTheirKeys()
    {
        QFETCH(int, column);
        QFETCH(QString, key);
        Fixture f;
        f.model.loadFromJson({{key, wholeSpecies().value(key)}});
        for (int other = 0; other < 12; ++other) {
            const bool set = other == column || other == massColumn;
            QCOMPARE(f.value(other).isValid(), set);
        }
        QCOMPARE(f.model.toJson().value(key), wholeSpecies().value(key));
    }

    void anEmptyObjectLoadsAsNothingAndIsWrittenAsElevenEmptyFields()
    {
        Fixture f;
        f.model.loadFromJson({});
        for (int column = 0; column < 12; ++column)
            QCOMPARE(f.value(column).toString(), column == massColumn ? u"0"_s : u""_s);
        QCOMPARE(f.value(massColumn), QVariant(0.0));
        QVERIFY(f.model.getImage().isNull());

        const QJsonObject written = f.model.toJson();
        QCOMPARE(written.keys(), (QStringList{u"AIE"_s, u"AIE_Comment"_s, u"Aliases"_s, u"CAS"_s,
                                              u"Formula"_s, u"InChI"_s, u"Mass"_s, u"Name"_s,
                                              u"PubChem"_s, u"VIE"_s, u"VIE_Comment"_s}));
        for (auto it = written.begin(); it != written.end(); ++it)
            QCOMPARE(it.value(), it.key() == u"Mass"_s ? QJsonValue(0) : QJsonValue(u""_s));
    }

    void lineEndsBecomeBreaksInTheAliasesOnly()
    {
        Fixture f;
        f.model.loadFromJson({{u"Aliases"_s, u"a\r\nb\nc"_s}, {u"Name"_s, u"x\ny"_s}});
        QCOMPARE(f.value(1), QVariant(u"a<br>b<br>c"_s));
        QCOMPARE(f.value(0), QVariant(u"x\ny"_s));
    }

    void theMassIsLoadedFromANumberOnly_data()
    {
        QTest::addColumn<QJsonValue>("json");
        QTest::addColumn<double>("mass");
        QTest::newRow("number") << QJsonValue(12.01) << 12.01;
        QTest::newRow("whole number") << QJsonValue(12) << 12.0;
        QTest::newRow("negative") << QJsonValue(-1.5) << -1.5;
        QTest::newRow("tiny") << QJsonValue(5e-324) << 5e-324;
        QTest::newRow("large") << QJsonValue(1.7e308) << 1.7e308;
        QTest::newRow("text") << QJsonValue(u"12.01"_s) << 0.0;
        QTest::newRow("truth value") << QJsonValue(true) << 0.0;
        QTest::newRow("null") << QJsonValue() << 0.0;
        QTest::newRow("list") << QJsonValue(QJsonArray{12.01}) << 0.0;
        QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << 0.0;
    }
    void theMassIsLoadedFromANumberOnly()
    {
        QFETCH(QJsonValue, json);
        QFETCH(double, mass);
        Fixture f;
        f.model.loadFromJson({{u"Mass"_s, json}});
        QCOMPARE(f.value(massColumn).metaType(), QMetaType::fromType<double>());
        QCOMPARE(f.value(massColumn).toDouble(), mass);
    }

    void anIonisationEnergyGivenAsANumberLoadsAsEmptyText()
    {
        Fixture f;
        f.model.loadFromJson({{u"AIE"_s, 9.5}});
        QCOMPARE(f.value(7).toString(), u""_s);
        QCOMPARE(f.model.toJson().value("AIE"_L1), QJsonValue(u""_s));
    }

    void foreignTagsAreNotWritten()
    {
        Fixture f;
        QVERIFY(f.model.setData(f.cell(0), u"H<sub>2</sub>O<span>x</span>"_s));
        QCOMPARE(f.model.toJson().value("Name"_L1), QJsonValue(u"H<sub>2</sub>Ox"_s));
    }

    void foreignTagsAreTakenOutOfEveryText_data()
    {
        QTest::addColumn<int>("column");
        for (int column = 0; column < 11; ++column) {
            if (column != massColumn)
                QTest::newRow(qPrintable(keyOf(column))) << column;
        }
    }
    void foreignTagsAreTakenOutOfEveryText()
    {
        QFETCH(int, column);
        Fixture f;
        QVERIFY(f.model.setData(f.cell(column), u"<p>a<sup>b</sup></p>"_s));
        QCOMPARE(f.value(column), QVariant(u"<p>a<sup>b</sup></p>"_s));
        QCOMPARE(f.model.toJson().value(keyOf(column)), QJsonValue(u"a<sup>b</sup>"_s));
    }

    void aMassTextIsWrittenAsItsNumberOrAsZero_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("mass");
        QTest::newRow("number") << u"12.5"_s << 12.5;
        QTest::newRow("whole number") << u"13"_s << 13.0;
        QTest::newRow("signed") << u"-1.5"_s << -1.5;
        QTest::newRow("exponent") << u"1.2e2"_s << 120.0;
        QTest::newRow("blanks around") << u" 12.5 "_s << 12.5;
        QTest::newRow("decimal comma") << u"12,5"_s << 0.0;
        QTest::newRow("thousands") << u"1,200.5"_s << 0.0;
        QTest::newRow("subscript") << u"1<sub>2</sub>"_s << 0.0;
        QTest::newRow("unit") << u"12.5 amu"_s << 0.0;
        QTest::newRow("two numbers") << u"12 5"_s << 0.0;
        QTest::newRow("line break") << u"12.5<br>"_s << 0.0;
        QTest::newRow("hexadecimal") << u"0x10"_s << 0.0;
        QTest::newRow("words") << u"about ten"_s << 0.0;
        QTest::newRow("Arabic-Indic digits") << u"١٢"_s << 0.0;
        QTest::newRow("huge") << QString(100'000, u'<') << 0.0;
        // JSON has no number for these.
        QTest::newRow("infinity") << u"inf"_s << 0.0;
        QTest::newRow("minus infinity") << u"-inf"_s << 0.0;
        QTest::newRow("not a number") << u"nan"_s << 0.0;
        QTest::newRow("beyond the largest number") << u"1e999"_s << 0.0;
    }
    void aMassTextIsWrittenAsItsNumberOrAsZero()
    {
        QFETCH(QString, text);
        QFETCH(double, mass);
        Fixture f;
        QVERIFY(f.model.setData(f.cell(massColumn), text));
        const QJsonDocument written =
            QJsonDocument::fromJson(QJsonDocument(f.model.toJson()).toJson());
        QCOMPARE(written[u"Mass"_s], QJsonValue(mass));
    }

    void anEmptyImageTextClearsTheImageAndIsWrittenAsEmptyText()
    {
        Fixture f;
        f.model.loadFromJson(wholeSpecies());
        QVERIFY(!f.model.getImage().isNull());
        f.forget();
        f.model.loadFromJson({{imageKey, u""_s}});
        QVERIFY(f.model.getImage().isNull());
        QCOMPARE(f.imageChanges.count(), 1);
        QCOMPARE(f.model.toJson().value(imageKey), QJsonValue(u""_s));
    }

    void loadingTheSameImageTwiceAnnouncesItOnce()
    {
        Fixture f;
        f.model.loadFromJson(withImage(encodePng(colours())));
        f.model.loadFromJson(withImage(encodePng(colours())));
        QCOMPARE(f.imageChanges.count(), 1);
    }

    void aWriteUnderAnotherRoleIsRefused_data()
    {
        QTest::addColumn<int>("role");
        const QMetaEnum roles = QMetaEnum::fromType<Qt::ItemDataRole>();
        for (int i = 0; i < roles.keyCount(); ++i) {
            if (roles.value(i) != Qt::EditRole)
                QTest::newRow(roles.key(i)) << roles.value(i);
        }
    }
    void aWriteUnderAnotherRoleIsRefused()
    {
        QFETCH(int, role);
        Fixture f;
        QVERIFY(!f.model.setData(f.cell(3), u"H2O"_s, role));
        QVERIFY(!f.model.setData(f.cell(speciesImageColumn), filled(Qt::red), role));
        QVERIFY(!f.model.data(f.cell(3), role).isValid());
        QVERIFY(!f.model.data(f.cell(speciesImageColumn), role).isValid());
        QCOMPARE(f.changes.count(), 0);
        QCOMPARE(f.imageChanges.count(), 0);
    }

    void emptyTextIntoAnUnsetCellIsRefused()
    {
        Fixture f;
        QVERIFY(!f.model.setData(f.cell(0), u""_s));
        QCOMPARE(f.changes.count(), 0);
        QVERIFY(!f.value(0).isValid());
    }

    void aWriteToNoCellIsRefused()
    {
        Fixture f;
        QVERIFY(!f.model.setData({}, u"x"_s));
        QVERIFY(!f.model.setData(f.model.index(1, speciesImageColumn), filled(Qt::red)));
        QVERIFY(!f.model.setData(f.cell(12), u"x"_s));
        QCOMPARE(f.changes.count(), 0);
    }

    void aValueOfAWrongTypeLoadsAsTheDefault_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QJsonValue>("json");
        const QList<std::pair<const char *, QJsonValue>> values{
            {"null", QJsonValue()},
            {"truth value", true},
            {"number", 9.5},
            {"text", u"x"_s},
            {"list", QJsonArray{u"x"_s}},
            {"object", QJsonObject{{u"x"_s, u"x"_s}}}};
        for (int column = 0; column < 12; ++column) {
            for (const auto &[name, value] : values) {
                const bool right = column == massColumn ? value.isDouble() : value.isString();
                if (!right || column == speciesImageColumn)
                    QTest::addRow("%s, %s", qPrintable(keyOf(column)), name) << column << value;
            }
        }
    }
    void aValueOfAWrongTypeLoadsAsTheDefault()
    {
        QFETCH(int, column);
        QFETCH(QJsonValue, json);
        Fixture expected;
        expected.model.loadFromJson(wholeSpecies());
        QJsonObject species = wholeSpecies();
        species.remove(keyOf(column));
        expected.model.loadFromJson(species);

        Fixture f;
        f.model.loadFromJson(wholeSpecies());
        species.insert(keyOf(column), json);
        f.model.loadFromJson(species);
        for (int other = 0; other < 11; ++other)
            QCOMPARE(f.value(other), expected.value(other));
        QCOMPARE(f.model.getImage(), expected.model.getImage());
        if (column == massColumn)
            QCOMPARE(f.value(column), QVariant(0.0));
        else
            QCOMPARE(f.model.toJson().value(keyOf(column)), QJsonValue(u""_s));
    }

    void whatIsWrittenLoadsAsTheSame()
    {
        Fixture f;
        f.model.loadFromJson(wholeSpecies());
        Fixture second;
        second.model.loadFromJson(f.model.toJson());
        QCOMPARE(second.model.toJson(), f.model.toJson());
        QCOMPARE(savedImage(second.model.toJson()), savedImage(wholeSpecies()));
        for (int column = 0; column < 11; ++column)
            QCOMPARE(second.value(column), f.value(column));
    }

    void theOrderOfTheKeysDoesNotCount()
    {
        const QByteArray forwards = R"({"Name": "a", "Aliases": "b", "Mass": 1, "VIE": "2"})";
        const QByteArray backwards = R"({"VIE": "2", "Mass": 1, "Aliases": "b", "Name": "a"})";
        Fixture first;
        first.model.loadFromJson(QJsonDocument::fromJson(forwards).object());
        Fixture second;
        second.model.loadFromJson(QJsonDocument::fromJson(backwards).object());
        QCOMPARE(first.model.toJson().value("VIE"_L1), QJsonValue(u"2"_s));
        QCOMPARE(first.model.toJson(), second.model.toJson());
    }

    void unknownKeysAreNeitherKeptNorInTheWay()
    {
        QJsonObject species = wholeSpecies();
        species.insert(u"name"_s, u"in another case"_s);
        species.insert(u"Colour"_s, u"none"_s);
        species.insert(u""_s, u"no key"_s);
        Fixture f;
        f.model.loadFromJson(species);
        QCOMPARE(f.model.toJson().keys(), wholeSpecies().keys());
        QCOMPARE(f.value(0).toString(), wholeSpecies().value("Name"_L1).toString());
    }

    void onlyWhatDiffersIsAnnouncedOnLoading()
    {
        Fixture f;
        f.model.loadFromJson(wholeSpecies());
        QCOMPARE(f.changes.count(), 12);
        f.forget();
        f.model.loadFromJson(wholeSpecies());
        QCOMPARE(f.changes.count(), 0);
        QJsonObject species = wholeSpecies();
        species.insert(u"CAS"_s, u"7732-18-4"_s);
        f.model.loadFromJson(species);
        QCOMPARE(f.changes.count(), 1);
        QCOMPARE(f.changes.at(0).at(0).toModelIndex(), f.cell(5));
        QCOMPARE(f.imageChanges.count(), 0);
    }

    void loadingReplacesWhatTheTextEditorsPutIntoTheMass()
    {
        Fixture f;
        QVERIFY(f.model.setData(f.cell(massColumn), u"12.5"_s));
        f.forget();
        f.model.loadFromJson({{u"Mass"_s, 12.5}});
        QCOMPARE(f.value(massColumn).metaType(), QMetaType::fromType<double>());
        QVERIFY(f.model.setData(f.cell(massColumn), u"12.5"_s));
        QCOMPARE(f.changes.count(), 2);
    }

    void hugeTextsAreKept()
    {
        const QString text = u"α<sub>2</sub>🧪"_s.repeated(8'000);
        Fixture f;
        f.model.loadFromJson({{u"Name"_s, text}});
        QCOMPARE(f.value(0), QVariant(text));
        QCOMPARE(f.model.toJson().value("Name"_L1), QJsonValue(text));
    }

    void anInvalidValueInEveryCellResetsTheRecord()
    {
        Fixture f;
        f.model.loadFromJson(wholeSpecies());
        f.forget();
        for (int column = 0; column < 12; ++column)
            QVERIFY(f.model.setData(f.cell(column), QVariant()));
        for (int column = 0; column < 11; ++column)
            QVERIFY(!f.value(column).isValid());
        QVERIFY(f.value(speciesImageColumn).value<QImage>().isNull());
        QCOMPARE(f.changes.count(), 12);
        QCOMPARE(f.imageChanges.count(), 1);

        const QJsonObject written = f.model.toJson();
        QCOMPARE(written.size(), 12);
        QCOMPARE(written.value("Mass"_L1), QJsonValue(0));
        QCOMPARE(written.value(imageKey), QJsonValue(u""_s));
    }

    // The image.

    void anImageIsAnnouncedWhenItCanBeReadBack()
    {
        Fixture f;
        QImage seen;
        connect(&f.model, &SpeciesModel::imageChanged, this, [&] { seen = f.model.getImage(); });
        const QImage image = filled(Qt::blue);
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), image));
        QCOMPARE(seen, image);
        QCOMPARE(f.imageChanges.count(), 1);
        QCOMPARE(f.changes.count(), 1);
        QCOMPARE(f.changes.at(0).at(0).toModelIndex(), f.cell(speciesImageColumn));
    }

    void theSameImageChangesNothingButIsTaken_data()
    {
        QTest::addColumn<QImage>("present");
        QTest::addColumn<QImage>("written");
        const QImage image = colours().convertToFormat(QImage::Format_ARGB32);
        QTest::newRow("both null") << QImage() << QImage();
        QTest::newRow("identical") << image << image.copy();
        QTest::newRow("premultiplied")
            << image << image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QTest::newRow("wider format") << filled(Qt::red) << filled(Qt::red, QImage::Format_RGBA64);
        QTest::newRow("palette") << filled(Qt::white)
                                 << filled(Qt::white).convertToFormat(QImage::Format_Indexed8);
        QTest::newRow("one bit") << filled(Qt::white)
                                 << filled(Qt::white).convertToFormat(QImage::Format_Mono);
        QTest::newRow("opaque alpha") << filled(Qt::red) << filled(Qt::red, QImage::Format_ARGB32);
        QTest::newRow("colour under full transparency")
            << filled(QColor(255, 0, 0, 0), QImage::Format_ARGB32)
            << filled(QColor(0, 0, 255, 0), QImage::Format_ARGB32);
        QImage tagged = image;
        tagged.setColorSpace(QColorSpace::SRgb);
        QTest::newRow("colour-space tag") << image << tagged;
        QImage noted = image;
        noted.setText(u"Author"_s, u"x"_s);
        noted.setDotsPerMeterX(9'999);
        QTest::newRow("texts and resolution") << image << noted;
    }
    void theSameImageChangesNothingButIsTaken()
    {
        QFETCH(QImage, present);
        QFETCH(QImage, written);
        Fixture f;
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), present));
        f.forget();
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), written));
        QCOMPARE(f.imageChanges.count(), 0);
        QCOMPARE(f.changes.count(), 0);
        QCOMPARE(f.model.getImage(), present);
    }

    void anotherImageIsStored_data()
    {
        QTest::addColumn<QImage>("present");
        QTest::addColumn<QImage>("written");
        const QImage image = filled(Qt::red);
        QImage onePixel = image;
        onePixel.setPixel(4, 3, qRgb(254, 0, 0));
        QTest::newRow("first") << QImage() << image;
        QTest::newRow("none") << image << QImage();
        QTest::newRow("one pixel by one step") << image << onePixel;
        QTest::newRow("translucent") << filled(Qt::red, QImage::Format_ARGB32)
                                     << filled(QColor(255, 0, 0, 254), QImage::Format_ARGB32);
        QTest::newRow("wider") << image << image.copy(0, 0, 6, 4);
        QTest::newRow("turned") << image << image.transformed(QTransform(0, 1, -1, 0, 0, 0));
        QImage deep(1, 1, QImage::Format_RGBA64);
        deep.fill(QColor::fromRgba64(1'000, 0, 0));
        QImage deeper(1, 1, QImage::Format_RGBA64);
        deeper.fill(QColor::fromRgba64(1'001, 0, 0));
        QTest::newRow("16 bits by one step") << deep << deeper;
        QTest::newRow("16 bits against 8")
            << deeper << deeper.convertToFormat(QImage::Format_RGB32);
    }
    void anotherImageIsStored()
    {
        QFETCH(QImage, present);
        QFETCH(QImage, written);
        Fixture f;
        f.model.setData(f.cell(speciesImageColumn), present);
        f.forget();
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), written));
        QCOMPARE(f.imageChanges.count(), 1);
        QCOMPARE(f.changes.count(), 1);
        QCOMPARE(f.model.getImage(), written);
    }

    void aPixmapIsTakenAsAnImage()
    {
        Fixture f;
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), QPixmap::fromImage(filled(Qt::red))));
        QCOMPARE(f.value(speciesImageColumn).metaType(), QMetaType::fromType<QImage>());
        QVERIFY(isSamePicture(f.model.getImage(), filled(Qt::red)));
    }

    void aValueThatIsNoImageClearsTheImage_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("invalid") << QVariant();
        QTest::newRow("text") << QVariant(u"x"_s);
        QTest::newRow("empty text") << QVariant(u""_s);
        QTest::newRow("number") << QVariant(1.0);
        QTest::newRow("the bytes of a file") << QVariant(encodePng(filled(Qt::red)));
        QTest::newRow("null image") << QVariant(QImage());
    }
    void aValueThatIsNoImageClearsTheImage()
    {
        QFETCH(QVariant, value);
        Fixture f;
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), value));
        QVERIFY(!f.value(speciesImageColumn).isValid());
        QCOMPARE(f.imageChanges.count(), 0);

        f.model.setData(f.cell(speciesImageColumn), filled(Qt::red));
        f.forget();
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), value));
        QCOMPARE(f.value(speciesImageColumn).metaType(), QMetaType::fromType<QImage>());
        QVERIFY(f.model.getImage().isNull());
        QCOMPARE(f.imageChanges.count(), 1);
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), value));
        QCOMPARE(f.imageChanges.count(), 1);
    }

    void aCellThatHoldsNoImageIsReadAsNoneAndNotWritten()
    {
        Fixture f;
        f.model.setItem(0, speciesImageColumn, new QStandardItem(u"text"_s));
        QVERIFY(f.model.getImage().isNull());
        QVERIFY(!f.model.toJson().contains(imageKey));
    }

    void anImageOfAnyPixelFormatIsUnchangedAfterSavingAndLoading_data()
    {
        QTest::addColumn<QImage>("image");
        const QMetaEnum formats = QMetaEnum::fromType<QImage::Format>();
        for (int format = QImage::Format_Invalid + 1; format < QImage::NImageFormats; ++format) {
            const QImage translucent = colours().convertToFormat(QImage::Format(format));
            const QImage opaque = colours()
                                      .convertToFormat(QImage::Format_RGB32)
                                      .convertToFormat(QImage::Format(format));
            const char *name = formats.valueToKey(format);
            QTest::addRow("%d %s, translucent", format, name) << translucent;
            QTest::addRow("%d %s, opaque", format, name) << opaque;
        }
    }
    void anImageOfAnyPixelFormatIsUnchangedAfterSavingAndLoading()
    {
        QFETCH(QImage, image);
        QVERIFY(!image.isNull());
        Fixture f;
        QVERIFY(f.model.setData(f.cell(speciesImageColumn), image));
        f.forget();
        f.model.loadFromJson(f.model.toJson());
        QCOMPARE(f.imageChanges.count(), 0);
    }

    void aPictureIsSavedInTheSameBytesHoweverOften_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QMetaEnum formats = QMetaEnum::fromType<QImage::Format>();
        for (int format = QImage::Format_Invalid + 1; format < QImage::NImageFormats; ++format)
            QTest::newRow(formats.valueToKey(format))
                << encodePng(colours().convertToFormat(QImage::Format(format)));
        QTest::newRow("lines that do not fill their bytes") << "P1 2 2 1 0 0 1\n"_ba;
        QImage linear = filled(Qt::darkCyan);
        linear.setColorSpace(
            QColorSpace(QColorSpace::Primaries::SRgb, QColorSpace::TransferFunction::Linear));
        QTest::newRow("linear colours") << imageFile(linear, "PNG");
        linear.setColorSpace(QColorSpace(QColorSpace::Primaries::DciP3D65, 1.8f));
        QTest::newRow("colours of a kind of their own") << imageFile(linear, "PNG");
        QTest::newRow("gamma and primaries") << pngWithPrimaries();
        constexpr qsizetype resolution = 38; // bytes from the start of a bitmap's file
        for (const QPoint perMetre : {QPoint(-1, -1), QPoint(-1, 3000), QPoint(3000, 0)}) {
            QByteArray bitmap = imageFile(colours(), "BMP");
            qToLittleEndian<qint32>(perMetre.x(), bitmap.data() + resolution);
            qToLittleEndian<qint32>(perMetre.y(), bitmap.data() + resolution + 4);
            QTest::addRow("a resolution of %d by %d", perMetre.x(), perMetre.y()) << bitmap;
        }
    }
    void aPictureIsSavedInTheSameBytesHoweverOften()
    {
        QFETCH(QByteArray, file);
        Fixture f;
        f.model.loadFromJson(withImage(file));
        QVERIFY(!f.model.getImage().isNull());
        const QJsonObject saved = f.model.toJson();
        Fixture again;
        again.model.loadFromJson(saved);
        QCOMPARE(again.model.toJson(), saved);
    }

    void sixteenBitsAChannelAreKept()
    {
        const QImage image = colours();
        Fixture f;
        f.model.loadFromJson(withImage(imageFile(image, "PNG")));
        const QImage saved = savedImage(f.model.toJson());
        QCOMPARE(saved.size(), image.size());
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                QCOMPARE(saved.pixelColor(x, y).rgba64(), image.pixelColor(x, y).rgba64());
        }
    }

    void anImageFileOfAnyFormatIsLoadedAndWrittenAsPng_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QList<QByteArray> readable = QImageReader::supportedImageFormats();
        QImage image = filled(Qt::black).scaled(16, 16);
        for (const char *format :
             {"png", "jpeg", "bmp", "pbm", "pgm", "ppm", "webp", "tiff", "ico"}) {
            if (readable.contains(format))
                QTest::newRow(format) << imageFile(image, format);
        }
        // One black pixel.
        QTest::newRow("gif") << QByteArray::fromBase64(
            "R0lGODlhAQABAIAAAAAAAP///yH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==");
    }
    void anImageFileOfAnyFormatIsLoadedAndWrittenAsPng()
    {
        QFETCH(QByteArray, file);
        Fixture f;
        f.model.loadFromJson(withImage(file));
        QCOMPARE(f.imageChanges.count(), 1);
        QCOMPARE(qGray(f.model.getImage().pixel(0, 0)), 0);
        const QImage saved = savedImage(f.model.toJson());
        QVERIFY(isSamePicture(saved, f.model.getImage()));
        f.forget();
        // As when the same picture is downloaded again.
        f.model.loadFromJson(withImage(file));
        f.model.loadFromJson(f.model.toJson());
        QCOMPARE(f.imageChanges.count(), 0);
    }

    void whatIsNotInTheAlphabetOfTheImageTextIsSkipped()
    {
        const QString base64 = wholeSpecies().value(imageKey).toString();
        QString lines;
        for (qsizetype i = 0; i < base64.size(); i += 20)
            lines += base64.mid(i, 20) + u" é🧪\r\n\t"_s;
        QVERIFY(lines.size() > base64.size());
        Fixture f;
        f.model.loadFromJson({{imageKey, lines}});
        QCOMPARE(savedImage(f.model.toJson()), savedImage(wholeSpecies()));
        QCOMPARE(f.imageChanges.count(), 1);
    }

    void bytesThatAreNoImageLoadAsNone_data()
    {
        QTest::addColumn<QString>("text");
        const QByteArray png = encodePng(colours());
        const QByteArray jpeg = imageFile(filled(Qt::red).scaled(64, 64), "JPEG");
        const auto row = [](const char *name, const QByteArray &file) {
            QTest::newRow(name) << QString::fromLatin1(file.toBase64());
        };
        QTest::newRow("not base64") << u"!!! ??? ###"_s;
        QTest::newRow("non-ASCII") << u"äöü 数据 🧪"_s;
        QTest::newRow("padding only") << u"===="_s;
        QTest::newRow("one character") << u"A"_s;
        QTest::newRow("a data address") << u"data:image/png;base64,"_s;
        QTest::newRow("100,000 tag openings") << QString(100'000, u'<');
        QTest::newRow("100,000 letters") << QString(100'000, u'A');
        row("text", "not an image");
        row("PNG signature", png.first(8));
        row("PNG cut off in the header", png.first(20));
        row("PNG behind other bytes", "x" + png);
        row("JPEG signature", jpeg.first(3));
        row("JPEG cut off in the header", jpeg.first(60));
        row("GIF header", "GIF89a");
        row("BMP header", "BM");
        row("empty PPM", "P6 0 0 255\n");
    }
    void bytesThatAreNoImageLoadAsNone()
    {
        QFETCH(QString, text);
        const QuietDecoders quiet;
        Fixture f;
        f.model.loadFromJson({{imageKey, text}});
        QVERIFY(f.model.getImage().isNull());
        QVERIFY(!f.value(speciesImageColumn).isValid());
        QVERIFY(!f.model.toJson().contains(imageKey));

        f.model.loadFromJson(wholeSpecies());
        f.forget();
        f.model.loadFromJson({{imageKey, text}});
        QVERIFY(f.model.getImage().isNull());
        QCOMPARE(f.imageChanges.count(), 1);
        QCOMPARE(f.model.toJson().value(imageKey), QJsonValue(u""_s));
    }

    void aDamagedFileLoadsAsAnImageOfItsSizeOrAsNone_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QSize>("size");
        const QByteArray png = imageFile(colours(), "PNG");
        const QByteArray jpeg = imageFile(colours().convertToFormat(QImage::Format_RGB32), "JPEG");
        for (const QByteArray &file : {png, jpeg}) {
            const char *name = file == png ? "PNG" : "JPEG";
            for (qsizetype size = 9; size < file.size(); size += 17)
                QTest::addRow("%s cut off at %d", name, int(size)) << file.first(size) << QSize();
            for (qsizetype at = 9; at < file.size(); at += 17) {
                QByteArray damaged = file;
                damaged[at] = static_cast<char>(~damaged[at]);
                QSize size = colours().size();
                // Where the file itself says another size, or none, that is what counts.
                const qsizetype frame = damaged.indexOf("\xff\xc0");
                if (file == jpeg && frame >= 0 && at >= frame && at < frame + 9)
                    size = {qFromBigEndian<quint16>(damaged.constData() + frame + 7),
                            qFromBigEndian<quint16>(damaged.constData() + frame + 5)};
                QTest::addRow("%s wrong at %d", name, int(at)) << damaged << size;
            }
        }
    }
    void aDamagedFileLoadsAsAnImageOfItsSizeOrAsNone()
    {
        QFETCH(QByteArray, file);
        QFETCH(QSize, size);
        const QuietDecoders quiet;
        Fixture f;
        f.model.loadFromJson(withImage(file));
        const QImage image = f.model.getImage();
        QVERIFY(image.isNull() || image.size() == size);
        QCOMPARE(f.imageChanges.count(), image.isNull() ? 0 : 1);
        QCOMPARE(f.model.toJson().contains(imageKey), !image.isNull());
        QVERIFY(isSamePicture(savedImage(f.model.toJson()), image));
    }

    void anImageThatClaimsToBeEnormousLoadsAsNoneAtOnce_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("PNG") << pngOfClaimedSize(65'000);
        // The most that the decoder takes for a size.
        QTest::newRow("BMP") << bmpOfClaimedSize(16'384);
        QTest::newRow("PPM") << "P6 65000 65000 255\nabc"_ba;
        QTest::newRow("smaller PPM") << "P6 32000 32000 255\nabc"_ba;
        QTest::newRow("PBM") << "P4 65000 65000\nabc"_ba;
        QTest::newRow("GIF") << QByteArray("GIF89a\xe8\xfd\xe8\xfd\xf0\0\0\0\0\0\xff\xff\xff,"
                                           "\0\0\0\0\xe8\xfd\xe8\xfd\0\2\2D\1\0;",
                                           35);
        QTest::newRow("XPM") << "/* XPM */\nstatic char *x[] = {\n\"65000 65000 1 1\",\n"
                                "\". c #000000\",\n\"....\"};\n"_ba;
    }
    void anImageThatClaimsToBeEnormousLoadsAsNoneAtOnce()
    {
        QFETCH(QByteArray, file);
        const QuietDecoders quiet;
        QElapsedTimer clock;
        clock.start();
        Fixture f;
        f.model.loadFromJson(withImage(file));
        QVERIFY(f.model.getImage().isNull());
        QCOMPARE(f.imageChanges.count(), 0);
        QCOMPARE_LT(clock.elapsed(), 5'000);
    }

    void theClaimedSizeIsAllThatIsWrongWithTheEnormousImages_data()
    {
        QTest::addColumn<QByteArray>("enormous");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QByteArray>("small");
        QTest::newRow("PNG") << pngOfClaimedSize(65'000) << QSize(65'000, 65'000) << QByteArray();
        QTest::newRow("BMP") << bmpOfClaimedSize(16'384) << QSize(16'384, 16'384)
                             << bmpOfClaimedSize(2);
        QTest::newRow("PPM") << "P6 32000 32000 255\nabc"_ba << QSize(32'000, 32'000)
                             << "P6 1 1 255\nabc"_ba;
    }
    void theClaimedSizeIsAllThatIsWrongWithTheEnormousImages()
    {
        QFETCH(QByteArray, enormous);
        QFETCH(QSize, size);
        QFETCH(QByteArray, small);
        QBuffer buffer;
        buffer.setData(enormous);
        QCOMPARE(QImageReader(&buffer).size(), size);
        QCOMPARE(decodePicture(small).isNull(), small.isEmpty());
    }

    // The functions of text.

    void onlySubSupAndBrTagsAreLeft_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("cleaned");
        const auto kept = [](const char *name, const QString &text) {
            QTest::newRow(name) << text << text;
        };
        kept("null", QString());
        kept("empty", u""_s);
        kept("plain", u"plain text"_s);
        kept("subscript", u"H<sub>2</sub>O"_s);
        kept("superscript", u"x<sup>2</sup>"_s);
        kept("break", u"a<br>b"_s);
        kept("closed break", u"a<br/>b<br />c"_s);
        kept("closing break", u"a</br>b"_s);
        kept("attribute", u"<sub class=x>a</sub>"_s);
        kept("attribute on a second line", u"<sub\nclass=x>a</sub>"_s);
        kept("hyphen behind the name", u"<br-x>"_s);
        kept("letter that is no word character behind the name", u"<subé>"_s);
        kept("entities", u"&amp;&lt;b&gt;&#65;"_s);
        kept("lone >", u"a>b"_s);
        kept("lone <", u"a<b"_s);
        kept("lone < at the end", u"a<"_s);
        kept("lone < behind a tag", u"<sub>a</sub><b"_s);
        kept("> before <", u"a>b<c"_s);
        kept("line ends", u"a\r\nb\nc"_s);
        kept("non-ASCII", u"α 数据 🧪 ספקטרום e\u0301"_s);
        kept("unclosed allowed tag", u"<sub"_s);

        QTest::newRow("span") << u"H<sub>2</sub>O<span>x</span>"_s << u"H<sub>2</sub>Ox"_s;
        QTest::newRow("attributes") << u"<a href=\"x\" title='y'>b</a>"_s << u"b"_s;
        QTest::newRow("upper case") << u"a<BR>b<SUB>c</SUB>d<Sup>e</Sup>"_s << u"abcde"_s;
        QTest::newRow("longer name") << u"<subscript>a</subscript><break>b"_s << u"ab"_s;
        QTest::newRow("digit behind the name") << u"<sub2>a</sub2><sup_>b"_s << u"ab"_s;
        QTest::newRow("blank before the name") << u"< sub>a</ sub>b< /sub>"_s << u"ab"_s;
        QTest::newRow("two slashes") << u"<//sub>a"_s << u"a"_s;
        QTest::newRow("nothing") << u"a<>b</>c"_s << u"abc"_s;
        QTest::newRow("comparison") << u"1<2 and 3>2"_s << u"12"_s;
        QTest::newRow("comment") << u"a<!-- b -->c"_s << u"ac"_s;
        QTest::newRow("comment with a tag") << u"a<!-- <sub> -->c"_s << u"a -->c"_s;
        QTest::newRow("declaration") << u"<!DOCTYPE html><?xml?>a"_s << u"a"_s;
        QTest::newRow("tag inside a tag") << u"<b<sub>a"_s << u"a"_s;
        QTest::newRow("allowed tag that swallows another") << u"<sub<b>a"_s << u"<suba"_s;
        QTest::newRow("tags that leave a tag") << u"<<b>sub>a"_s << u"sub>a"_s;
        QTest::newRow("over lines") << u"a<b\r\nc\nd>e"_s << u"ae"_s;
        QTest::newRow("script") << u"<script>alert(1)</script>"_s << u"alert(1)"_s;
        QTest::newRow("non-ASCII tag") << u"a<β>b<数据 x='🧪'>c"_s << u"abc"_s;
        QTest::newRow("null character") << QString(u"a<b"_s + QChar(u'\0') + u">c"_s) << u"ac"_s;
        const QString half(QChar(0xd83e));
        QTest::newRow("lone surrogate before a tag")
            << QString(half + u"<b>a"_s) << QString(half + u"a"_s);
        QTest::newRow("lone surrogate behind a tag")
            << QString(u"<b>a"_s + half) << QString(u"a"_s + half);
        QTest::newRow("lone surrogate in a tag") << QString(u"<b"_s + half + u">a"_s) << u"a"_s;
        QTest::newRow("byte order mark at the start") << u"\ufeffH<i>x</i>"_s << u"\ufeffHx"_s;
        QTest::newRow("byte order marks")
            << u"\ufeff\ufeff<b>\ufeff</b>"_s << u"\ufeff\ufeff\ufeff"_s;
        QTest::newRow("byte order mark and lone surrogate")
            << QString(u"\ufeff"_s + half + u"<b>a"_s) << QString(u"\ufeff"_s + half + u"a"_s);
    }
    void onlySubSupAndBrTagsAreLeft()
    {
        QFETCH(QString, text);
        QFETCH(QString, cleaned);
        QCOMPARE(cleanHtmlContent(text), cleaned);
    }

    void hugeTextsAreCleanedAtOnce_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qsizetype>("cleanedSize");
        const auto row = [](const char *name, const QString &text, qsizetype size) {
            QTest::newRow(name) << text << size;
        };
        row("tag openings", QString(100'000, u'<'), 100'000);
        row("tag openings and one end", QString(100'000, u'<') + u'>', 0);
        row("one end and tag openings", u'>' + QString(100'000, u'<'), 100'001);
        row("tag ends", QString(100'000, u'>'), 100'000);
        row("letters", QString(100'000, u'x'), 100'000);
        row("foreign tags", u"<b>"_s.repeated(100'000), 0);
        row("allowed tags", u"<sub>"_s.repeated(100'000), 500'000);
        row("openings of allowed tags", u"<sub"_s.repeated(100'000), 400'000);
        row("openings of allowed tags and one end", u"<sub"_s.repeated(100'000) + u'>', 400'001);
        row("openings of foreign tags", u"<b "_s.repeated(100'000), 300'000);
        row("openings of comments", u"<!--"_s.repeated(100'000), 400'000);
        row("one long tag", u"<b "_s + QString(1'000'000, u'x') + u'>', 0);
        row("non-ASCII", u"🧪<β>"_s.repeated(100'000), 200'000);
    }
    void hugeTextsAreCleanedAtOnce()
    {
        QFETCH(QString, text);
        QFETCH(qsizetype, cleanedSize);
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(cleanHtmlContent(text).size(), cleanedSize);
        QCOMPARE_LT(clock.elapsed(), 5'000);
    }

    void lineEndsBecomeBreaks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("converted");
        QTest::newRow("null") << QString() << QString();
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("none") << u"a b"_s << u"a b"_s;
        QTest::newRow("LF") << u"a\nb"_s << u"a<br>b"_s;
        QTest::newRow("CR LF") << u"a\r\nb"_s << u"a<br>b"_s;
        QTest::newRow("both") << u"a\r\nb\nc"_s << u"a<br>b<br>c"_s;
        QTest::newRow("lone CR") << u"a\rb"_s << u"a\rb"_s;
        QTest::newRow("LF CR") << u"a\n\rb"_s << u"a<br>\rb"_s;
        QTest::newRow("CR CR LF") << u"a\r\r\nb"_s << u"a\r<br>b"_s;
        QTest::newRow("empty lines") << u"\n\r\n\n"_s << u"<br><br><br>"_s;
        QTest::newRow("break already there") << u"a<br>\nb"_s << u"a<br><br>b"_s;
        QTest::newRow("other separators")
            << u"a\u2028b\u2029c\vd\fe"_s << u"a\u2028b\u2029c\vd\fe"_s;
        QTest::newRow("written out") << u"a\\nb"_s << u"a\\nb"_s;
        QTest::newRow("non-ASCII") << u"α\n🧪\r\nש"_s << u"α<br>🧪<br>ש"_s;
        QTest::newRow("huge") << u"\r\n\n"_s.repeated(50'000) << u"<br>"_s.repeated(100'000);
    }
    void lineEndsBecomeBreaks()
    {
        QFETCH(QString, text);
        QFETCH(QString, converted);
        QCOMPARE(convertNewlinesToBr(text), converted);
    }
};

QTEST_MAIN(TestSpeciesModel)
#include "tst_speciesmodel.moc"

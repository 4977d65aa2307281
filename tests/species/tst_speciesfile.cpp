// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/jsonfile.h"
#include "files/jsonlayout.h"
#include "species/speciesfile.h"
#include "support/files.h"
#include "support/warnings.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

QJsonObject sampleSpecies()
{
    return {{u"Name"_s, u"Water α 🧪 מים"_s},
            {u"Formula"_s, u"H<sub>2</sub>O"_s},
            {u"Mass"_s, 18.01528}};
}

QJsonObject sampleDataset(int number)
{
    return {{u"Title"_s, u"Spectrum %1 \"quoted\" \\ \t"_s.arg(number)},
            {u"x"_s, QJsonArray{12.5, 12.6, 1e-7}}};
}

QJsonObject sampleFile()
{
    return speciesFileObject(sampleSpecies(), {sampleDataset(1), sampleDataset(2)});
}

QByteArray nested(int levels)
{
    return R"({"Type": "Species v1", "Species": )" + QByteArray(levels, '[')
           + QByteArray(levels, ']') + '}';
}

QByteArray utf16(const QString &text, bool bigEndian, bool mark)
{
    QByteArray bytes;
    for (const QChar character : mark ? QString(QChar(QChar::ByteOrderMark) + text) : text) {
        const auto low = static_cast<char>(character.cell());
        const auto high = static_cast<char>(character.row());
        bytes.append(bigEndian ? high : low).append(bigEndian ? low : high);
    }
    return bytes;
}

} // namespace

class TestSpeciesFile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        failOnWarnings();
        m_folder.emplace();
        QVERIFY(m_folder->isValid());
    }

    void cleanup() { m_folder.reset(); }

    // The envelope.

    void datasetsAreNumberedFromOneInTheirOrder_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {0, 1, 2, 9, 10, 11, 123})
            QTest::addRow("%d", count) << count;
    }
    void datasetsAreNumberedFromOneInTheirOrder()
    {
        QFETCH(int, count);
        QList<QJsonObject> datasets;
        for (int number = 1; number <= count; ++number)
            datasets.append(sampleDataset(number));

        const QJsonObject file = speciesFileObject(sampleSpecies(), datasets);
        QCOMPARE(file.size(), count + 2);
        QCOMPARE(file.value("Type"_L1), QJsonValue(u"Species v1"_s));
        QCOMPARE(file.value("Species"_L1), QJsonValue(sampleSpecies()));
        for (int number = 1; number <= count; ++number)
            QCOMPARE(file.value(u"Dataset%1"_s.arg(number)), QJsonValue(sampleDataset(number)));
    }

    void emptyObjectsAreKept()
    {
        const QJsonObject file = speciesFileObject({}, {{}, {}});
        QCOMPARE(file.keys(), (QStringList{u"Dataset1"_s, u"Dataset2"_s, u"Species"_s, u"Type"_s}));
        QCOMPARE(file.value("Species"_L1), QJsonValue(QJsonObject()));
        QCOMPARE(file.value("Dataset2"_L1), QJsonValue(QJsonObject()));
    }

    // The type.

    void theTypeIsComparedExactly_data()
    {
        QTest::addColumn<QJsonObject>("object");
        QTest::addColumn<bool>("same");
        const auto row = [](const char *name, const QJsonValue &type, bool same) {
            QTest::newRow(name) << QJsonObject{{u"Type"_s, type}} << same;
        };
        row("same", u"Species v1"_s, true);
        row("other case", u"species v1"_s, false);
        row("upper case", u"SPECIES V1"_s, false);
        row("longer", u"Species v10"_s, false);
        row("shorter", u"Species v"_s, false);
        row("leading blank", u" Species v1"_s, false);
        row("trailing blank", u"Species v1 "_s, false);
        row("trailing line feed", u"Species v1\n"_s, false);
        row("trailing null character", QString(u"Species v1"_s + QChar(u'\0')), false);
        row("non-breaking blank", u"Species\u00a0v1"_s, false);
        row("look-alike letter", u"Ѕpecies v1"_s, false);
        row("another type", u"Spectrum v1"_s, false);
        row("empty", u""_s, false);
        row("huge", QString(100'000, u'<'), false);
        row("null", QJsonValue(), false);
        row("number", 1, false);
        row("truth value", true, false);
        row("list", QJsonArray{u"Species v1"_s}, false);
        row("object", QJsonObject{{u"Type"_s, u"Species v1"_s}}, false);
        QTest::newRow("missing") << QJsonObject() << false;
        QTest::newRow("key in another case") << QJsonObject{{u"type"_s, u"Species v1"_s}} << false;
    }
    void theTypeIsComparedExactly()
    {
        QFETCH(QJsonObject, object);
        QFETCH(bool, same);
        QCOMPARE(hasType(object, speciesFileType), same);
    }

    void aSpeciesFileIsToldFromAnyOther_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("species");
        const QByteArray small = R"({"Type": "Species v1"})";

        QTest::newRow("whole") << QJsonDocument(sampleFile()).toJson() << true;
        QTest::newRow("compact") << QJsonDocument(sampleFile()).toJson(QJsonDocument::Compact)
                                 << true;
        QTest::newRow("type only") << small << true;
        QTest::newRow("no blanks") << R"({"Type":"Species v1"})"_ba << true;
        QTest::newRow("blanks around") << " \t\r\n" + small + "\r\n\t " << true;
        QTest::newRow("type last") << R"({"Species": {}, "Type": "Species v1"})"_ba << true;
        QTest::newRow("escaped letters") << R"({"T\u0079pe": "\u0053pecies v1"})"_ba << true;
        QTest::newRow("species of a wrong type")
            << R"({"Type": "Species v1", "Species": 1})"_ba << true;
        QTest::newRow("unknown keys") << R"({"Type": "Species v1", "": [], "α": {}})"_ba << true;
        QTest::newRow("byte order mark") << "\xef\xbb\xbf" + small << true;
        QTest::newRow("a million blanks") << small + QByteArray(1'000'000, ' ') << true;
        QTest::newRow("nested a little") << nested(100) << true;
        // Of keys that are there twice the last one counts.
        QTest::newRow("right type last")
            << R"({"Type": "Spectrum v1", "Type": "Species v1"})"_ba << true;
        QTest::newRow("right type first")
            << R"({"Type": "Species v1", "Type": "Spectrum v1"})"_ba << false;

        QTest::newRow("empty") << ""_ba << false;
        QTest::newRow("blanks") << " \n\t "_ba << false;
        QTest::newRow("byte order mark alone") << "\xef\xbb\xbf"_ba << false;
        QTest::newRow("zeros") << QByteArray(1'000, '\0') << false;
        QTest::newRow("text") << "Species v1"_ba << false;
        QTest::newRow("null") << "null"_ba << false;
        QTest::newRow("string") << R"("Species v1")"_ba << false;
        QTest::newRow("list") << "[]"_ba << false;
        QTest::newRow("list with the object") << '[' + small + ']' << false;
        QTest::newRow("empty object") << "{}"_ba << false;
        QTest::newRow("type missing") << R"({"Species": {"Type": "Species v1"}})"_ba << false;
        QTest::newRow("type null") << R"({"Type": null})"_ba << false;
        QTest::newRow("type number") << R"({"Type": 1})"_ba << false;
        QTest::newRow("type list") << R"({"Type": ["Species v1"]})"_ba << false;
        QTest::newRow("type object") << R"({"Type": {"Species v1": 1}})"_ba << false;
        QTest::newRow("type in another case") << R"({"Type": "species v1"})"_ba << false;
        QTest::newRow("type with a blank") << R"({"Type": "Species v1 "})"_ba << false;
        QTest::newRow("key in another case") << R"({"type": "Species v1"})"_ba << false;
        QTest::newRow("spectrum") << R"({"Type": "Spectrum v1"})"_ba << false;
        QTest::newRow("database") << R"({"Type": "Database v1"})"_ba << false;
        QTest::newRow("more behind") << small + small << false;
        QTest::newRow("null character behind") << small + '\0' << false;
        QTest::newRow("comma behind the last value") << R"({"Type": "Species v1",})"_ba << false;
        QTest::newRow("comment") << R"({"Type": "Species v1"} // x)"_ba << false;
        QTest::newRow("single quotes") << "{'Type': 'Species v1'}"_ba << false;
        QTest::newRow("no quotes") << "{Type: Species v1}"_ba << false;
        QTest::newRow("value missing") << "{\"Type\": \"Species v1\", \"a\":\n}"_ba << false;
        QTest::newRow("not UTF-8") << "{\"Type\": \"Species v1\", \"a\": \"\xff\xfe\"}"_ba << false;
        QTest::newRow("Latin-1") << "{\"Type\": \"Species v1\", \"a\": \"Ger\xe4t\"}"_ba << false;
        const QString text = QString::fromLatin1(small);
        QTest::newRow("UTF-16 LE") << utf16(text, false, false) << false;
        QTest::newRow("UTF-16 LE with its mark") << utf16(text, false, true) << false;
        QTest::newRow("UTF-16 BE") << utf16(text, true, false) << false;
        QTest::newRow("UTF-16 BE with its mark") << utf16(text, true, true) << false;
        QTest::newRow("PNG") << "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR"_ba << false;
        QTest::newRow("nested 5,000 deep") << nested(5'000) << false;
        QTest::newRow("opened 5,000 deep") << QByteArray(5'000, '[') << false;
        QTest::newRow("opened 1,000,000 deep")
            << QByteArray("{\"a\":").repeated(1'000'000) << false;
        QTest::newRow("100,000 tag openings") << QByteArray(100'000, '<') << false;
        QTest::newRow("100,000 quotes") << QByteArray(100'000, '"') << false;
    }
    void aSpeciesFileIsToldFromAnyOther()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, species);
        writeFile(path(), bytes);
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(isSpeciesFile(path()), species);
        QCOMPARE_LT(clock.elapsed(), 5'000);
    }

    void aFileThatIsCutOffIsNoSpeciesFile()
    {
        const QByteArray whole = QJsonDocument(sampleFile()).toJson().trimmed();
        QVERIFY(whole.size() > 300);
        for (qsizetype size = 0; size < whole.size(); size += 17) {
            writeFile(path(), whole.first(size));
            QVERIFY2(!isSpeciesFile(path()), whole.first(size).constData());
        }
        writeFile(path(), whole.chopped(1));
        QVERIFY(!isSpeciesFile(path()));
        writeFile(path(), whole);
        QVERIFY(isSpeciesFile(path()));
    }

    void binaryFilesAreNoSpeciesFiles()
    {
        QByteArray bytes(4'096, '\0');
        quint32 state = 1;
        for (int file = 0; file < 50; ++file) {
            for (char &byte : bytes) {
                state = state * 1'664'525 + 1'013'904'223;
                byte = static_cast<char>(state >> 24);
            }
            writeFile(path(), bytes);
            QVERIFY(!isSpeciesFile(path()));
        }
    }

    void whatCannotBeReadIsNoSpeciesFile()
    {
        QVERIFY(!isSpeciesFile(path()));
        QVERIFY(!isSpeciesFile(m_folder->path()));
        QVERIFY(!isSpeciesFile({}));
    }

    void theTestChangesNothing()
    {
        const QByteArray bytes = " " + QJsonDocument(sampleFile()).toJson();
        writeFile(path(), bytes);
        QVERIFY(isSpeciesFile(path()));
        QCOMPARE(fileBytes(path()), bytes);
        QCOMPARE(QDir(m_folder->path()).count(), 3U);
    }

    // Reading and writing objects.

    void anUnreadableFileIsToldFromAnUnparsableOne()
    {
        QVERIFY(!readJsonObject(path()).has_value());
        QVERIFY(!readJsonObject(m_folder->path()).has_value());
        for (const QByteArray &bytes : {""_ba, "no JSON"_ba, "[1]"_ba, "{\"a\": 1"_ba}) {
            writeFile(path(), bytes);
            const std::optional<QJsonObject> object = readJsonObject(path());
            QVERIFY(object.has_value());
            QVERIFY(object->isEmpty());
        }
    }

    void whatWasWrittenIsReadBack_data()
    {
        QTest::addColumn<QJsonObject>("object");
        QTest::newRow("empty") << QJsonObject();
        QTest::newRow("species file") << sampleFile();
        QTest::newRow("all types") << QJsonObject{{u"null"_s, QJsonValue()},
                                                  {u"true"_s, true},
                                                  {u"number"_s, 0.1},
                                                  {u"least"_s, 5e-324},
                                                  {u"largest"_s, 1.7e308},
                                                  {u"text"_s, u"x"_s},
                                                  {u"list"_s, QJsonArray{1, u"2"_s, QJsonArray()}}};
        QTest::newRow("non-ASCII")
            << QJsonObject{{u"α 数据 🧪"_s, u"ספקטרום e\u0301 \u2028"_s}};
        QTest::newRow("control characters")
            << QJsonObject{{u"\u0001\n"_s, QString(u"a\t\r\n\b\f\u001f"_s + QChar(u'\0'))}};
        QTest::newRow("signs") << QJsonObject{{u"\"\\/"_s, u"</script> & 'x' \\u0041"_s}};
        QTest::newRow("huge") << QJsonObject{{u"<"_s, QString(100'000, u'<')}};
    }
    void whatWasWrittenIsReadBack()
    {
        QFETCH(QJsonObject, object);
        writeFile(path(), QByteArray(100'000, 'x'));
        QVERIFY(writeJsonObject(path(), object));
        const std::optional<QJsonObject> read = readJsonObject(path());
        QVERIFY(read.has_value());
        QCOMPARE(*read, object);
        QVERIFY(isSpeciesFile(path()) == (object == sampleFile()));
    }

    void anObjectIsWrittenIndentedWithItsKeysInOrder()
    {
        const QJsonObject species{{u"b"_s, 1}, {u"Ä"_s, u"ß"_s}, {u"B"_s, QJsonArray{1}}};
        QVERIFY(writeJsonObject(path(), speciesFileObject(species, {})));
        QCOMPARE(fileBytes(path()),
                 R"({
    "Species": {
        "B": [
            1
        ],
        "b": 1,
        "Ä": "ß"
    },
    "Type": "Species v1"
}
)"_ba);
    }

    void aFileThatCannotBeWrittenIsReported()
    {
        QVERIFY(!writeJsonObject(path(u"none/file"_s), sampleFile()));
        QVERIFY(!writeJsonObject(m_folder->path(), sampleFile()));
        QVERIFY(QDir(m_folder->path()).isEmpty());
    }

    // 45 MB of text, whose control characters take six bytes each in a file.
    void whatWouldBeTooLargeToBeReadIsNotWritten()
    {
        const QString text(largestJsonFile / 6, QChar(1));
        writeFile(path(), "old");
        QVERIFY(!writeJsonObject(path(), QJsonObject{{u"a"_s, text}}));
        QCOMPARE(fileBytes(path()), "old"_ba);
        const QString less(largestJsonFile / 6 - 10, QChar(1));
        QVERIFY(writeJsonObject(path(), QJsonObject{{u"a"_s, less}}));
        QVERIFY(readJsonObject(path()).has_value());
    }

    // 3 MB without the indenting, which makes 300 MB of them.
    void anEntryThatCanBeReadCanBeWrittenAndReadAgain()
    {
        constexpr qsizetype points = 1'200'000;
        constexpr int levels = 60;
        const QByteArray compact = "{\"a\":"_ba.repeated(levels) + '[' + "1,"_ba.repeated(points)
                                   + "1]" + QByteArray(levels, '}');
        writeFile(path(), compact);
        std::optional<QJsonObject> object = readJsonObject(path());
        QVERIFY(object.has_value());
        FileProblem problem = FileProblem::TooLarge;
        QVERIFY(writeJsonObject(path(), *object, &problem));
        QCOMPARE(problem, FileProblem::None);
        QVERIFY(QFileInfo(path()).size() > largestJsonFile);
        QCOMPARE(readJsonObject(path(), &problem), object);
        QCOMPARE(problem, FileProblem::None);
        QCOMPARE(sizeWithoutLayout(readJsonText(path()).value_or(""_ba)), compact.size());
    }

    void blanksBetweenValuesDoNotCount()
    {
        const QByteArray blanks(largestJsonFile, ' ');
        QVERIFY(fitsIntoFile(QByteArray('[' + blanks + "1]")));
        QVERIFY(!fitsIntoFile(QByteArray("[\"" + blanks + "\"]")));
    }

    void whatIsTooLargeIsSaidToBe()
    {
        FileProblem problem = FileProblem::None;
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(largestJsonFile + 1));
        QVERIFY(!readJsonObject(path(), &problem).has_value());
        QCOMPARE(problem, FileProblem::TooLarge);
        QVERIFY(!readJsonText(path(), &problem).has_value());
        QCOMPARE(problem, FileProblem::TooLarge);
        QVERIFY(
            !writeJsonObject(path(), {{u"a"_s, QString(largestJsonFile / 6, QChar(1))}}, &problem));
        QCOMPARE(problem, FileProblem::TooLarge);
        QVERIFY(!readJsonObject(path(u"none"_s), &problem).has_value());
        QCOMPARE(problem, FileProblem::Inaccessible);
        QVERIFY(!writeJsonObject(path(u"none/file"_s), {}, &problem));
        QCOMPARE(problem, FileProblem::Inaccessible);
    }

    void layoutIsLeftOutAndNothingElse_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("empty") << ""_ba
                               << ""_ba;
        QTest::newRow("blanks") << " \n\t\r "_ba
                                << ""_ba;
        QTest::newRow("indented") << "{\n    \"a b\": [\n        1,\r\n\t2 ]\n}\n"_ba
                                  << "{\"a b\":[1,2]}"_ba;
        QTest::newRow("string") << "{\"a \\\" b\" : \" \\\\ \" , \"c\":\"\\\\\"} "_ba
                                << "{\"a \\\" b\":\" \\\\ \",\"c\":\"\\\\\"}"_ba;
        QTest::newRow("two numbers") << "[1  2]"_ba
                                     << "[1 2]"_ba;
        QTest::newRow("cut word") << "[tr\nue]"_ba
                                  << "[tr ue]"_ba;
        QTest::newRow("two strings") << "[\"a\"  \"b\"]"_ba
                                     << "[\"a\" \"b\"]"_ba;
        QTest::newRow("string without an end") << "[ \"a  b"_ba
                                               << "[\"a  b"_ba;
    }
    void layoutIsLeftOutAndNothingElse()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, expected);
        // However the text is cut into pieces.
        for (qsizetype first = 0; first <= text.size(); ++first) {
            for (qsizetype second = first; second <= text.size(); ++second) {
                JsonWithoutLayout compact;
                compact.take(QByteArrayView(text).first(first));
                QByteArray bytes = compact.bytes();
                compact.take(QByteArrayView(text).sliced(first, second - first));
                compact.take(QByteArrayView(text).sliced(second));
                bytes += compact.bytes();
                QCOMPARE(bytes, expected);
            }
        }
        QCOMPARE(sizeWithoutLayout(text), expected.size());
        QJsonParseError whole;
        QJsonParseError left;
        const QJsonDocument document = QJsonDocument::fromJson(text, &whole);
        QCOMPARE(QJsonDocument::fromJson(expected, &left), document);
        QCOMPARE(left.error == QJsonParseError::NoError, whole.error == QJsonParseError::NoError);
    }

private:
    [[nodiscard]] QString path(const QString &name = u"file.json"_s) const
    {
        return m_folder->filePath(name);
    }

    std::optional<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestSpeciesFile)
#include "tst_speciesfile.moc"

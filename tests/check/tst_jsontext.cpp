// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/jsontext.h"
#include "check/numbertext.h"
#include "check/utf8text.h"
#include "files/filebytes.h"
#include "spectrum/points.h"
#include "support/warnings.h"
#include "testfiles.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

// The value from Qt's parser.
QJsonValue valueFrom(const JsonValue &value)
{
    switch (value.kind()) {
    case JsonKind::Null:
        return QJsonValue::Null;
    case JsonKind::Bool:
        return value.toBool();
    case JsonKind::Number:
        return QString::fromLatin1(value.raw()).toDouble();
    case JsonKind::String:
        return value.string();
    case JsonKind::Array: {
        QJsonArray array;
        for (JsonValue child = value.firstChild(); child; child = child.nextSibling())
            array.append(valueFrom(child));
        return array;
    }
    case JsonKind::Object: {
        QJsonObject object;
        for (JsonValue child = value.firstChild(); child; child = child.nextSibling())
            object.insert(child.key(), valueFrom(child));
        return object;
    }
    }
    Q_UNREACHABLE();
}

QByteArray exampleBytes(const QString &name)
{
    return readFileBytes(QStringLiteral(ZORAVEL_EXAMPLES "/") + name).value_or(QByteArray());
}

} // namespace

class TestJsonText : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void theSameIsReadAsByQt_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArrayList texts{"{}",
                                   "[]",
                                   "[[],{},[[]]]",
                                   "null",
                                   "[true,false,null]",
                                   "\"\"",
                                   "{\"a\":{\"b\":[1,2,{\"c\":\"d\"}]},\"e\":-1.5e-3}",
                                   "[\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u00e4\\ud83e\\uddea\"]",
                                   "{\"a\\\"b\":1,\"\":2}",
                                   " [ 1 , 2 ] ",
                                   "\xef\xbb\xbf[1]",
                                   "{\"a\":1,\"a\":2}",
                                   "[\"\xc3\xa4\xf0\x9f\xa7\xaa\"]",
                                   "[0,-0,0.0,1E5,1e-5,123456789012345]"};
        for (const QByteArray &text : texts)
            QTest::newRow(text.constData()) << text;
        for (const QString &name : {u"water.json"_s, u"benzene.json"_s})
            QTest::newRow(qPrintable(name)) << exampleBytes(name);
    }

    void theSameIsReadAsByQt()
    {
        QFETCH(QByteArray, text);
        const JsonText parsed(text);
        QVERIFY(!parsed.error());
        // The value is wrapped, as Qt's documents hold no single values.
        const QByteArray wrapped =
            '[' + (text.startsWith("\xef\xbb\xbf") ? text.sliced(3) : text) + ']';
        QCOMPARE(valueFrom(parsed.root()), QJsonDocument::fromJson(wrapped).array().first());
    }

    void valuesKnowTheirBytes()
    {
        const QByteArray text = "{\"k\\u0041\": [\"a\\nb\", 1.50, {\"x\": null}], \"l\": \"ä\"}";
        const JsonText parsed(text);
        const JsonValue list = parsed.root().member(QLatin1String("kA"));
        QVERIFY(list);
        QCOMPARE(list.raw().toByteArray(), QByteArray("[\"a\\nb\", 1.50, {\"x\": null}]"));
        QCOMPARE(list.rawKey().toByteArray(), QByteArray("\"k\\u0041\""));
        const JsonValue string = list.firstChild();
        QCOMPARE(string.raw().toByteArray(), QByteArray("\"a\\nb\""));
        QCOMPARE(string.string(), u"a\nb"_s);
        const JsonValue number = string.nextSibling();
        QCOMPARE(number.raw().toByteArray(), QByteArray("1.50"));
        const JsonValue inner = number.nextSibling().firstChild();
        QCOMPARE(inner.raw().toByteArray(), QByteArray("null"));
        QCOMPARE(inner.pointer(), u"/kA/2/x"_s);
        QVERIFY(!inner.nextSibling());
        QCOMPARE(parsed.root().pointer(), QString());
        QCOMPARE(parsed.root().end(), text.size());
    }

    void pointersEscapeWhatTheyMust()
    {
        const JsonText parsed("{\"a/b~c\": {\"\": [0]}}");
        QCOMPARE(parsed.root().firstChild().firstChild().firstChild().pointer(), u"/a~1b~0c//0"_s);
    }

    void ofAKeyThatIsWrittenTwiceTheLastCounts()
    {
        const JsonText parsed("{\"a\": 1, \"b\": 2, \"a\": 3}");
        QCOMPARE(parsed.root().member(QLatin1String("a")).raw().toByteArray(), QByteArray("3"));
        QCOMPARE(parsed.root().count(), 3);
    }

    void errorsKnowTheirPlace_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("offset");
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("comma") << QByteArray("[1,]") << 3;
        QTest::newRow("missing comma") << QByteArray("{\"a\":1 \"b\":2}") << 7;
        QTest::newRow("colon") << QByteArray("{\"a\" 1}") << 5;
        QTest::newRow("open") << QByteArray("[1") << 1;
        QTest::newRow("garbage") << QByteArray("[] x") << 3;
        QTest::newRow("word") << QByteArray("[nul]") << 4;
        QTest::newRow("not a number") << QByteArray("[NaN]") << 1;
        QTest::newRow("zero byte") << QByteArray("[1]\0[2]", 7) << 3;
    }

    void errorsKnowTheirPlace()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, offset);
        const JsonText parsed(text);
        QVERIFY(parsed.error());
        QCOMPARE(parsed.error()->offset, offset);
        QVERIFY(!parsed.root());
        QVERIFY(!parsed.error()->message.isEmpty());
    }

    void errorsSayWhatIsMeant()
    {
        QVERIFY(
            JsonText("{\"a\":1,}").error()->message.contains(u"no comma stands behind the last"_s));
        QVERIFY(JsonText("[\"a\nb\"]").error()->message.contains(u"\\n has to stand"_s));
        QVERIFY(JsonText("[\"a\tb\"]").error()->message.contains(u"\\u0009 has to stand"_s));
        QVERIFY(JsonText("[\"a\\qb\"]").error()->message.contains(u"no such escape"_s));
    }

    void aFileThatIsCutOffSaysWithinWhat_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("offset");
        const auto row = [](const QByteArray &text, const char *within, int offset) {
            const QString message = QStringLiteral("The file ends inside %1.");
            QTest::newRow(text.constData()) << text << message.arg(QLatin1String(within)) << offset;
        };
        row("{", "an object", 0);
        row("{\n\n", "an object", 0);
        row("{\"a\"", "an object", 3);
        row("{\"a\":", "an object", 4);
        row("{\"a\":1", "an object", 5);
        row("{\"a\":1,", "an object", 6);
        row("{\"a\":1,\r\n", "an object", 6);
        row("{\"a\":[]", "an object", 6);
        row("{\"a\":\"[{\\\"\"", "an object", 10);
        row("[", "an array", 0);
        row("[1,", "an array", 2);
        row("{\"a\":[{}", "an array", 7);
        row("[{", "an object", 1);
        row("\"abc", "a text", 3);
        row("\"abc\n", "a text", 3);
        row("\"ab\xc3\xa4", "a text", 3);
        row("{\"a", "a text", 2);
        row("[\"a\\", "a text", 3);
        row("[\"a\\\"", "a text", 4);
        row("[\"a\\u", "a text", 4);
        row("[\"a\\u00e", "a text", 7);
        row("[\"\\ud83e", "a text", 7);
        row("[\"\\ud83e\\udd", "a text", 11);
        row("[-", "a number", 1);
        row("[1.", "a number", 2);
        row("[1e-", "a number", 3);
        row("[tru", "a word", 3);
        row("n", "a word", 0);
        row("\xef\xbb\xbf[", "an array", 3);
    }

    void aFileThatIsCutOffSaysWithinWhat()
    {
        QFETCH(QByteArray, text);
        const JsonText parsed(text);
        QVERIFY(parsed.error());
        QTEST(parsed.error()->message, "message");
        QTEST(int(parsed.error()->offset), "offset");
    }

    // A finding names every cut-off file as such, whatever its end is.
    void everyBeginningOfAFileIsCutOff()
    {
        QByteArray text = "\xef\xbb\xbf{\"a\\\"\\u00e4\\ud83e\\uddea\": [1.5e-3, -2, true, false,\n"
                          "null, {}, [], \"\\n\", {\"b\": [0]}], \"c\" : \"d\"}";
        QVERIFY(!JsonText(text).error());
        while (text.size() > 4) {
            text.chop(1);
            const JsonText parsed(text);
            QVERIFY(parsed.error());
            QVERIFY2(parsed.error()->message.startsWith(u"The file ends inside "_s),
                     text.constData());
            QCOMPARE(parsed.error()->offset, text.trimmed().size() - 1);
        }
    }

    void whatIsWrongBeforeTheEndIsNotTakenForACutOffFile()
    {
        for (const QByteArray &text :
             {QByteArray("[}"), QByteArray("[\"a\\q"), QByteArray("[\"\\u00g"), QByteArray("{1"),
              QByteArray("[1 2"), QByteArray("[\"\\ud83e\\n"), QByteArray("[x"), QByteArray("[]]"),
              QByteArray("[1\0", 3), QByteArray("{\"a\":\"b\n}"), QByteArray(1025, '[')})
            QVERIFY2(!JsonText(text).error()->message.contains(u"ends inside"_s), text.constData());
    }

    void aFileWithoutAnythingIsToldFromOneOfBlanks()
    {
        for (const QByteArray &text : {QByteArray(), QByteArray("\xef\xbb\xbf")})
            QCOMPARE(JsonText(text).error()->message, u"The file is empty."_s);
        for (const QByteArray &text :
             {QByteArray(" "), QByteArray("\n\t \n"), QByteArray("\xef\xbb\xbf\n")})
            QCOMPARE(JsonText(text).error()->message, u"There are only blanks in the file."_s);
    }

    void nestingIsLimitedAsInQt()
    {
        const auto nested = [](int levels) -> QByteArray {
            return QByteArray(levels, '[') + QByteArray(levels, ']');
        };
        for (const int levels : {1, 1000, 1024, 1025, 5000, 1'000'000}) {
            const bool fits = !QJsonDocument::fromJson(nested(levels)).isNull();
            QCOMPARE(!JsonText(nested(levels)).error().has_value(), fits);
        }
    }

    void numbersBeyondADoubleAreToldApart()
    {
        const JsonText large("[1e999]");
        QCOMPARE(large.error()->kind, JsonError::NumberTooLarge);
        QCOMPARE(valueOf("1e-400"), std::nullopt);
        QCOMPARE(valueOf("0e-400"), 0.0);
        QCOMPARE(valueOf("-12.5"), -12.5);
    }

    void positionsCountCharacters()
    {
        const QByteArray text = "ab\n\xc3\xa4\xf0\x9f\xa7\xaa"
                                "c\r\nd";
        const TextPosition position = positionAt(text, text.indexOf('c'));
        QCOMPARE(position.line, 2);
        QCOMPARE(position.column, 3);
        QCOMPARE(lineAt(text, text.indexOf('c')).toByteArray(),
                 QByteArray("\xc3\xa4\xf0\x9f\xa7\xaa"
                            "c"));
        QCOMPARE(positionAt(text, text.size()).line, 3);
    }

    void positionsAreTheSameHoweverManyAreAskedFor()
    {
        QRandomGenerator random(3);
        for (const QByteArray &part : {QByteArray("a"), QByteArray("\xc3\xa4"), QByteArray("\n")}) {
            QByteArray text;
            for (int i = 0; i < 3'000; ++i)
                text += random.bounded(3) == 0 ? part : QByteArray("xy");
            PositionFinder finder(text);
            for (int i = 0; i < 500; ++i) {
                const qsizetype offset = random.bounded(int(text.size()) + 2) - 1;
                const TextPosition expected = positionAt(text, offset);
                const TextPosition found = finder.at(offset);
                QCOMPARE(found.line, expected.line);
                QCOMPARE(found.column, expected.column);
            }
        }
    }

    void utf8IsToldFromWhatIsNot_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("bad"); // -1 if all are good
        QTest::newRow("ascii") << QByteArray("0123456789abcdef") << -1;
        QTest::newRow("all lengths") << QByteArray("\xc2\x80\xe0\xa0\x80\xf0\x90\x80\x80") << -1;
        QTest::newRow("largest") << QByteArray("\xf4\x8f\xbf\xbf") << -1;
        QTest::newRow("too large") << QByteArray("\xf4\x90\x80\x80") << 0;
        QTest::newRow("overlong 2") << QByteArray("a\xc0\x80") << 1;
        QTest::newRow("overlong 3") << QByteArray("\xe0\x9f\xbf") << 0;
        QTest::newRow("overlong 4") << QByteArray("\xf0\x8f\xbf\xbf") << 0;
        QTest::newRow("surrogate") << QByteArray("\xed\xa0\x80") << 0;
        QTest::newRow("cut off") << QByteArray("12345678\xe2\x82") << 8;
        QTest::newRow("continuation") << QByteArray("1234567\x80") << 7;
        QTest::newRow("latin 1") << QByteArray("caf\xe9 au lait") << 3;
    }

    void utf8IsToldFromWhatIsNot()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, bad);
        QCOMPARE(firstInvalidUtf8(bytes).value_or(-1), bad);
    }

    // Numbers of all forms: the editor does not change those that pass the quick check.
    void aPlainNumberOfSixDigitsIsWrittenAsItWasRead()
    {
        QRandomGenerator random(20261121);
        int plain = 0;
        for (int i = 0; i < 200'000; ++i) {
            const int digits = random.bounded(1, 9);
            QByteArray raw = QByteArray::number(
                random.bounded(int(std::pow(10, digits)) - 1) / std::pow(10, random.bounded(0, 10)),
                random.bounded(4) == 0 ? 'e' : 'f', random.bounded(0, 10));
            if (random.bounded(8) == 0)
                raw.prepend('-');
            const NumberForm form = formOf(raw);
            const double value = raw.toDouble();
            const double loaded = loadedNumber(value);
            if (form.significantDigits <= keptDigits)
                QVERIFY2(loaded == value, raw.constData());
            QCOMPARE(losesDigits(raw, value), loaded != value);
            if (!form.isPlain || form.significantDigits > keptDigits)
                continue;
            ++plain;
            const QByteArray written =
                QJsonDocument(QJsonArray{loaded}).toJson(QJsonDocument::Compact);
            QCOMPARE(written, QByteArray('[' + raw + ']'));
        }
        QVERIFY(plain > 20'000);
    }
};

QTEST_GUILESS_MAIN(TestJsonText)
#include "tst_jsontext.moc"

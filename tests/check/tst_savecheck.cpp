// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/savecheck.h"

#include "check/filecheck.h"
#include "files/filebytes.h"
#include "pictures/picture.h"
#include "spectrum/assaved.h"
#include "support/warnings.h"
#include "testfiles.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

QJsonObject example(const QString &name)
{
    const auto bytes = readFileBytes(QStringLiteral(ZORAVEL_EXAMPLES "/") + name);
    return QJsonDocument::fromJson(bytes.value_or(QByteArray())).object();
}

QByteArray saved(const QJsonObject &file)
{
    return QJsonDocument(asSavedFile(file).value_or(QJsonObject())).toJson();
}

// What the checks say of the text.
struct Verdict {
    QList<Finding> changes; // that saving changes it
    bool hasCause = false;  // or else why
};

Verdict verdictOn(const QByteArray &text)
{
    Verdict verdict;
    for (const Finding &finding : checkBytes(u"a.json"_s, text, {}).findings) {
        if (finding.check == Check::WouldChange)
            verdict.changes.append(finding);
        else if (finding.endsReading || saysWhySavingChanges(finding.check))
            verdict.hasCause = true;
    }
    return verdict;
}

// The text with a byte replaced by one of the alphabet, with one put in or with one left out.
QByteArray withOneByteChanged(QByteArray text, const QByteArray &alphabet, QRandomGenerator &random)
{
    const qsizetype at = random.bounded(int(text.size()));
    const char c = alphabet[random.bounded(int(alphabet.size()))];
    switch (random.bounded(3)) {
    case 0:
        text[at] = c;
        break;
    case 1:
        text.insert(at, c);
        break;
    default:
        text.remove(at, 1);
        break;
    }
    return text;
}

} // namespace

class TestSaveCheck : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    // One byte is changed: the editor writes the file differently if and only if the checks say so,
    // or say why.
    void whatSavingIsSaidToChangeItChanges()
    {
        QJsonObject file = example(u"furan.json"_s);
        QJsonObject spectrum = file.value(u"Dataset1"_s).toObject();
        spectrum.insert(u"E"_s, QJsonArray{9.1, 9.25, 10, 0.001, -3, 2e-5, 1e22});
        spectrum.insert(u"I"_s, QJsonArray{0, 1, 22.5, 123456, 7, 1234560, 3e-300});
        file.insert(u"Dataset1"_s, spectrum);
        file.remove(u"Dataset2"_s);
        QJsonObject species = file.value(u"Species"_s).toObject();
        species.remove(u"StructuralFormula"_s); // takes long
        file.insert(u"Species"_s, species);
        const QByteArray good = saved(file);
        QVERIFY(verdictOn(good).changes.isEmpty());

        QRandomGenerator random(7);
        const QByteArray alphabet = "0123456789.eE+-\",:{}[] \n<>/&abDTnu\\";
        int same = 0;
        int other = 0;
        for (int i = 0; i < 3'000; ++i) {
            const QByteArray text = withOneByteChanged(good, alphabet, random);
            const Verdict verdict = verdictOn(text);
            QVERIFY(verdict.changes.isEmpty() || !verdict.hasCause);
            if (verdict.hasCause)
                continue;
            const auto after = asSavedFile(QJsonDocument::fromJson(text).object());
            const bool stays = !after || QJsonDocument(*after).toJson() == text;
            QVERIFY2(stays == verdict.changes.isEmpty(), text.constData());
            (stays ? same : other) += 1;
        }
        QVERIFY(same > 100);
        QVERIFY(other > 100);
    }

    // A number that is too small for a double, outside of the points.
    void whatTheEditorCannotReadDoesNotPass_data()
    {
        QTest::addColumn<QByteArray>("text");
        const auto row = [](const char *name, const QByteArray &text) {
            QTest::newRow(name) << text;
        };
        row("mass", R"({"Type": "Species v1", "Species": {"Mass": 1e-400}})");
        row("digits",
            R"({"Type": "Species v1", "Species": {"Mass": 0.)" + QByteArray(400, '0') + "1}}");
        row("type of a spectrum", R"({"Type": "Spectrum v1", "SpectType": -2E-324})");
        row("unknown key", R"({"Type": "Species v1", "Note": [{"a": [1, 1e-400]}]})");
        row("database", R"({"Type": "Database v1", "Entry1": {"Species": {"Mass": 1e-400}}})");
    }

    void whatTheEditorCannotReadDoesNotPass()
    {
        QFETCH(QByteArray, text);
        QVERIFY(QJsonDocument::fromJson(text).isNull());
        const QList<Finding> findings = checkBytes(u"a.json"_s, text, {}).findings;
        const auto count = [&](Check check) {
            return std::count_if(findings.begin(), findings.end(),
                                 [&](const Finding &finding) { return finding.check == check; });
        };
        QCOMPARE(count(Check::NumberRange), 1);
        QCOMPARE(count(Check::WouldChange), 0);
    }

    void thePlaceThatSavingChangesIsNamed_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QByteArray>("place"); // the text from there on
        QTest::newRow("layout") << QByteArray("\n    \"Type\"") << QByteArray("\n  \"Type\"")
                                << QByteArray("  \"Type\"");
        QTest::newRow("number") << QByteArray(" 9.1,") << QByteArray(" 9.10,")
                                << QByteArray("9.10,");
        QTest::newRow("escape") << QByteArray("ü") << QByteArray("\\u00fc")
                                << QByteArray("\"\\u00fc\"");
        QTest::newRow("digits") << QByteArray(" 9.1,") << QByteArray(" 9.100000000000001,")
                                << QByteArray("9.100000000000001,");
        QTest::newRow("no line end")
            << QByteArray(",\n    \"Type\"") << QByteArray(",\"Type\"") << QByteArray(",\"Type\"");
        QTest::newRow("missing key") << QByteArray(" \"VIE\": \"\",\n       ") << QByteArray()
                                     << QByteArray("{\n        \"AIE\": ");
        QTest::newRow("number of a spectrum")
            << QByteArray("\"Dataset1\"") << QByteArray("\"Dataset2\"") << QByteArray("{\n");
    }

    void thePlaceThatSavingChangesIsNamed()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QByteArray, place);
        const QJsonObject file{{u"Type"_s, u"Species v1"_s},
                               {u"Dataset1"_s, QJsonObject{{u"Title"_s, u"ü"_s},
                                                           {u"E"_s, QJsonArray{9.1, 9.2}},
                                                           {u"I"_s, QJsonArray{1, 2}}}}};
        QByteArray text = saved(file);
        QVERIFY(verdictOn(text).changes.isEmpty());
        QVERIFY(text.contains(before));
        text.replace(before, after);
        const QList<Finding> changes = verdictOn(text).changes;
        QCOMPARE(changes.size(), 1);
        const QByteArrayList rest = text.split('\n').sliced(changes[0].line - 1);
        QCOMPARE(rest.join('\n').sliced(changes[0].column - 1, place.size()), place);
    }

    // The tenth of them is loaded as the second, and saved as that.
    void tenSpectraChangeTheirNumbersUnlessTheyAreEqual()
    {
        for (const int different : {0, 1, 2, 5, 10, 12}) {
            QJsonObject file{{u"Type"_s, u"Species v1"_s}};
            for (int i = 1; i <= 12; ++i)
                file.insert(u"Dataset%1"_s.arg(i), QJsonObject());
            QByteArray text = saved(file);
            QJsonObject object = QJsonDocument::fromJson(text).object();
            QJsonObject dataset = object.take(u"Dataset%1"_s.arg(different)).toObject();
            if (different > 0) {
                dataset.insert(u"Title"_s, u"other"_s);
                object.insert(u"Dataset%1"_s.arg(different), dataset);
                text = QJsonDocument(object).toJson();
            }
            QCOMPARE(verdictOn(text).changes.isEmpty(), different <= 1);
        }
    }

    void aSpectrumFileIsLookedAtInTheSameWay()
    {
        const QJsonObject file{{u"Type"_s, u"Spectrum v1"_s},
                               {u"E"_s, QJsonArray{9.1, 9.2}},
                               {u"I"_s, QJsonArray{1, 2}}};
        QVERIFY(verdictOn(saved(file)).changes.isEmpty());
        QCOMPARE(verdictOn(QJsonDocument(file).toJson()).changes.size(), 1);
    }

    // The same pixels in other bytes: the editor decodes the picture and encodes it anew.
    void aPictureThatIsEncodedInAnotherWayChanges()
    {
        QImage image(20, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QVERIFY(image.save(&buffer, "PNG", 100)); // not compressed
        QVERIFY(bytes != encodePng(image));
        QJsonObject file = example(u"water.json"_s);
        QJsonObject species = file.value(u"Species"_s).toObject();
        species.insert(u"StructuralFormula"_s, QString::fromLatin1(bytes.toBase64()));
        file.insert(u"Species"_s, species);
        const QByteArray text = QJsonDocument(file).toJson();
        QVERIFY(saved(file) != text);
        const Verdict verdict = verdictOn(text);
        QVERIFY(!verdict.hasCause);
        QCOMPARE(verdict.changes.size(), 1);
        QVERIFY(verdictOn(saved(file)).changes.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSaveCheck)
#include "tst_savecheck.moc"

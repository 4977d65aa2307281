// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/measure.h"
#include "check/filecheck.h"
#include "check/markup.h"
#include "support/warnings.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Pieces of which a text is made of many.
void addPieces()
{
    QTest::addColumn<QString>("piece");
    for (const QString &piece : {u"<sub>"_s,
                                 u"</sub>"_s,
                                 u"<sub></sub>"_s,
                                 u"<sup>a</sup><br>"_s,
                                 u"<b>"_s,
                                 u"<"_s,
                                 u">"_s,
                                 u"<sub "_s,
                                 u"<b "_s,
                                 u"</"_s,
                                 u"<<>"_s,
                                 u"&"_s,
                                 u"&amp;"_s,
                                 u"&x"_s,
                                 u"&#"_s,
                                 u"&#x1f;"_s,
                                 u"  "_s,
                                 u"\t"_s,
                                 u"\n"_s,
                                 u"a"_s,
                                 u"H"_s,
                                 u"1"_s,
                                 u"9,"_s,
                                 u"("_s,
                                 u"["_s,
                                 u"1-"_s,
                                 u"/"_s,
                                 u"<sup>+</sup>"_s,
                                 u"<sup>1</sup>"_s,
                                 u"\u200b"_s})
        QTest::newRow(qPrintable(piece)) << piece;
}

// A species file with this text in every field.
QByteArray fileOf(const QString &text)
{
    QJsonObject species;
    for (const char *key : {"Name", "Aliases", "Formula", "InChI", "CAS", "PubChem", "AIE", "VIE"})
        species[QLatin1String(key)] = text;
    species[u"Mass"_s] = 18.015;
    QJsonObject spectrum;
    for (const char *key : {"Title", "T", "Resolution", "CreatedDate", "FurtherComments"})
        spectrum[QLatin1String(key)] = text;
    return QJsonDocument(QJsonObject{{u"Type"_s, u"Species v1"_s},
                                     {u"Species"_s, species},
                                     {u"Dataset1"_s, spectrum}})
        .toJson();
}

// How many times longer a text of four times the length may take. Linear time gives 4, quadratic
// time 16.
constexpr double mostGrowth = 9;

} // namespace

// What a field of the editor cannot hold, found without one.
class TestMarkup : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void tagsAndEntitiesAreToldFromText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message"); // none: there is no issue
        const auto row = [](const QString &text, const QString &message) {
            QTest::newRow(qPrintable(text)) << text << message;
        };
        row(u"H<sub>2</sub>O<br/>x<br />y"_s, {});
        row(u"<sub\tclass=x>2</sub>"_s, {});
        row(u"<b>x"_s, u"the tag <b> is removed when the file is saved"_s);
        row(u"x</i y/>"_s, u"the tag </i y/> is removed when the file is saved"_s);
        row(u"<subscript>"_s, u"the tag <subscript> is removed when the file is saved"_s);
        row(u"a<b"_s, u"\"<b\" would be taken for a tag and disappear"_s);
        row(u"< b>"_s, u"\"< b>\" would be taken for a tag and disappear"_s);
        row(u"<b<i>"_s, u"\"<b<i>\" would be taken for a tag and disappear"_s);
        row(u"<1>"_s, u"\"<1>\" would be taken for a tag and disappear"_s);
        row(u"<b\u00a0>"_s, u"\"<b\u00a0>\" would be taken for a tag and disappear"_s);
        row(u"a>b & c &amp d; &nothing; &#; &#x; &#xg;"_s, {});
        row(u"a &amp; b"_s, u"&amp; would become the character that it means"_s);
        row(u"a &amp"_s, u"&amp would become the character that it means"_s);
        row(u"&#65;"_s, u"&#65; would become the character that it means"_s);
        row(u"&#XaF;"_s, u"&#XaF; would become the character that it means"_s);
    }
    void tagsAndEntitiesAreToldFromText()
    {
        QFETCH(QString, text);
        QFETCH(QString, message);
        const std::vector<MarkupIssue> issues = markupIssues(text, false);
        QCOMPARE(issues.empty() ? QString() : issues.front().message, message);
    }

    void aTextOfManyTagsTakesLinearTime_data() { addPieces(); }
    void aTextOfManyTagsTakesLinearTime()
    {
        QFETCH(QString, piece);
        const QString shortText = piece.repeated(25'000);
        const QString longText = piece.repeated(100'000);
        QVERIFY(markupIssues(longText, false).size() <= 4);
        const auto look = [](const QString &text) { (void)markupIssues(text, false); };
        QCOMPARE_LT(measureRatio(
                        3, [&] { look(longText); }, [&] { look(shortText); })
                        .value,
                    mostGrowth);
    }
    void aFileOfManyTagsTakesLinearTime_data() { addPieces(); }
    void aFileOfManyTagsTakesLinearTime()
    {
        QFETCH(QString, piece);
        const QByteArray shortFile = fileOf(piece.repeated(10'000));
        const QByteArray longFile = fileOf(piece.repeated(40'000));
        const auto check = [](const QByteArray &bytes) {
            (void)checkBytes(u"a.json"_s, bytes, {});
        };
        QCOMPARE_LT(measureRatio(
                        3, [&] { check(longFile); }, [&] { check(shortFile); })
                        .value,
                    mostGrowth);
    }
};

QTEST_GUILESS_MAIN(TestMarkup)
#include "tst_markup.moc"

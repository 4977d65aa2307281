// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/markup.h"
#include "check/pngcheck.h"
#include "pictures/picture.h"
#include "species/speciesmodel.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QBuffer>
#include <QImage>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool has(const std::vector<MarkupIssue> &issues, MarkupIssue::Kind kind)
{
    return std::any_of(issues.begin(), issues.end(),
                       [&](const MarkupIssue &issue) { return issue.kind == kind; });
}

// The text of a field after setting and reading it, as after an edit elsewhere in it.
QString throughField(const QString &text)
{
    CleanTextEdit field;
    field.setCleanedHtml(text);
    return field.cleanedHtml();
}

QByteArray fileOf(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QImage picture(QImage::Format format)
{
    QImage image(37, 23, QImage::Format_ARGB32);
    image.fill(0);
    for (int x = 0; x < image.width(); ++x)
        image.setPixelColor(x, x % image.height(), QColor(7 * x % 256, 100, 3 * x, 128));
    return image.convertToFormat(format);
}

} // namespace

class TestCheckTexts : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    // What is reported as lost, and only that, is lost in the editor's own field.
    void theEditorsFieldLosesWhatIsSaidToBeLost_data()
    {
        QTest::addColumn<QString>("text");
        const char *texts[] = {"plain",
                               "a b",
                               " a",
                               "a  b",
                               "a\tb",
                               "a\nb",
                               "a\rb",
                               "a\r\nb",
                               "a <b",
                               "a < b",
                               "a<5",
                               "a<5 and >3",
                               "x<-y",
                               "a<",
                               "a<>",
                               "<b",
                               "<?x?>",
                               "x&amp;y",
                               "&alpha;",
                               "x &lt; y",
                               "x &#60; y",
                               "a &lt",
                               "a&lt b",
                               "x&y",
                               "AT&T;",
                               "& b",
                               "a > b",
                               "a\u00a0b",
                               "a<br> b",
                               "a<br>",
                               "<br>a",
                               "H<sub>2</sub>O",
                               "H<sub> 2</sub>O",
                               "a <sub>2</sub>",
                               "<sub>2</sub> b",
                               "\u3000a",
                               "a\fb",
                               "a\vb",
                               "a ",
                               "\u03b1 \u2013 \u6c34",
                               "<sup>13</sup>C <sub>2</sub> x",
                               "&nbsp;a",
                               "R&D; x",
                               "a<!--x-->b",
                               "a&b;c",
                               "<sub>a</sub>  b",
                               "a<sub> </sub>b",
                               "a <sub> 2</sub>"};
        QTest::addColumn<int>("number");
        int number = 0;
        for (const char *text : texts)
            QTest::addRow("%d", number++) << QString::fromUtf8(text) << number;
    }

    void theEditorsFieldLosesWhatIsSaidToBeLost()
    {
        QFETCH(QString, text);
        const bool isSaid = has(markupIssues(text, false), MarkupIssue::Lost);
        QVERIFY2((throughField(text) != text) == isSaid,
                 qPrintable(text + u" -> "_s + throughField(text)));
    }

    void textsOfLettersAndMarkupAgreeWithTheField()
    {
        // Texts at random of the parts that matter.
        const QStringList parts{u"a"_s, u"b"_s,  u" "_s,     u"<sub>"_s,  u"</sub>"_s, u"<br>"_s,
                                u"&"_s, u"2;"_s, u"<sup>"_s, u"</sup>"_s, u">"_s,      u"\u00e4"_s};
        QRandomGenerator random(3);
        int clean = 0;
        for (int i = 0; i < 3'000; ++i) {
            QString text;
            for (int j = random.bounded(1, 9); j > 0; --j)
                text += parts[random.bounded(int(parts.size()))];
            if (!markupIssues(text, false).empty())
                continue;
            ++clean;
            // Pairs without text and pairs side by side are joined; nobody sees that.
            QString expected = text;
            for (const auto &pair : {u"sub"_s, u"sup"_s})
                expected.remove(u"<"_s + pair + u"></"_s + pair + u'>');
            for (const auto &pair : {u"sub"_s, u"sup"_s})
                expected.remove(u"</"_s + pair + u"><"_s + pair + u'>');
            if (expected.contains(u"<br>"_s) && expected.contains(u"<su"_s))
                continue; // a pair may be written anew for each line
            QCOMPARE(throughField(text), expected);
        }
        QVERIFY(clean > 200);
    }

    void aTagThatIsSaidToBeRemovedIsRemovedOnSaving()
    {
        for (const QString &text :
             {u"<i>a</i>"_s, u"<SUB>2</SUB>"_s, u"a<span class=x>b"_s, u"<subscript>"_s}) {
            QVERIFY(has(markupIssues(text, false), MarkupIssue::ForeignTag));
            QVERIFY(cleanHtmlContent(text) != text);
        }
        for (const QString &text : {u"a<br/>b"_s, u"<sub>2</sub>"_s, u"a > b"_s})
            QVERIFY(!has(markupIssues(text, false), MarkupIssue::ForeignTag));
    }

    void scriptsMustBeClosedInOrder()
    {
        const auto isUnbalanced = [](const QString &text) {
            return has(markupIssues(text, false), MarkupIssue::Unbalanced);
        };
        QVERIFY(isUnbalanced(u"H<sub>2O"_s));
        QVERIFY(isUnbalanced(u"H2</sub>O"_s));
        QVERIFY(isUnbalanced(u"<sub>2</sup>"_s));
        QVERIFY(isUnbalanced(u"<sub><sup>2</sup></sub>"_s));
        QVERIFY(!isUnbalanced(u"<sub>2</sub><sup>+</sup>"_s));
    }

    void onlyTextsOfLinesMayHaveLines()
    {
        QVERIFY(has(markupIssues(u"a\nb"_s, false), MarkupIssue::Lost));
        QVERIFY(markupIssues(u"a\nb\r\nc"_s, true).empty()
                || !has(markupIssues(u"a\nb"_s, true), MarkupIssue::Lost));
        QVERIFY(!has(markupIssues(u"a\nb"_s, true), MarkupIssue::Lost));
    }

    void invisibleCharactersAreSeen()
    {
        for (const char16_t c : {u'\x01', u'\x7f', u'\u0085', u'\u00ad', u'\u200b', u'\u202e',
                                 u'\u2060', u'\ufeff', u'\ufffd'})
            QVERIFY2(has(markupIssues(u"a"_s + QChar(c) + u'b', false), MarkupIssue::Invisible),
                     qPrintable(QString::number(c, 16)));
        for (const char16_t c : {u'\u00a0', u'\u00e4', u'\u2013', u'\u6c34'})
            QVERIFY(!has(markupIssues(u"a"_s + QChar(c) + u'b', false), MarkupIssue::Invisible));
    }

    void aSoundPngDecodes()
    {
        for (const QImage::Format format :
             {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_Grayscale8,
              QImage::Format_Grayscale16, QImage::Format_Mono, QImage::Format_Indexed8,
              QImage::Format_RGBA64}) {
            QImage image =
                picture(format == QImage::Format_Indexed8 ? QImage::Format_RGB32 : format)
                    .convertToFormat(format);
            const QByteArray bytes = fileOf(image, "PNG");
            QCOMPARE(soundPngSize(bytes), std::optional(image.size()));
            QCOMPARE(decodePicture(bytes).size(), image.size());
        }
        QVERIFY(!soundPngSize(fileOf(picture(QImage::Format_RGB32), "JPG")));
        QVERIFY(!soundPngSize({}));
    }

    // One byte is changed, or the end is cut off: the editor decodes what soundPngSize() accepts.
    void aDamagedPngIsNotVouchedForUnlessItDecodes()
    {
        const QByteArray good = fileOf(picture(QImage::Format_ARGB32), "PNG");
        int refused = 0;
        for (qsizetype at = 0; at < good.size(); ++at) {
            QByteArray bad = good;
            bad[at] = static_cast<char>(bad[at] ^ 0x15);
            if (!soundPngSize(bad))
                ++refused;
            else
                QVERIFY(!decodePicture(bad).isNull());
            QVERIFY(!soundPngSize(good.first(at)));
        }
        QCOMPARE(refused, int(good.size()));
    }
};

QTEST_MAIN(TestCheckTexts)
#include "tst_checktexts.moc"

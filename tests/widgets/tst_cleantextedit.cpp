// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QMetaProperty>
#include <QMimeData>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolTip>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// Two editors, one above the other, in a window that is shown and active.
struct Fixture {
    QWidget window;
    CleanTextEdit *edit = new CleanTextEdit(&window);
    CleanTextEdit *next = new CleanTextEdit(&window);

    Fixture()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(edit);
        layout->addWidget(next);
        window.resize(500, 400);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            QTest::qFail("the window does not become active", __FILE__, __LINE__);
        edit->setFocus();
    }

    // Types text in this alignment.
    void type(const QString &text, QTextCharFormat::VerticalAlignment alignment) const
    {
        QTextCharFormat format;
        format.setVerticalAlignment(alignment);
        edit->mergeCurrentCharFormat(format);
        QTest::keyClicks(edit, text);
    }
};

QTextCharFormat aligned(QTextCharFormat::VerticalAlignment alignment)
{
    QTextCharFormat format;
    format.setVerticalAlignment(alignment);
    return format;
}

QTextCharFormat bold(QTextCharFormat format = {})
{
    format.setFontWeight(QFont::Bold);
    return format;
}

// Pieces of text, and how many of them are still laid out with formatting.
void addSlowPieces()
{
    QTest::addColumn<QString>("piece");
    QTest::addColumn<int>("most");
    QTest::newRow("subscripts") << u"<sub>a</sub>"_s << 10'000;
    QTest::newRow("superscripts and lines") << u"<sup>a</sup><br>"_s << 6'666;
    QTest::newRow("lines") << u"<br>"_s << 20'000;
    QTest::newRow("Hebrew") << u"א"_s << 59'997;
    QTest::newRow("Chinese") << u"汉"_s << 59'997;
    QTest::newRow("beyond the basic plane") << u"🧪"_s << 29'998;
    QTest::newRow("Russian words") << u"слово "_s << 11'999;
    QTest::newRow("letters with a mark each") << u"a\u0301"_s << 60'000;
    QTest::newRow("marks on marks") << u"\u0301"_s << 6'000;
    QTest::newRow("both directions") << u"אa"_s << 8'571;
    QTest::newRow("tabs") << u"\t"_s << 20'000;
    QTest::newRow("separators of lines") << u"\u2028"_s << 20'000;
    QTest::newRow("ends of frames") << u"\ufdd1"_s << 20'000;
}

// What the tool tip of an editor says.
QString shownTip(const CleanTextEdit *edit)
{
    QToolTip::hideText();
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); }))
        QTest::qFail("the last tool tip stays", __FILE__, __LINE__);
    QHelpEvent event(QEvent::ToolTip, {5, 5}, edit->viewport()->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(edit->viewport(), &event);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

int redPixels(QWidget *widget)
{
    const QImage image = widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == qRgb(255, 0, 0);
    }
    return count;
}

// Whether the image is null or fully transparent.
bool showsNothing(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0)
                return false;
        }
    }
    return true;
}

} // namespace

class TestCleanTextEdit : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void thePropertyIsDeclaredForMappers()
    {
        const QMetaObject &meta = CleanTextEdit::staticMetaObject;
        QCOMPARE(meta.className(), "CleanTextEdit");
        QCOMPARE(meta.superClass(), &QTextEdit::staticMetaObject);
        QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
        const QMetaProperty property = meta.property(meta.propertyOffset());
        QCOMPARE(property.name(), "cleanedHtml");
        QCOMPARE(property.metaType(), QMetaType::fromType<QString>());
        QVERIFY(property.isReadable());
        QVERIFY(property.isWritable());
        QVERIFY(property.isDesignable());
        QVERIFY(property.isScriptable());
        QVERIFY(property.isStored());
        QVERIFY(!property.isUser());
        QCOMPARE(property.notifySignal().methodSignature(), "cleanedHtmlChanged()"_ba);
    }

    void itsSignalIsPublicAndItsSlotIsPrivate()
    {
        const QMetaObject &meta = CleanTextEdit::staticMetaObject;
        const QMetaMethod signal = meta.method(meta.indexOfMethod("cleanedHtmlChanged()"));
        QCOMPARE(signal.methodType(), QMetaMethod::Signal);
        const QMetaMethod slot = meta.method(meta.indexOfMethod("onTextChanged()"));
        QCOMPARE(slot.methodType(), QMetaMethod::Slot);
        QCOMPARE(slot.access(), QMetaMethod::Private);
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    }

    void thePropertyReadsAndWritesTheContent()
    {
        CleanTextEdit edit;
        QVERIFY(edit.setProperty("cleanedHtml", u"H<sub>2</sub>O"_s));
        QCOMPARE(edit.toPlainText(), u"H2O"_s);
        QCOMPARE(edit.property("cleanedHtml"), QVariant(u"H<sub>2</sub>O"_s));
    }

    void everyChangeOfTheTextIsAnnounced()
    {
        const Fixture f;
        const QSignalSpy texts(f.edit, &QTextEdit::textChanged);
        QSignalSpy changes(f.edit, &CleanTextEdit::cleanedHtmlChanged);
        f.edit->setCleanedHtml(u"x"_s);
        QVERIFY(changes.count() > 0);
        changes.clear();
        f.edit->setCleanedHtml(u"x"_s);
        QVERIFY(changes.count() > 0);
        changes.clear();
        QTest::keyClick(f.edit, Qt::Key_A);
        QCOMPARE(changes.count(), 1);
        f.edit->undo();
        QCOMPARE(changes.count(), 2);
        changes.clear();
        const auto before = texts.count();
        f.edit->insertPlainText(u"y"_s);
        f.edit->clear();
        QCOMPARE(changes.count(), texts.count() - before);
    }

    void settingTheContentStartsAFreshUndoHistory()
    {
        const Fixture f;
        QTest::keyClicks(f.edit, u"typed"_s);
        QVERIFY(f.edit->document()->isUndoAvailable());
        f.edit->setCleanedHtml(u"set"_s);
        QVERIFY(!f.edit->document()->isUndoAvailable());
        QVERIFY(!f.edit->document()->isModified());
    }

    // Reading.

    void anEmptyEditorYieldsTheEmptyString()
    {
        const CleanTextEdit edit;
        QCOMPARE(edit.cleanedHtml(), u""_s);
    }

    void twoEmptyParagraphsYieldOneBreak()
    {
        const Fixture f;
        QTest::keyClick(f.edit, Qt::Key_Return);
        QCOMPARE(f.edit->document()->blockCount(), 2);
        QCOMPARE(f.edit->cleanedHtml(), u"<br>"_s);
    }

    void aTypedSubscriptYieldsItsTags()
    {
        const Fixture f;
        f.type(u"H"_s, QTextCharFormat::AlignNormal);
        f.type(u"2"_s, QTextCharFormat::AlignSubScript);
        f.type(u"O"_s, QTextCharFormat::AlignNormal);
        QCOMPARE(f.edit->cleanedHtml(), u"H<sub>2</sub>O"_s);
    }

    void aSoftBreakInASuperscriptEndsAndStartsTheTags()
    {
        const Fixture f;
        f.type(u"a"_s, QTextCharFormat::AlignSuperScript);
        QTest::keyClick(f.edit, Qt::Key_Return, Qt::ShiftModifier);
        QTest::keyClick(f.edit, Qt::Key_B);
        QCOMPARE(f.edit->document()->blockCount(), 1);
        QCOMPARE(f.edit->cleanedHtml(), u"<sup>a</sup><br><sup>b</sup>"_s);
    }

    void typedSignsAreNotEscaped_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("less than") << u"a<b"_s;
        QTest::newRow("greater than") << u"a>b"_s;
        QTest::newRow("ampersand") << u"a&b"_s;
        QTest::newRow("entity") << u"&amp;&lt;"_s;
        QTest::newRow("tag") << u"<b>x</b>"_s;
        QTest::newRow("quotes") << u"\"'"_s;
    }
    void typedSignsAreNotEscaped()
    {
        QFETCH(QString, text);
        const Fixture f;
        QTest::keyClicks(f.edit, text);
        QCOMPARE(f.edit->cleanedHtml(), text);
    }

    void otherFormattingIsDropped()
    {
        CleanTextEdit edit;
        QTextCharFormat loud = bold();
        loud.setFontItalic(true);
        loud.setFontUnderline(true);
        loud.setForeground(Qt::red);
        loud.setFontFamilies({u"monospace"_s});
        loud.setAnchor(true);
        loud.setAnchorHref(u"https://example.org"_s);
        QTextCursor cursor = edit.textCursor();
        cursor.insertText(u"plain "_s, {});
        cursor.insertText(u"loud"_s, loud);
        loud.setVerticalAlignment(QTextCharFormat::AlignSubScript);
        cursor.insertText(u"low"_s, loud);
        QCOMPARE(edit.cleanedHtml(), u"plain loud<sub>low</sub>"_s);
    }

    void onlySubAndSuperscriptHaveTags_data()
    {
        QTest::addColumn<QTextCharFormat::VerticalAlignment>("alignment");
        QTest::addColumn<QString>("html");
        QTest::newRow("normal") << QTextCharFormat::AlignNormal << u"x"_s;
        QTest::newRow("superscript") << QTextCharFormat::AlignSuperScript << u"<sup>x</sup>"_s;
        QTest::newRow("subscript") << QTextCharFormat::AlignSubScript << u"<sub>x</sub>"_s;
        QTest::newRow("middle") << QTextCharFormat::AlignMiddle << u"x"_s;
        QTest::newRow("top") << QTextCharFormat::AlignTop << u"x"_s;
        QTest::newRow("bottom") << QTextCharFormat::AlignBottom << u"x"_s;
        QTest::newRow("baseline") << QTextCharFormat::AlignBaseline << u"x"_s;
    }
    void onlySubAndSuperscriptHaveTags()
    {
        QFETCH(QTextCharFormat::VerticalAlignment, alignment);
        QFETCH(QString, html);
        CleanTextEdit edit;
        edit.textCursor().insertText(u"x"_s, aligned(alignment));
        QCOMPARE(edit.cleanedHtml(), html);
    }

    void neighboursOfOneAlignmentAreNotMerged()
    {
        CleanTextEdit edit;
        const QTextCharFormat low = aligned(QTextCharFormat::AlignSubScript);
        edit.textCursor().insertText(u"a"_s, low);
        edit.textCursor().insertText(u"b"_s, bold(low));
        edit.textCursor().insertText(u"c"_s, low);
        QCOMPARE(edit.cleanedHtml(), u"<sub>a</sub><sub>b</sub><sub>c</sub>"_s);
    }

    void anEmptyPartKeepsItsTags()
    {
        CleanTextEdit edit;
        const QTextCharFormat high = aligned(QTextCharFormat::AlignSuperScript);
        edit.textCursor().insertText(u"\u2028a\u2028\u2028"_s, high);
        QCOMPARE(edit.cleanedHtml(),
                 u"<sup></sup><br><sup>a</sup><br><sup></sup><br><sup></sup>"_s);
    }

    void paragraphsAndSoftBreaksAreBreaksAlike()
    {
        const Fixture f;
        QTest::keyClick(f.edit, Qt::Key_A);
        QTest::keyClick(f.edit, Qt::Key_Return);
        QTest::keyClick(f.edit, Qt::Key_B);
        QTest::keyClick(f.edit, Qt::Key_Return, Qt::ShiftModifier);
        QTest::keyClick(f.edit, Qt::Key_C);
        QTest::keyClick(f.edit, Qt::Key_Return);
        QCOMPARE(f.edit->document()->blockCount(), 3);
        QCOMPARE(f.edit->cleanedHtml(), u"a<br>b<br>c<br>"_s);
    }

    void anyDocumentCanBeRead()
    {
        CleanTextEdit edit;
        edit.setCleanedHtml(u"own"_s);
        QTextDocument document;
        document.setHtml(u"<p>x<sup>2</sup></p><p><b>y</b></p>"_s);
        const QString before = document.toHtml();
        QCOMPARE(edit.extractAllowedHtmlFromDocument(&document), u"x<sup>2</sup><br>y"_s);
        QCOMPARE(document.toHtml(), before);
        QCOMPARE(edit.cleanedHtml(), u"own"_s);
    }

    // Setting.

    void foreignMarkupIsReadAsFarAsItGoes_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("cleaned");
        QTest::newRow("null") << QString() << u""_s;
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("upper case") << u"<SUB>a</SUB><BR>b"_s << u"<sub>a</sub><br>b"_s;
        QTest::newRow("closed break") << u"a<br/>b<br />c"_s << u"a<br>b<br>c"_s;
        QTest::newRow("attributes") << u"<sup class=x>a</sup>"_s << u"<sup>a</sup>"_s;
        QTest::newRow("not closed") << u"a<sub>b"_s << u"a<sub>b</sub>"_s;
        QTest::newRow("closed without an opening") << u"a</sub>b"_s << u"ab"_s;
        QTest::newRow("nested") << u"<sup>a<sub>b</sub>c</sup>"_s
                                << u"<sup>a</sup><sub>b</sub><sup>c</sup>"_s;
        QTest::newRow("break inside")
            << u"<sub>1<br>2</sub>"_s << u"<sub>1</sub><br><sub>2</sub>"_s;
        QTest::newRow("empty pair") << u"a<sub></sub>b"_s << u"ab"_s;
        QTest::newRow("entities") << u"a&amp;b&gt;c&#945;"_s << u"a&b>cα"_s;
        QTest::newRow("lone ampersand") << u"a & b"_s << u"a & b"_s;
        QTest::newRow("formatting") << u"<b>a</b><i>b</i><font color=red>c</font>"_s << u"abc"_s;
        QTest::newRow("paragraphs") << u"<p>a</p><p>b</p>"_s << u"a<br>b"_s;
        QTest::newRow("list") << u"<ul><li>a</li><li>b</li></ul>"_s << u"a<br>b"_s;
        QTest::newRow("link") << u"<a href='https://example.org'>a</a>"_s << u"a"_s;
        QTest::newRow("comment") << u"a<!-- x -->b"_s << u"ab"_s;
        QTest::newRow("script") << u"<script>x</script>a"_s << u"a"_s;
        QTest::newRow("style") << u"<style>x</style>a"_s << u"a"_s;
        QTest::newRow("title") << u"<title>x</title>a"_s << u"a"_s;
        QTest::newRow("document") << u"<!DOCTYPE html><html><body>a</body></html>"_s << u"a"_s;
    }
    void foreignMarkupIsReadAsFarAsItGoes()
    {
        QFETCH(QString, html);
        QFETCH(QString, cleaned);
        CleanTextEdit edit;
        edit.setCleanedHtml(html);
        QCOMPARE(edit.cleanedHtml(), cleaned);
    }

    void manyTagsThatStandAloneStripNothing_data()
    {
        QTest::addColumn<QString>("lineEnd");
        for (const char *lineEnd : {"<br>", "<br/>", "<br />", "<BR/>", "<br\n/>", "</br>"})
            QTest::newRow(lineEnd) << QString::fromLatin1(lineEnd);
    }
    void manyTagsThatStandAloneStripNothing()
    {
        QFETCH(QString, lineEnd);
        constexpr int lines = 300;
        CleanTextEdit edit;
        edit.setCleanedHtml(QString(u"H<sub>2</sub>"_s + lineEnd).repeated(lines));
        QCOMPARE(edit.cleanedHtml().count(u"<sub>2</sub>"_s), lines);
    }

    void aPictureLeavesNoCharacterBehind()
    {
        CleanTextEdit edit;
        edit.setCleanedHtml(u"a<img src='none.png'>b"_s);
        QCOMPARE(edit.cleanedHtml(), u"ab"_s);
    }

    void whatIsSetIsReadBack_data()
    {
        QTest::addColumn<QString>("html");
        const auto row = [](const char *name, const QString &html) { QTest::newRow(name) << html; };
        row("empty", u""_s);
        row("word", u"water"_s);
        row("blanks inside", u"a b c"_s);
        row("formula", u"H<sub>2</sub>O"_s);
        row("ion", u"SO<sub>4</sub><sup>2-</sup>"_s);
        row("break", u"a<br>b"_s);
        row("breaks around", u"<br>a<br><br>b<br>"_s);
        row("break alone", u"<br>"_s);
        row("break between subscripts", u"<sub>a</sub><br><sub>b</sub>"_s);
        row("greater than", u"a>b"_s);
        row("InChI", u"InChI=1S/C4H6/c1-3-4-2/h3-4H,1-2H2"_s);
        row("umlauts", u"Gerätä ß é"_s);
        row("Greek", u"α-Pinen Ωμέγα"_s);
        row("Chinese", u"数据 汉字"_s);
        row("Devanagari", u"हिन्दी क्षेत्र"_s);
        row("beyond the basic plane", u"🧪 𝟖 𠮷"_s);
        row("joined signs", u"👩‍🔬 🇩🇪"_s);
        row("combining marks", u"e\u0301 a\u0308\u0323"_s);
        row("Hebrew", u"ספקטרום <sub>א</sub> מים"_s);
        row("Arabic", u"طيف <sup>٢</sup> ماء"_s);
        row("both directions", u"a ש b 12 ש"_s);
        row("direction marks", u"a\u200e\u200f\u202e\u202cb"_s);
        row("joiners", u"a\u200b\u200c\u200d\u2060b"_s);
        row("soft hyphen", u"a\u00adb"_s);
        row("private use", u"a\ue000b"_s);
        row("byte order mark", u"a\ufeffb"_s);
        row("lone high surrogate", QString(u"a"_s + QChar(0xd83e) + u'b'));
        row("lone low surrogate", QString(u"a"_s + QChar(0xddea) + u'b'));
        row("surrogates in the wrong order", QString(QChar(0xddea)) + QChar(0xd83e));
        row("replacement character", u"a\ufffdb"_s);
    }
    void whatIsSetIsReadBack()
    {
        QFETCH(QString, html);
        // Not shown, since not every machine has the fonts.
        CleanTextEdit edit;
        edit.setCleanedHtml(html);
        QCOMPARE(edit.cleanedHtml(), html);
        edit.setCleanedHtml(edit.cleanedHtml());
        QCOMPARE(edit.cleanedHtml(), html);
    }

    void whatWasReadOnceIsReadAgain()
    {
        const QStringList pieces{u"a"_s,
                                 u"H2 O"_s,
                                 u"ä"_s,
                                 u"🧪"_s,
                                 u"ש"_s,
                                 u"<sub>x</sub>"_s,
                                 u"<sup>y</sup>"_s,
                                 u"<br>"_s,
                                 u">"_s,
                                 u"<b>z</b>"_s,
                                 u"<p>w</p>"_s};
        CleanTextEdit edit;
        quint32 state = 1;
        for (int text = 0; text < 500; ++text) {
            QString html;
            for (int piece = 0; piece < 8; ++piece) {
                state = state * 1'664'525 + 1'013'904'223;
                html += pieces[(state >> 16) % static_cast<quint32>(pieces.size())];
            }
            edit.setCleanedHtml(html);
            const QString once = edit.cleanedHtml();
            edit.setCleanedHtml(once);
            QCOMPARE(edit.cleanedHtml(), once);
        }
    }

    void charactersThatDocumentsUseThemselvesAreSurvived_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("null") << QString(QChar(u'\0'));
        QTest::newRow("frame start") << QString(QChar(0xfdd0));
        QTest::newRow("frame end") << QString(QChar(0xfdd1));
        QTest::newRow("frames") << QString(QChar(0xfdd1)) + QChar(0xfdd0) + QChar(0xfdd0);
        QTest::newRow("object") << QString(QChar(0xfffc));
        QTest::newRow("paragraph") << u"\u2029"_s;
        QTest::newRow("line") << u"\u2028"_s;
        QTest::newRow("not a character") << QString(QChar(0xffff)) + QChar(0xfffe);
    }
    void charactersThatDocumentsUseThemselvesAreSurvived()
    {
        QFETCH(QString, text);
        const Fixture f;
        f.edit->setCleanedHtml(u"a"_s + text + u"b"_s);
        QVERIFY(f.edit->cleanedHtml().startsWith(u'a'));
        QVERIFY(f.edit->cleanedHtml().endsWith(u'b'));
        QVERIFY(f.edit->cleanedHtml().size() <= 14);
        f.edit->setPlainText(u"a"_s + text + u"b"_s);
        QVERIFY(f.edit->cleanedHtml().startsWith(u'a'));
        f.edit->setCleanedHtml(u"over"_s);
        QCOMPARE(f.edit->cleanedHtml(), u"over"_s);
    }

    void hugeTextsAreShownAndReadInTime_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<qsizetype>("cleanedSize");
        const auto row = [](const char *name, const QString &html, qsizetype size) {
            QTest::newRow(name) << html << size;
        };
        row("letters", QString(100'000, u'x'), 100'000);
        row("words", u"word "_s.repeated(20'000) + u'x', 100'001);
        row("lines", u"x<br>"_s.repeated(20'000), 100'000);
        row("formulas in lines", u"H<sub>2</sub>O<br>"_s.repeated(5'000), 90'000);
        row("tag openings", QString(100'000, u'<'), 0);
        row("tag ends", QString(100'000, u'>'), 100'000);
        row("ampersands", QString(100'000, u'&'), 100'000);
        row("openings of comments", u"<!--"_s.repeated(25'000), 0);
        row("non-ASCII", u"🧪ä "_s.repeated(25'000) + u'x', 100'001);
    }
    void hugeTextsAreShownAndReadInTime()
    {
        QFETCH(QString, html);
        QFETCH(qsizetype, cleanedSize);
        const Fixture f;
        QElapsedTimer clock;
        clock.start();
        f.edit->setCleanedHtml(html);
        QCOMPARE(f.edit->cleanedHtml().size(), cleanedSize);
        QVERIFY(!f.edit->grab().isNull());
        QCOMPARE_LT(clock.elapsed(), 30'000);
    }

    void foreignTagsThatTakeLongAreLeftOut_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("cleaned");
        const QString formula = u"H<sub style='font-size: 7pt'>2</sub>O<br />"_s;
        QString fonts;
        for (int i = 1; i <= 9'000; ++i)
            fonts += u"<span style='font-size: %1pt'>x</span>"_s.arg(i);
        QTest::newRow("fonts") << formula + fonts << u"H<sub>2</sub>O<br>"_s + QString(9'000, u'x');
        QTest::newRow("pictures") << formula + u"x<img src=a>"_s.repeated(18'000)
                                  << u"H<sub>2</sub>O<br>"_s + QString(18'000, u'x');
        QTest::newRow("columns") << formula
                                        + u"<table><tr><td ColSpan = 20000>x</table>"_s.repeated(
                                            100)
                                 << u"H<sub>2</sub>O<br>"_s + QString(100, u'x');
        QTest::newRow("lists") << formula + u"<ul>"_s.repeated(100) + u"<li>x"_s.repeated(10'000)
                               << u"H<sub>2</sub>O<br>"_s + QString(10'000, u'x');
        QTest::newRow("style sheet") << formula + u"<STYLE>"_s + u"*{color: red}"_s.repeated(5'000)
                                            + u"</STYLE>"_s + u"<b>x"_s.repeated(150)
                                     << u"H<sub>2</sub>O<br>"_s + QString(150, u'x');
        QTest::newRow("nested beside half a pair of surrogates")
            << u"<table><tr><td>"_s.repeated(30) + u"a"_s + QChar(0xd800) << u"a"_s + QChar(0xd800);
        QTest::newRow("nested, too")
            << u"<sup>"_s.repeated(300) + u"a<br>"_s + u"<b>x"_s.repeated(600)
            << u"a<br>"_s + QString(600, u'x');
    }
    void foreignTagsThatTakeLongAreLeftOut()
    {
        QFETCH(QString, html);
        QFETCH(QString, cleaned);
        CleanTextEdit edit;
        QElapsedTimer clock;
        clock.start();
        edit.setCleanedHtml(html);
        QVERIFY(edit.cleanedHtml() == cleaned);
        QVERIFY(!edit.grab().isNull());
        QCOMPARE_LT(clock.elapsed(), 5'000);
    }

    // Texts whose layout would take too long.

    void aTextOfMoreThanAMillionCharactersIsShownAsItIsWritten()
    {
        const Fixture f;
        const QString most = u"H<sub>2</sub>O "_s + QString(999'985, u'x');
        QCOMPARE(most.size(), 1'000'000);
        f.edit->setCleanedHtml(most);
        QVERIFY(f.edit->toPlainText().startsWith(u"H2O "_s));
        QCOMPARE(shownTip(f.edit), QString());

        f.edit->setCleanedHtml(most + u'x');
        QVERIFY(f.edit->toPlainText().startsWith(u"H<sub>2</sub>O "_s));
        QCOMPARE(f.edit->wordWrapMode(), QTextOption::WrapAnywhere);
        QVERIFY(!f.edit->document()->isUndoAvailable());
        QVERIFY(!f.edit->document()->isModified());
        QCOMPARE(f.edit->cleanedHtml(), most + u'x');

        f.edit->setCleanedHtml(u"H<sub>2</sub>O"_s);
        QCOMPARE(f.edit->toPlainText(), u"H2O"_s);
        QCOMPARE(f.edit->wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
    }

    void whatTakesLongInAShorterTextIsShownAsItIsWritten_data() { addSlowPieces(); }
    void whatTakesLongInAShorterTextIsShownAsItIsWritten()
    {
        QFETCH(QString, piece);
        QFETCH(int, most);
        const Fixture f;
        f.edit->setCleanedHtml(piece.repeated(most));
        QVERIFY(!f.edit->toPlainText().contains(QChar::ObjectReplacementCharacter));

        const QString text = piece.repeated(most + 1);
        f.edit->setCleanedHtml(text);
        QVERIFY(f.edit->toPlainText().contains(QChar::ObjectReplacementCharacter));
        QCOMPARE_LT(f.edit->document()->characterCount(), 120'000);
        QCOMPARE(f.edit->cleanedHtml(), text);
    }

    void theTipSaysHowMuchIsNotShownBesideWhatElseItSays()
    {
        const Fixture f;
        QLocale::setDefault(QLocale::c());
        f.edit->setToolTip(u"<b>wrong</b>"_s);
        f.edit->setCleanedHtml(QString(3'000'000, u'x'));
        QVERIFY(shownTip(f.edit).contains(u"too long"_s));
        QVERIFY(shownTip(f.edit).contains(u"here 2800000."_s));
        QVERIFY(shownTip(f.edit).contains(u"<b>wrong</b><br>"_s));
        QCOMPARE(f.edit->toolTip(), u"<b>wrong</b>"_s);
        f.edit->selectAll();
        QTest::keyClick(f.edit, Qt::Key_Y);
        QCOMPARE(shownTip(f.edit), u"<b>wrong</b>"_s);
        f.edit->undo();
        QVERIFY(shownTip(f.edit).contains(u"here 2800000."_s));
    }

    void theFormatAtTheCursorIsNotThatOfALongText()
    {
        const Fixture f;
        f.edit->mergeCurrentCharFormat(aligned(QTextCharFormat::AlignSubScript));
        const QString text(3'000'000, u'x');
        f.edit->setCleanedHtml(text);
        QCOMPARE(f.edit->cleanedHtml(), text);
    }

    void aLongTextThatIsSetAgainIsNotLaidOutAgain()
    {
        const Fixture f;
        const QString text(900'000, u'x');
        f.edit->setCleanedHtml(text);
        const int revision = f.edit->document()->revision();
        f.edit->moveCursor(QTextCursor::NextCharacter);
        f.edit->setCleanedHtml(text);
        QCOMPARE(f.edit->document()->revision(), revision);
        QCOMPARE(f.edit->textCursor().position(), 0);
        QTest::keyClick(f.edit, Qt::Key_Y);
        f.edit->setCleanedHtml(text);
        QCOMPARE(f.edit->cleanedHtml(), text);
        QVERIFY(!f.edit->document()->isUndoAvailable());
        f.edit->selectAll();
        f.edit->mergeCurrentCharFormat(aligned(QTextCharFormat::AlignSubScript));
        f.edit->setCleanedHtml(text);
        QCOMPARE(f.edit->cleanedHtml(), text);
    }

    void anEditOfATextThatIsTooLongKeepsAllOfIt()
    {
        const Fixture f;
        const QString text = u"a<sub>b</sub><br>🧪&amp; <b>"_s.repeated(100'000);
        f.edit->setCleanedHtml(text);
        QVERIFY(f.edit->document()->characterCount() < text.size());
        QTest::keyClicks(f.edit, u"x "_s);
        QCOMPARE(f.edit->cleanedHtml(), u"x "_s + text);
        f.edit->moveCursor(QTextCursor::End); // behind what stands for the rest
        QTest::keyClicks(f.edit, u" y"_s);
        QCOMPARE(f.edit->cleanedHtml(), u"x "_s + text + u" y"_s);
        f.edit->setCleanedHtml(f.edit->cleanedHtml());
        QCOMPARE(f.edit->cleanedHtml(), u"x "_s + text + u" y"_s);
    }

    void anEditOfATextThatIsTooLongKeepsEveryKindOfCharacter_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::newRow("controls and Latin letters") << 0 << 0x2ff;
        QTest::newRow("punctuation and ends of lines") << 0x2000 << 0x206f;
        QTest::newRow("half of a pair") << 0xd800 << 0xd801;
        QTest::newRow("other half of a pair") << 0xdc00 << 0xdc01;
        QTest::newRow("none that are characters") << 0xfdd0 << 0xfdef;
        QTest::newRow("special ones") << 0xfff0 << 0xffff;
        QTest::newRow("byte order mark") << 0xfeff << 0xfeff;
    }
    void anEditOfATextThatIsTooLongKeepsEveryKindOfCharacter()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        const Fixture f;
        QString text;
        for (int code = first; code <= last; ++code)
            text += QChar(code) + QStringView(u"x");
        text = text.repeated(2) + QString(3'000'000, u'x');
        f.edit->setCleanedHtml(text);
        QTest::keyClick(f.edit, Qt::Key_Y);
        QVERIFY(f.edit->cleanedHtml() == u'y' + text);
    }

    void whatIsNotShownIsDeletedWithWhatStandsForIt()
    {
        const Fixture f;
        const QString text(3'000'000, u'x');
        f.edit->setCleanedHtml(text);
        f.edit->selectAll();
        QTest::keyClick(f.edit, Qt::Key_Y);
        QCOMPARE(f.edit->cleanedHtml(), u"y"_s);
        f.edit->undo();
        QCOMPARE(f.edit->cleanedHtml(), text);
    }

    void whatIsNotShownIsCutAndPastedWithWhatStandsForIt()
    {
        const Fixture f;
        const QString text = u"a<sub>b</sub>\n&amp; "_s.repeated(200'000);
        f.edit->setCleanedHtml(text);
        f.edit->selectAll();
        f.edit->cut();
        QCOMPARE(f.edit->cleanedHtml(), QString());
        QCOMPARE(QApplication::clipboard()->text(), text);
        f.edit->undo();
        QCOMPARE(f.edit->cleanedHtml(), text);
        f.edit->redo();
        QCOMPARE(f.edit->cleanedHtml(), QString());
        f.edit->paste();
        QCOMPARE(f.edit->cleanedHtml(), QString(text).replace(u'\n', u"<br>"_s));
    }

    void ofAPartThatIsCopiedNoMoreIsTaken()
    {
        const Fixture f;
        const QString text = u"a<sub>b</sub> "_s.repeated(200'000);
        f.edit->setCleanedHtml(text);
        const auto move = [&](QTextCursor::MoveOperation operation, int times) {
            QTextCursor cursor = f.edit->textCursor();
            cursor.movePosition(operation, QTextCursor::KeepAnchor, times);
            f.edit->setTextCursor(cursor);
        };
        move(QTextCursor::NextCharacter, 4);
        f.edit->copy();
        QCOMPARE(QApplication::clipboard()->text(), u"a<su"_s);
        move(QTextCursor::End, 1);
        f.edit->copy();
        QCOMPARE(QApplication::clipboard()->text(), text);
        f.edit->moveCursor(QTextCursor::End);
        move(QTextCursor::PreviousCharacter, 1);
        f.edit->copy();
        const int shown = f.edit->document()->characterCount() - 2;
        QCOMPARE(QApplication::clipboard()->text(), text.sliced(shown));
    }

    void whatIsPastedOverAHugeTextIsShown()
    {
        const Fixture f;
        f.edit->setCleanedHtml(QString(3'000'000, u'x'));
        f.edit->selectAll();
        QApplication::clipboard()->setText(u"water"_s);
        f.edit->paste();
        QCOMPARE(f.edit->toPlainText(), u"water"_s);
        QCOMPARE(shownTip(f.edit), QString());
    }

    void whatIsPastedIntoAHugeTextIsShown()
    {
        const Fixture f;
        const QString text(3'000'000, u'x');
        f.edit->setCleanedHtml(text);
        QApplication::clipboard()->setText(u"water"_s);
        f.edit->paste();
        QVERIFY(f.edit->toPlainText().startsWith(u"waterx"_s));
        QCOMPARE(f.edit->cleanedHtml(), u"water"_s + text);
        f.edit->moveCursor(QTextCursor::End);
        f.edit->paste();
        QVERIFY(f.edit->toPlainText().endsWith(u"water"_s));
        QCOMPARE(f.edit->cleanedHtml(), u"water"_s + text + u"water"_s);
        QApplication::clipboard()->setText(text);
        f.edit->paste();
        QCOMPARE(f.edit->cleanedHtml(), u"water"_s + text + u"water"_s + text);
    }

    void aKeyThatWouldDeleteWhatIsNotShownSelectsItFirst_data()
    {
        QTest::addColumn<bool>("isBehind");
        QTest::addColumn<QKeySequence>("keys");
        QTest::addColumn<QString>("left");
        const QString words = u"word "_s.repeated(40'000);
        QTest::newRow("Backspace") << true << QKeySequence(Qt::Key_Backspace) << words;
        QTest::newRow("word before") << true << QKeySequence(Qt::CTRL | Qt::Key_Backspace) << words;
        QTest::newRow("Delete") << false << QKeySequence(Qt::Key_Delete) << words;
        QTest::newRow("word behind") << false << QKeySequence(Qt::CTRL | Qt::Key_Delete) << words;
    }
    void aKeyThatWouldDeleteWhatIsNotShownSelectsItFirst()
    {
        QFETCH(bool, isBehind);
        QFETCH(QKeySequence, keys);
        QFETCH(QString, left);
        const Fixture f;
        const QString text = u"word "_s.repeated(600'000);
        f.edit->setCleanedHtml(text);
        f.edit->moveCursor(QTextCursor::End);
        if (!isBehind)
            f.edit->moveCursor(QTextCursor::PreviousCharacter);
        QTest::keySequence(f.edit, keys);
        QCOMPARE(f.edit->cleanedHtml(), text);
        QVERIFY(f.edit->textCursor().hasSelection());
        QTest::keySequence(f.edit, keys);
        QCOMPARE(f.edit->cleanedHtml(), left);
        f.edit->undo();
        QCOMPARE(f.edit->cleanedHtml(), text);
    }

    void otherKeysBesideWhatIsNotShownDeleteOneCharacter()
    {
        const Fixture f;
        const QString text(3'000'000, u'x');
        f.edit->setCleanedHtml(text);
        f.edit->moveCursor(QTextCursor::End);
        QTest::keyClicks(f.edit, u"ab"_s);
        QTest::keyClick(f.edit, Qt::Key_Backspace);
        QCOMPARE(f.edit->cleanedHtml(), text + u'a');
        QTest::keyClick(f.edit, Qt::Key_Backspace);
        QCOMPARE(f.edit->cleanedHtml(), text);
        f.edit->moveCursor(QTextCursor::PreviousCharacter);
        QTest::keyClick(f.edit, Qt::Key_Backspace);
        QCOMPARE(f.edit->cleanedHtml(), text.chopped(1));
    }

    void ofAHugeTextThatIsPastedTheBeginningIsShown()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"H<sub>2</sub>"_s);
        f.edit->moveCursor(QTextCursor::End);
        f.edit->setCurrentCharFormat({});
        QApplication::clipboard()->setText(u"line\r\n"_s.repeated(300'000));
        f.edit->paste();
        const QString whole = u"H<sub>2</sub>"_s + u"line<br>"_s.repeated(300'000);
        QCOMPARE(f.edit->cleanedHtml(), whole);
        QCOMPARE_LT(f.edit->document()->characterCount(), 300'000);
        QVERIFY(f.edit->document()->isModified());
        QVERIFY(shownTip(f.edit).contains(u"too long"_s));
        QCOMPARE(f.edit->wordWrapMode(), QTextOption::WrapAnywhere);
        f.edit->undo();
        QCOMPARE(f.edit->cleanedHtml(), u"H<sub>2</sub>"_s);
    }

    void pastingAgainAndAgainShowsNoMoreThanCanBeShown()
    {
        const Fixture f;
        const QString text(900'000, u'x');
        QApplication::clipboard()->setText(text);
        for (int time = 0; time < 4; ++time)
            f.edit->paste();
        QCOMPARE(f.edit->cleanedHtml(), text.repeated(4));
        QCOMPARE_LT(f.edit->document()->characterCount(), 1'000'010);
    }

    // Each case runs in its own process, as it tests survival.
    void deepMarkupIsShownWithoutCrashOrHang_data()
    {
        QTest::addColumn<QString>("opening");
        QTest::addColumn<int>("levels");
        const QList<std::pair<const char *, QString>> kinds{{"div", u"<div>"_s},
                                                            {"span", u"<span>"_s},
                                                            {"sub", u"<sub>"_s},
                                                            {"list", u"<ul><li>"_s},
                                                            {"table", u"<table><tr><td>"_s}};
        for (const auto &[name, opening] : kinds) {
            for (const int levels : {50, 5'000, 20'000})
                QTest::addRow("%s-%d", name, levels) << opening << levels;
        }
    }
    void deepMarkupIsShownWithoutCrashOrHang()
    {
        constexpr auto inside = "TESTED_IN_A_PROCESS_OF_ITS_OWN";
        if (qEnvironmentVariableIsSet(inside)) {
            QFETCH(QString, opening);
            QFETCH(int, levels);
            const Fixture f;
            f.edit->setCleanedHtml(opening.repeated(levels) + u'x');
            QVERIFY(f.edit->cleanedHtml().contains(u'x'));
            QVERIFY(!f.edit->grab().isNull());
            f.edit->setCleanedHtml({});
            return;
        }
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QString::fromLatin1(inside), u"1"_s);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        const QString function = QString::fromLatin1(QTest::currentTestFunction()) + u':'
                                 + QString::fromLatin1(QTest::currentDataTag());
        process.start(QCoreApplication::applicationFilePath(), {function});
        const bool finished = process.waitForFinished(30'000);
        if (!finished) {
            process.kill();
            process.waitForFinished();
        }
        QVERIFY2(finished, "it hangs");
        QVERIFY2(process.exitStatus() == QProcess::NormalExit, "it crashes");
        const QByteArray output = process.readAll();
        QVERIFY2(process.exitCode() == 0, output.constData());
        // Between the first and the last one, which are always run.
        QVERIFY2(output.contains("3 passed"), output.constData());
    }

    // Resources.

    void nothingThatMarkupRefersToIsShown_data()
    {
        QTest::addColumn<QString>("html");
        QTest::newRow("picture") << u"<img src='%1/red.png'>"_s;
        QTest::newRow("picture by address") << u"<img src='file://%1/red.png'>"_s;
        QTest::newRow("picture by relative address") << u"<img src='file:%1/red.png'>"_s;
        QTest::newRow("background") << u"<p style='background-image: url(%1/red.png)'>text</p>"_s;
        QTest::newRow("background of the page") << u"<body background='%1/red.png'>text</body>"_s;
        QTest::newRow("background of a table")
            << u"<table background='%1/red.png'><tr><td>text</td></tr></table>"_s;
        QTest::newRow("style sheet")
            << u"<link rel='stylesheet' type='text/css' href='%1/red.css'><p>text</p>"_s;
        QTest::newRow("imported style sheet")
            << u"<style>@import url(%1/red.css);</style><p>text</p>"_s;
    }
    void nothingThatMarkupRefersToIsShown()
    {
        QFETCH(QString, html);
        const QTemporaryDir folder;
        QImage red(100, 100, QImage::Format_RGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(folder.filePath(u"red.png"_s)));
        writeFile(folder.filePath(u"red.css"_s),
                  "p { background-color: #ff0000; vertical-align: super }");
        const QString here = html.arg(folder.path());

        const Fixture f;
        f.edit->setCleanedHtml(here);
        QVERIFY(!f.edit->cleanedHtml().contains(u"<sup>"_s));
        QCOMPARE(redPixels(f.edit), 0);
    }

    void whatIsReferredToWouldBeSeen()
    {
        const QTemporaryDir folder;
        QImage red(100, 100, QImage::Format_RGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(folder.filePath(u"red.png"_s)));
        QTextEdit edit;
        edit.resize(300, 300);
        edit.show();
        edit.setHtml(u"<img src='%1/red.png'>"_s.arg(folder.path()));
        QVERIFY(redPixels(&edit) > 1'000);
    }

    void noResourceIsHandedOut_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("web") << QUrl(u"https://example.org/red.png"_s);
        QTest::newRow("file") << QUrl::fromLocalFile(QCoreApplication::applicationFilePath());
        QTest::newRow("path") << QUrl(QCoreApplication::applicationFilePath());
        QTest::newRow("resource of the program")
            << QUrl(u"qrc:/qt-project.org/styles/commonstyle/images/file-32.png"_s);
        QTest::newRow("other machine") << QUrl(u"file://example.org/share/red.png"_s);
        QTest::newRow("none") << QUrl();
    }
    void noResourceIsHandedOut()
    {
        QFETCH(QUrl, url);
        CleanTextEdit edit;
        for (const int type :
             {QTextDocument::HtmlResource, QTextDocument::ImageResource,
              QTextDocument::StyleSheetResource, QTextDocument::MarkdownResource}) {
            for (const QVariant &resource :
                 {edit.loadResource(type, url), edit.document()->resource(type, url)}) {
                QVERIFY(resource.toByteArray().isEmpty());
                QVERIFY(showsNothing(resource.value<QImage>()));
            }
        }
    }

    // Keys and the clipboard.

    void tabMovesTheFocus()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"a"_s);
        QTest::keyClick(f.edit, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), f.next);
        QTest::keyClick(f.next, Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), f.edit);
        QCOMPARE(f.edit->cleanedHtml(), u"a"_s);
        QCOMPARE(f.next->cleanedHtml(), u""_s);
    }

    void ofPastedRichTextThePlainTextIsInsertedInParagraphs()
    {
        const Fixture f;
        auto *data = new QMimeData;
        data->setHtml(u"<b>a</b><br><sup>b</sup><p>c</p>"_s);
        data->setText(u"a\nb\nc"_s);
        QApplication::clipboard()->setMimeData(data);
        f.edit->paste();
        QCOMPARE(f.edit->document()->blockCount(), 3);
        QCOMPARE(f.edit->cleanedHtml(), u"a<br>b<br>c"_s);
        f.edit->moveCursor(QTextCursor::Start);
        f.edit->moveCursor(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
        QVERIFY(!f.edit->textCursor().charFormat().font().bold());
    }

    void whatIsCopiedFromAnEditorIsPastedAsPlainText()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"H<sub>2</sub>O<br>x"_s);
        f.edit->selectAll();
        f.edit->copy();
        f.next->paste();
        QCOMPARE(f.next->cleanedHtml(), u"H2O<br>x"_s);
    }

    void pastedTextTakesTheFormatAtTheCursor()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"H<sub>2</sub>"_s);
        f.edit->moveCursor(QTextCursor::End);
        QApplication::clipboard()->setText(u"3\n4"_s);
        f.edit->paste();
        QCOMPARE(f.edit->cleanedHtml(), u"H<sub>23</sub><br><sub>4</sub>"_s);
    }

    void aPastedPictureIsIgnored()
    {
        const Fixture f;
        QImage red(10, 10, QImage::Format_RGB32);
        red.fill(Qt::red);
        QApplication::clipboard()->setImage(red);
        f.edit->paste();
        QCOMPARE(f.edit->cleanedHtml(), u""_s);
        QVERIFY(!f.edit->acceptRichText());
    }
};

QTEST_MAIN(TestCleanTextEdit)
#include "tst_cleantextedit.moc"

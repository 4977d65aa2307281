// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/warnings.h"
#include "widgets/singlelinetextedit.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMetaObject>
#include <QMimeData>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// Lets the tests call what the toolkit calls.
class Editor : public SingleLineTextEdit
{
public:
    using SingleLineTextEdit::insertFromMimeData;
    using SingleLineTextEdit::keyPressEvent;
    using SingleLineTextEdit::SingleLineTextEdit;
};

// Notes the keys that its children left to it.
class Parent : public QWidget
{
public:
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override { keys.append(event->key()); }
};

struct Fixture {
    Parent window;
    Editor *edit = new Editor(&window);

    Fixture()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(edit);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            QTest::qFail("the window does not become active", __FILE__, __LINE__);
        edit->setFocus();
    }
};

int heightOf(const QTextEdit &edit)
{
    return static_cast<int>(edit.document()->size().height()) + 5;
}

void insert(Editor *edit, const QString &text)
{
    QMimeData data;
    data.setText(text);
    edit->insertFromMimeData(&data);
}

} // namespace

class TestSingleLineTextEdit : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void addsNoSignalsSlotsOrProperties()
    {
        const QMetaObject &meta = SingleLineTextEdit::staticMetaObject;
        QCOMPARE(meta.className(), "SingleLineTextEdit");
        QCOMPARE(meta.superClass(), &CleanTextEdit::staticMetaObject);
        QCOMPARE(meta.methodCount(), meta.methodOffset());
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    }

    void itIsSetUpForOneLine()
    {
        const SingleLineTextEdit edit;
        QVERIFY(edit.acceptRichText());
        QVERIFY(edit.tabChangesFocus());
        QCOMPARE(edit.verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
        QCOMPARE(edit.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
        QCOMPARE(edit.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(edit.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
        QCOMPARE(edit.frameStyle(), int(QFrame::NoFrame));
        QCOMPARE(edit.lineWrapMode(), QTextEdit::NoWrap);
        QCOMPARE(edit.styleSheet(),
                 u"background-color: white; border: 1px solid gray; padding: 2px;"_s);
    }

    // The style keeps a record for ever of each widget that has a background painted but no sheet.
    void thePartThatShowsTheTextHasNoBackgroundOfItsOwn()
    {
        Fixture fixture;
        const auto hasBackground = [&fixture] {
            return fixture.edit->viewport()->testAttribute(Qt::WA_StyledBackground);
        };
        QVERIFY(!hasBackground());
        fixture.window.setStyleSheet(u"QWidget { background-color: #c9c9c9; }"_s);
        QVERIFY(!hasBackground());
        fixture.edit->setStyleSheet(u"background-color: red;"_s);
        QVERIFY(!hasBackground());
        // It is the editor that is painted, under it.
        QCOMPARE(fixture.edit->grab().toImage().pixelColor(fixture.edit->rect().center()),
                 QColor(Qt::red));
    }

    void itsHeightIsFixedToItsDocument()
    {
        const SingleLineTextEdit edit;
        QVERIFY(heightOf(edit) > 5);
        QCOMPARE(edit.minimumHeight(), heightOf(edit));
        QCOMPARE(edit.maximumHeight(), heightOf(edit));
    }

    void itReadsAndWritesTheMarkup()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"H<sub>2</sub>O"_s);
        QCOMPARE(f.edit->cleanedHtml(), u"H<sub>2</sub>O"_s);
        QTest::keyClick(f.edit, Qt::Key_X);
        QCOMPARE(f.edit->cleanedHtml(), u"xH<sub>2</sub>O"_s);
    }

    // Keys.

    void returnAndEnterInsertNothingAndAreLeftToTheParent_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        const QList<std::pair<const char *, Qt::KeyboardModifiers>> modifiers{
            {"alone", Qt::NoModifier},
            {"with Shift", Qt::ShiftModifier},
            {"with Control", Qt::ControlModifier},
            {"with Alt", Qt::AltModifier},
            {"with Control and Shift", Qt::ControlModifier | Qt::ShiftModifier},
            {"of the keypad", Qt::KeypadModifier}};
        for (const auto &[name, modifier] : modifiers) {
            QTest::addRow("Return %s", name) << Qt::Key_Return << modifier;
            QTest::addRow("Enter %s", name) << Qt::Key_Enter << modifier;
        }
    }
    void returnAndEnterInsertNothingAndAreLeftToTheParent()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        const Fixture f;
        f.edit->setCleanedHtml(u"abc"_s);
        f.edit->selectAll();
        QTest::keyClick(f.edit, key, modifiers);
        QCOMPARE(f.edit->cleanedHtml(), u"abc"_s);
        QCOMPARE(f.edit->document()->blockCount(), 1);
        QVERIFY(!f.edit->document()->isUndoAvailable());
        QCOMPARE(f.edit->textCursor().selectedText(), u"abc"_s);
        QCOMPARE(f.window.keys.count(key), 1);

        QKeyEvent event(QEvent::KeyPress, key, modifiers, u"\r"_s);
        event.accept();
        f.edit->keyPressEvent(&event);
        QVERIFY(!event.isAccepted());
        QCOMPARE(f.edit->cleanedHtml(), u"abc"_s);
    }

    void otherKeysAreTaken()
    {
        const Fixture f;
        QTest::keyClicks(f.edit, u"a<b"_s);
        QTest::keyClick(f.edit, Qt::Key_Backspace);
        QTest::keyClick(f.edit, Qt::Key_Left);
        QTest::keyClick(f.edit, Qt::Key_Z);
        QCOMPARE(f.edit->cleanedHtml(), u"az<"_s);
        QCOMPARE(f.window.keys, QList<int>());
    }

    // Pasting and dropping.

    void whatIsPastedBecomesOneLine_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("word") << u"water"_s << u"water"_s;
        QTest::newRow("three lines") << u"one\ntwo\nthree"_s << u"one two three"_s;
        QTest::newRow("three lines of Windows")
            << u"one\r\ntwo\r\nthree\r\n"_s << u"one two three"_s;
        QTest::newRow("carriage returns") << u"one\rtwo\rthree"_s << u"one two three"_s;
        QTest::newRow("empty lines") << u"\n\none\n\n\ntwo\n"_s << u"one two"_s;
        QTest::newRow("leading and trailing blanks") << u"  one two  "_s << u"one two"_s;
        QTest::newRow("blanks inside") << u"one   two \t three"_s << u"one two three"_s;
        QTest::newRow("white space alone") << u" \t\r\n "_s << u""_s;
        QTest::newRow("separators") << u"one\u2028two\u2029three\vfour\ffive\u0085six"_s
                                    << u"one two three four five six"_s;
        QTest::newRow("wide blanks")
            << u"\u00a0one\u3000two\u2003three\u00a0"_s << u"one two three"_s;
        QTest::newRow("tags") << u"<b>x</b>\n<sub>2</sub>"_s << u"<b>x</b> <sub>2</sub>"_s;
        QTest::newRow("entities") << u"a &amp; b"_s << u"a &amp; b"_s;
        QTest::newRow("non-ASCII") << u" α\n数据\r\n🧪 ש "_s << u"α 数据 🧪 ש"_s;
    }
    void whatIsPastedBecomesOneLine()
    {
        QFETCH(QString, text);
        QFETCH(QString, line);
        const Fixture f;
        QApplication::clipboard()->setText(text);
        f.edit->paste();
        QCOMPARE(f.edit->cleanedHtml(), line);
        QCOMPARE(f.edit->document()->blockCount(), 1);
        insert(f.edit, text);
        QCOMPARE(f.edit->cleanedHtml(), QString(line + line));
    }

    void ofRichTextOnlyThePlainTextIsInserted()
    {
        const Fixture f;
        auto *data = new QMimeData;
        data->setHtml(u"<h1>Title</h1><b>a</b><sub>b</sub>"_s);
        data->setText(u"Title\nab"_s);
        QApplication::clipboard()->setMimeData(data);
        f.edit->paste();
        QCOMPARE(f.edit->cleanedHtml(), u"Title ab"_s);
        QVERIFY(!f.edit->toHtml().contains(u"font-weight:7"_s));
    }

    void whatHasNoPlainTextIsIgnored()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"abc"_s);
        f.edit->selectAll();
        QMimeData html;
        html.setHtml(u"<b>x</b>"_s);
        f.edit->insertFromMimeData(&html);
        QMimeData picture;
        picture.setImageData(QImage(3, 3, QImage::Format_RGB32));
        f.edit->insertFromMimeData(&picture);
        QMimeData other;
        other.setData(u"application/x-unknown"_s, "x");
        f.edit->insertFromMimeData(&other);
        QMimeData emptyText;
        emptyText.setText(u""_s);
        emptyText.setHtml(u"<b>x</b>"_s);
        f.edit->insertFromMimeData(&emptyText);
        QCOMPARE(f.edit->cleanedHtml(), u"abc"_s);
        QCOMPARE(f.edit->textCursor().selectedText(), u"abc"_s);
        QVERIFY(!f.edit->document()->isUndoAvailable());
    }

    void aPictureOrMarkupAloneOnTheClipboardLeavesTheSelectedText()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"abc"_s);
        f.edit->selectAll();
        QApplication::clipboard()->setImage(QImage(3, 3, QImage::Format_RGB32));
        f.edit->paste();
        auto *html = new QMimeData;
        html->setHtml(u"<b>x</b>"_s);
        QApplication::clipboard()->setMimeData(html);
        f.edit->paste();
        QCOMPARE(f.edit->cleanedHtml(), u"abc"_s);
        QCOMPARE(f.edit->textCursor().selectedText(), u"abc"_s);
    }

    void whatIsPastedTakesTheFormatAtTheCursor()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"H<sub>2</sub>O"_s);
        QTextCursor cursor = f.edit->textCursor();
        cursor.setPosition(2);
        f.edit->setTextCursor(cursor);
        insert(f.edit, u"3\n4"_s);
        QCOMPARE(f.edit->cleanedHtml(), u"H<sub>23 4</sub>O"_s);
        QCOMPARE(f.edit->textCursor().position(), 5);
    }

    void whatIsPastedReplacesTheSelectionAndCanBeUndone()
    {
        const Fixture f;
        f.edit->setCleanedHtml(u"abc"_s);
        QTextCursor cursor = f.edit->textCursor();
        cursor.setPosition(1);
        cursor.setPosition(2, QTextCursor::KeepAnchor);
        f.edit->setTextCursor(cursor);
        insert(f.edit, u" x\ny "_s);
        QCOMPARE(f.edit->cleanedHtml(), u"ax yc"_s);
        f.edit->undo();
        QCOMPARE(f.edit->cleanedHtml(), u"abc"_s);
    }

    void hugeTextIsPastedInTime_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qsizetype>("size");
        QTest::newRow("lines") << u"line\n"_s.repeated(20'000) << qsizetype(99'999);
        QTest::newRow("tag openings") << QString(100'000, u'<') << qsizetype(100'000);
        QTest::newRow("line ends") << QString(100'000, u'\n') << qsizetype(0);
    }
    void hugeTextIsPastedInTime()
    {
        QFETCH(QString, text);
        QFETCH(qsizetype, size);
        const Fixture f;
        QElapsedTimer clock;
        clock.start();
        insert(f.edit, text);
        QCOMPARE(f.edit->cleanedHtml().size(), size);
        QCOMPARE_LT(clock.elapsed(), 30'000);
    }

    // The height.

    void contentThatIsSetKeepsTheHeightUntilTheNextKey()
    {
        const Fixture f;
        const int oneLine = f.edit->height();
        QCOMPARE(oneLine, heightOf(*f.edit));
        f.edit->setCleanedHtml(u"x<br>y"_s);
        QCOMPARE(f.edit->cleanedHtml(), u"x<br>y"_s);
        QCOMPARE(f.edit->minimumHeight(), oneLine);
        QCOMPARE(f.edit->maximumHeight(), oneLine);

        QTest::keyClick(f.edit, Qt::Key_Right);
        QVERIFY(f.edit->minimumHeight() > oneLine);
        QCOMPARE(f.edit->minimumHeight(), heightOf(*f.edit));
        QCOMPARE(f.edit->maximumHeight(), heightOf(*f.edit));
        f.edit->setCleanedHtml(u"x"_s);
        QTest::keyClick(f.edit, Qt::Key_Right);
        QCOMPARE(f.edit->minimumHeight(), oneLine);
    }

    void returnKeepsTheHeight()
    {
        const Fixture f;
        const int oneLine = f.edit->height();
        f.edit->setCleanedHtml(u"x<br>y"_s);
        QTest::keyClick(f.edit, Qt::Key_Return);
        QCOMPARE(f.edit->minimumHeight(), oneLine);
    }

    void pastingTakesTheHeightAnew()
    {
        const Fixture f;
        const int oneLine = f.edit->height();
        f.edit->setCleanedHtml(u"x<br>y"_s);
        insert(f.edit, u"z"_s);
        QVERIFY(f.edit->minimumHeight() > oneLine);
        QCOMPARE(f.edit->minimumHeight(), heightOf(*f.edit));
    }

    void adjustHeightTakesTheHeightAnew()
    {
        const Fixture f;
        const int oneLine = f.edit->height();
        f.edit->setCleanedHtml(u"x<br>y<br>z"_s);
        f.edit->adjustHeight();
        QVERIFY(f.edit->minimumHeight() > oneLine);
        QCOMPARE(f.edit->minimumHeight(), heightOf(*f.edit));
        QCOMPARE(f.edit->maximumHeight(), heightOf(*f.edit));
    }

    void aLongLineIsNotWrapped()
    {
        const Fixture f;
        const int oneLine = f.edit->height();
        insert(f.edit, u"word "_s.repeated(1'000));
        QCOMPARE(f.edit->minimumHeight(), oneLine);
    }
};

QTEST_MAIN(TestSingleLineTextEdit)
#include "tst_singlelinetextedit.moc"

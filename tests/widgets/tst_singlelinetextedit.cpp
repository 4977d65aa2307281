// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/warnings.h"
#include "widgets/singlelinetextedit.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMetaObject>
#include <QMimeData>
#include <QScrollBar>
#include <QStyle>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolTip>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// Lets the tests call what Qt calls.
class Editor : public SingleLineTextEdit
{
public:
    using SingleLineTextEdit::insertFromMimeData;
    using SingleLineTextEdit::keyPressEvent;
    using SingleLineTextEdit::SingleLineTextEdit;
};

// Records the keys that its children ignored.
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

// A field that is narrower than the texts of the tests, and something else for the focus.
struct NarrowFixture : Fixture {
    QLineEdit *other = new QLineEdit(&window);

    NarrowFixture()
    {
        window.layout()->addWidget(other);
        edit->setFixedWidth(60);
        QApplication::processEvents();
    }
};

// Whether the first character, or the cursor, is within what can be seen.
bool showsPosition(const QTextEdit &edit, int position)
{
    QTextCursor cursor(edit.document());
    cursor.setPosition(position);
    const QRect rect = edit.cursorRect(cursor);
    return rect.right() >= 0 && rect.left() < edit.viewport()->width();
}

bool showsBeginning(const QTextEdit &edit)
{
    return showsPosition(edit, 0);
}

// What comes up when the mouse rests on the field.
QString tipOf(QTextEdit *edit)
{
    QToolTip::hideText();
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); }))
        QTest::qFail("the last tool tip stays", __FILE__, __LINE__);
    const QPoint place(10, 5);
    QHelpEvent event(QEvent::ToolTip, place, edit->viewport()->mapToGlobal(place));
    QApplication::sendEvent(edit->viewport(), &event);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

QString plain(const QString &tip)
{
    QTextDocument document;
    document.setHtml(tip);
    return document.toPlainText().remove(QChar(0x200b));
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

    // The style keeps a record for ever for each widget with a painted background but no sheet.
    void everyFieldHasItsSheetFromTheStartAndItsStyleWhenItIsShown()
    {
        QWidget window;
        QList<SingleLineTextEdit *> fields;
        auto *layout = new QVBoxLayout(&window);
        for (int i = 0; i < 3; ++i) {
            fields.append(new SingleLineTextEdit(&window));
            layout->addWidget(fields.last());
            QCOMPARE(fields.last()->styleSheet(),
                     u"background-color: white; border: 1px solid gray; padding: 2px;"_s);
        }
        window.show();
        const QImage first = fields.first()->grab().toImage();
        for (SingleLineTextEdit *field : fields) {
            QCOMPARE(field->grab().toImage(), first);
            QVERIFY(!field->testAttribute(Qt::WA_SetStyle));
            for (const QWidget *part : field->findChildren<QWidget *>())
                QCOMPARE(part->style(), field->style());
        }
        QCOMPARE(fields.last()->styleSheet(), fields.first()->styleSheet());
    }

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

    // What is seen of a text that is too long.

    void withoutTheFocusTheBeginningIsShown()
    {
        const NarrowFixture f;
        QTest::keyClicks(f.edit, u"8.88267(12) and more"_s);
        QVERIFY(!showsBeginning(*f.edit));
        f.other->setFocus();
        QVERIFY(showsBeginning(*f.edit));
        QCOMPARE(f.edit->textCursor().position(), 20);
        f.edit->setFocus(Qt::TabFocusReason);
        QVERIFY(showsPosition(*f.edit, 20));
        QTest::keyClick(f.edit, Qt::Key_Exclam);
        QCOMPARE(f.edit->cleanedHtml(), u"8.88267(12) and more!"_s);
        QVERIFY(f.edit->document()->isUndoAvailable());
    }

    void whateverChangesWithoutTheFocusTheBeginningIsShown_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("Latin") << u"8.88267(12) and more"_s << Qt::LeftToRight;
        QTest::newRow("Latin in a form from right to left")
            << u"8.88267(12) and more"_s << Qt::RightToLeft;
        QTest::newRow("Hebrew") << u"ספקטרום מים ספקטרום"_s << Qt::LeftToRight;
        QTest::newRow("Hebrew in a form from right to left")
            << u"ספקטרום מים ספקטרום"_s << Qt::RightToLeft;
    }
    void whateverChangesWithoutTheFocusTheBeginningIsShown()
    {
        QFETCH(QString, text);
        QFETCH(Qt::LayoutDirection, direction);
        const NarrowFixture f;
        f.edit->setLayoutDirection(direction);
        f.other->setFocus();
        const auto check = [&f](const char *what) {
            QApplication::processEvents();
            QVERIFY2(!showsPosition(*f.edit, f.edit->document()->characterCount() - 1), what);
            QVERIFY2(showsBeginning(*f.edit), what);
        };
        f.edit->setCleanedHtml(text);
        check("filled");
        f.edit->moveCursor(QTextCursor::End);
        f.edit->insertPlainText(u" "_s + text);
        f.edit->ensureCursorVisible();
        check("changed");
        for (const int width : {90, 40, 60}) {
            f.edit->setFixedWidth(width);
            check("resized");
        }
        QFont font = f.edit->font();
        for (const int size : {20, 7, 12}) {
            font.setPointSize(size);
            f.edit->setFont(font);
            check("in another font");
        }
        f.edit->setLayoutDirection(direction == Qt::LeftToRight ? Qt::RightToLeft
                                                                : Qt::LeftToRight);
        check("turned");
    }

    // The text must not move between being seen and being clicked.
    void aClickHitsTheCharacterThatWasSeen()
    {
        const NarrowFixture f;
        QTest::keyClicks(f.edit, u"8.88267(12) and more"_s);
        f.other->setFocus();
        QVERIFY(showsBeginning(*f.edit));
        QTextCursor second(f.edit->document());
        second.setPosition(2);
        QTest::mouseClick(f.edit->viewport(), Qt::LeftButton, {},
                          f.edit->cursorRect(second).center());
        QVERIFY(f.edit->hasFocus());
        QCOMPARE(f.edit->textCursor().position(), 2);
    }

    void theToolTipHasTheWholeTextWheneverItDoesNotFit()
    {
        const NarrowFixture f;
        const QString text = u"8.88267(12)"_s;
        f.edit->setCleanedHtml(text);
        QCOMPARE(plain(tipOf(f.edit)), text);
        f.edit->setFixedWidth(300);
        QCOMPARE(tipOf(f.edit), QString());
        QFont large = f.edit->font();
        large.setPointSize(60);
        const QFont usual = f.edit->font();
        f.edit->setFont(large);
        QCOMPARE(plain(tipOf(f.edit)), text);
        f.edit->setFont(usual);
        QCOMPARE(tipOf(f.edit), QString());
        f.edit->setFixedWidth(60);
        QCOMPARE(plain(tipOf(f.edit)), text);
        f.edit->setCleanedHtml(u"8.9"_s);
        QCOMPARE(tipOf(f.edit), QString());
        f.edit->setCleanedHtml(u"8<br>9"_s);
        QCOMPARE(plain(tipOf(f.edit)), u"8\n9"_s);
        // While it is being typed, too.
        f.edit->selectAll();
        QTest::keyClicks(f.edit, u"8.88267(13)"_s);
        QCOMPARE(plain(tipOf(f.edit)), u"8.88267(13)"_s);
    }

    void theToolTipHasSubscriptsAndShowsMarkupAsText()
    {
        const NarrowFixture f;
        f.edit->setCleanedHtml(
            u"10<sup>3</sup> of C<sub>2</sub>H<sub>2</sub> &lt;img src=x&gt; a&amp;b"_s);
        const QString tip = tipOf(f.edit);
        QCOMPARE(plain(tip), u"103 of C2H2 <img src=x> a&b"_s);
        QVERIFY(tip.contains(u"10<sup>3</sup>"_s));
        QVERIFY(tip.contains(u"C<sub>2</sub>H<sub>2</sub>"_s));
        QVERIFY(!tip.contains(u"<img"_s));
    }

    void theToolTipKeepsWhatElseIsSaidOfTheField()
    {
        const NarrowFixture f;
        f.edit->setToolTip(u"Not < a number."_s);
        f.edit->setCleanedHtml(u"8.88267(12)"_s);
        QCOMPARE(plain(tipOf(f.edit)), u"Not < a number.\n8.88267(12)"_s);
        f.edit->setToolTip(u"<b>Not</b> a number."_s);
        QCOMPARE(plain(tipOf(f.edit)), u"Not a number.\n8.88267(12)"_s);
        QCOMPARE(f.edit->toolTip(), u"<b>Not</b> a number."_s);
        f.edit->setCleanedHtml(u"8"_s);
        QCOMPARE(plain(tipOf(f.edit)), u"Not a number."_s);
        f.edit->setToolTip({});
        QCOMPARE(tipOf(f.edit), QString());
    }

    void theToolTipOfAHugeTextHasItsBeginning()
    {
        const NarrowFixture f;
        f.edit->setCleanedHtml(u"word "_s.repeated(20'000));
        QElapsedTimer clock;
        clock.start();
        const QString tip = plain(tipOf(f.edit));
        QVERIFY(tip.startsWith(u"word word"_s));
        QVERIFY(tip.endsWith(u'…'));
        QVERIFY(tip.size() < 6'000);
        QCOMPARE_LT(clock.elapsed(), 5'000);
    }

    void aToolTipOfOneLongWordIsNoWiderThanTheScreen()
    {
        const NarrowFixture f;
        f.edit->setCleanedHtml(u"InChI=1S/C60/c1-2-5-6-3(1)8-12-10-4(1)9"_s
                               + u"-11-7(2)17-21-13(5)23"_s.repeated(40));
        QCOMPARE(plain(tipOf(f.edit)), f.edit->toPlainText());
        const QWidgetList widgets = QApplication::topLevelWidgets();
        const auto tip = std::find_if(widgets.begin(), widgets.end(), [](const QWidget *widget) {
            return widget->inherits("QTipLabel") && widget->isVisible();
        });
        QVERIFY(tip != widgets.end());
        QVERIFY((*tip)->width() <= (*tip)->screen()->availableSize().width());
    }

    void aLongLineIsNotWrapped()
    {
        const Fixture f;
        const int oneLine = f.edit->height();
        insert(f.edit, u"word "_s.repeated(1'000));
        QCOMPARE(f.edit->minimumHeight(), oneLine);
    }

    void aHugeTextThatIsPastedIsInItAsAWhole()
    {
        Fixture f;
        insert(f.edit, u"two  words\n"_s.repeated(500'000));
        QCOMPARE(f.edit->cleanedHtml(), u"two words "_s.repeated(500'000).chopped(1));
        QCOMPARE_LT(f.edit->document()->characterCount(), 300'000);
        QCOMPARE(f.edit->document()->blockCount(), 1);
        QVERIFY(tipOf(f.edit).contains(u"too long"_s));
    }
};

QTEST_MAIN(TestSingleLineTextEdit)
#include "tst_singlelinetextedit.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
// Which typed text becomes subscript, superscript or normal.
#include "support/warnings.h"
#include "widgets/singlelinetextedit.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

// A field with this content and this selection, or its cursor there.
struct Fixture {
    SingleLineTextEdit edit;

    explicit Fixture(const QString &markup, int anchor, int position)
    {
        edit.show();
        edit.setCleanedHtml(markup);
        select(anchor, position);
    }
    void select(int anchor, int position)
    {
        QTextCursor cursor = edit.textCursor();
        cursor.setPosition(anchor);
        cursor.setPosition(position, QTextCursor::KeepAnchor);
        edit.setTextCursor(cursor);
    }
    void commit(const QString &text, int from = 0, int length = 0)
    {
        QInputMethodEvent event;
        event.setCommitString(text, from, length);
        QCoreApplication::sendEvent(&edit, &event);
    }
    void compose(const QString &text)
    {
        QInputMethodEvent event(text, {});
        QCoreApplication::sendEvent(&edit, &event);
    }
};

} // namespace

class TestTypedAlignment : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void typingTakesTheAlignmentOfItsPlace_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<int>("anchor");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("after"); // "xy" was typed
        const auto row = [](const char *name, const QString &before, int anchor, int position,
                            const QString &after) {
            QTest::newRow(name) << before << anchor << position << after;
        };
        row("nothing there", u""_s, 0, 0, u"xy"_s);
        row("normal text", u"ab"_s, 1, 1, u"axyb"_s);
        row("behind a subscript at the end", u"H<sub>2</sub>"_s, 2, 2, u"H<sub>2</sub>xy"_s);
        row("behind a subscript", u"H<sub>2</sub>O"_s, 2, 2, u"H<sub>2</sub>xyO"_s);
        row("before a subscript", u"H<sub>2</sub>O"_s, 1, 1, u"Hxy<sub>2</sub>O"_s);
        row("within a subscript", u"C<sub>12</sub>"_s, 2, 2, u"C<sub>1xy2</sub>"_s);
        row("within a superscript", u"<sup>13</sup>C"_s, 1, 1, u"<sup>1xy3</sup>C"_s);
        row("behind a superscript", u"<sup>13</sup>C"_s, 2, 2, u"<sup>13</sup>xyC"_s);
        row("between sub and sup", u"a<sub>1</sub><sup>2</sup>"_s, 2, 2,
            u"a<sub>1</sub>xy<sup>2</sup>"_s);
        row("at the end of a line", u"<sub>1</sub><br>b"_s, 1, 1, u"<sub>1</sub>xy<br>b"_s);
        row("over all of it", u"H<sub>2O</sub>"_s, 0, 3, u"xy"_s);
        row("over all of it, backwards", u"<sub>2</sub>H"_s, 2, 0, u"xy"_s);
        row("over sub and sup", u"a<sub>1</sub><sup>2</sup>b"_s, 1, 3, u"axyb"_s);
        row("over a subscript", u"C<sub>6</sub>H"_s, 1, 2, u"C<sub>xy</sub>H"_s);
        row("over a subscript, backwards", u"C<sub>6</sub>H"_s, 2, 1, u"C<sub>xy</sub>H"_s);
        row("over a part of one", u"C<sub>123</sub>"_s, 2, 3, u"C<sub>1xy3</sub>"_s);
        row("over the end of one", u"C<sub>12</sub>"_s, 2, 3, u"C<sub>1xy</sub>"_s);
        row("over a whole field of it", u"<sub>H2O</sub>"_s, 0, 3, u"<sub>xy</sub>"_s);
        row("over normal text behind one", u"C<sub>6</sub>H"_s, 2, 3, u"C<sub>6</sub>xy"_s);
        row("the same, backwards", u"C<sub>6</sub>H"_s, 3, 2, u"C<sub>6</sub>xy"_s);
        row("over lines", u"<sub>1</sub><br><sub>2</sub>"_s, 0, 3, u"xy"_s);
        row("over paragraphs", u"<p><sub>1</sub></p><p><sub>2</sub></p>"_s, 0, 3,
            u"<sub>xy</sub>"_s);
        row("over unlike lines", u"<sub>1</sub><br>2"_s, 0, 3, u"xy"_s);
    }

    void typingTakesTheAlignmentOfItsPlace()
    {
        QFETCH(QString, before);
        QFETCH(int, anchor);
        QFETCH(int, position);
        QFETCH(QString, after);
        Fixture f(before, anchor, position);
        const QString was = f.edit.cleanedHtml();
        QTest::keyClicks(&f.edit, u"xy"_s);
        QCOMPARE(f.edit.cleanedHtml(), after);
        // One step, whatever was replaced.
        f.edit.undo();
        QCOMPARE(f.edit.cleanedHtml(), was);
        f.edit.redo();
        QCOMPARE(f.edit.cleanedHtml(), after);

        Fixture committed(before, anchor, position);
        committed.commit(u"x"_s);
        committed.commit(u"y"_s);
        QCOMPARE(committed.edit.cleanedHtml(), after);

        Fixture composed(before, anchor, position);
        composed.compose(u"k"_s);
        composed.compose(u"ka"_s);
        composed.commit(u"xy"_s);
        QCOMPARE(composed.edit.cleanedHtml(), after);
        while (composed.edit.document()->isUndoAvailable())
            composed.edit.undo();
        QCOMPARE(composed.edit.cleanedHtml(), was);
    }

    void replacingByAnInputMethodTakesTheAlignmentOfItsPlace()
    {
        Fixture f(u"H<sub>2</sub>ab"_s, 4, 4);
        f.commit(u"xy"_s, -2, 2);
        QCOMPARE(f.edit.cleanedHtml(), u"H<sub>2</sub>xy"_s);
    }

    void aSubscriptIsLeftByMovingToItsEnd()
    {
        Fixture f(u"H2"_s, 2, 1);
        QTextCharFormat format;
        format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
        f.edit.mergeCurrentCharFormat(format);
        QTest::keyClick(&f.edit, Qt::Key_Right);
        QTest::keyClick(&f.edit, Qt::Key_O);
        QCOMPARE(f.edit.cleanedHtml(), u"H<sub>2</sub>o"_s);
        f.edit.selectAll();
        QTest::keyClicks(&f.edit, u"H2O"_s);
        QCOMPARE(f.edit.cleanedHtml(), u"H2O"_s);
    }

    // As long as the cursor stays behind it, corrections included.
    void whatIsTypedGoesOnWithWhatWasTyped()
    {
        Fixture f(u"C<sub>6</sub>H"_s, 1, 2);
        QTest::keyClicks(&f.edit, u"13"_s);
        QTest::keyClick(&f.edit, Qt::Key_Backspace);
        QTest::keyClick(&f.edit, Qt::Key_2);
        QCOMPARE(f.edit.cleanedHtml(), u"C<sub>12</sub>H"_s);
        for (int i = 0; i < 2; ++i)
            QTest::keyClick(&f.edit, Qt::Key_Backspace);
        QTest::keyClicks(&f.edit, u"12"_s);
        QCOMPARE(f.edit.cleanedHtml(), u"C<sub>12</sub>H"_s);
        QTest::keyClick(&f.edit, Qt::Key_Left);
        QTest::keyClick(&f.edit, Qt::Key_Right);
        QTest::keyClick(&f.edit, Qt::Key_O);
        QCOMPARE(f.edit.cleanedHtml(), u"C<sub>12</sub>oH"_s);
        // Reaching a run's end by deletion does not continue the run.
        QTest::keyClick(&f.edit, Qt::Key_Backspace);
        QTest::keyClick(&f.edit, Qt::Key_N);
        QCOMPARE(f.edit.cleanedHtml(), u"C<sub>12</sub>nH"_s);
    }

    void aChosenAlignmentIsTaken()
    {
        Fixture f(u"H"_s, 1, 1);
        for (const auto alignment :
             {QTextCharFormat::AlignSubScript, QTextCharFormat::AlignSuperScript}) {
            QTextCharFormat format;
            format.setVerticalAlignment(alignment);
            f.edit.mergeCurrentCharFormat(format);
            QTest::keyClicks(&f.edit, u"12"_s);
        }
        QCOMPARE(f.edit.cleanedHtml(), u"H<sub>12</sub><sup>12</sup>"_s);
    }

    // An input method that just stops leaves its text behind.
    void leavingTheFieldEndsWhatIsComposed()
    {
        Fixture f(u"C<sub>6</sub>H"_s, 1, 2);
        f.compose(u"k"_s);
        QFocusEvent event(QEvent::FocusOut);
        QCoreApplication::sendEvent(&f.edit, &event);
        f.edit.setCleanedHtml(u"C<sub>6</sub>H"_s);
        f.select(3, 3);
        f.commit(u"x"_s);
        QCOMPARE(f.edit.cleanedHtml(), u"C<sub>6</sub>Hx"_s);
    }

    // Composing goes on while a menu is open.
    void aMenuDoesNotEndWhatIsComposed()
    {
        Fixture f(u"C<sub>6</sub>H"_s, 1, 2);
        f.compose(u"k"_s);
        QFocusEvent leaving(QEvent::FocusOut, Qt::PopupFocusReason);
        QCoreApplication::sendEvent(&f.edit, &leaving);
        QFocusEvent coming(QEvent::FocusIn, Qt::PopupFocusReason);
        QCoreApplication::sendEvent(&f.edit, &coming);
        f.commit(u"k"_s);
        QCOMPARE(f.edit.cleanedHtml(), u"C<sub>k</sub>H"_s);
    }

    // Composed text is shown in the line in which it began.
    void aCompositionThatEndsALineLeavesNothingInIt()
    {
        CleanTextEdit edit;
        edit.show();
        edit.setCleanedHtml(u"C<sub>6</sub>H"_s);
        QTextCursor cursor = edit.textCursor();
        cursor.setPosition(2);
        edit.setTextCursor(cursor);
        QInputMethodEvent composing(u"k"_s, {});
        QCoreApplication::sendEvent(&edit, &composing);
        QCOMPARE(edit.document()->firstBlock().layout()->preeditAreaText(), u"k"_s);
        QInputMethodEvent committing;
        committing.setCommitString(u"ab\n"_s);
        QCoreApplication::sendEvent(&edit, &committing);
        QCOMPARE(edit.cleanedHtml(), u"C<sub>6</sub>ab<br>H"_s);
        QCOMPARE(edit.document()->firstBlock().layout()->preeditAreaText(), QString());
    }

    void leavingTheFieldEndsWhatIsTyped()
    {
        Fixture f(u"C<sub>6</sub>H"_s, 1, 2);
        QTest::keyClick(&f.edit, Qt::Key_1);
        QFocusEvent event(QEvent::FocusOut);
        QCoreApplication::sendEvent(&f.edit, &event);
        QTest::keyClick(&f.edit, Qt::Key_2);
        QCOMPARE(f.edit.cleanedHtml(), u"C<sub>1</sub>2H"_s);
    }

    void aReturnThatDoesNothingIsForgotten()
    {
        Fixture f(u"C<sub>6</sub>H"_s, 1, 2);
        QTest::keyClick(&f.edit, Qt::Key_1);
        QTest::keyClick(&f.edit, Qt::Key_Return);
        QTest::keyClick(&f.edit, Qt::Key_Right);
        QTest::keyClick(&f.edit, Qt::Key_2);
        QCOMPARE(f.edit.cleanedHtml(), u"C<sub>1</sub>H2"_s);
    }

    void aNewLineIsNormal()
    {
        CleanTextEdit edit;
        edit.setCleanedHtml(u"H<sub>2</sub>"_s);
        edit.moveCursor(QTextCursor::End);
        QTest::keyClick(&edit, Qt::Key_Return);
        QTest::keyClicks(&edit, u"xy"_s);
        QCOMPARE(edit.cleanedHtml(), u"H<sub>2</sub><br>xy"_s);
    }

    void pastingTakesTheFormatAtTheCursor()
    {
        Fixture f(u"H<sub>2</sub>"_s, 2, 2);
        QTest::keySequence(&f.edit, QKeySequence(u"Ctrl+K"_s)); // does nothing
        QGuiApplication::clipboard()->setText(u"3"_s);
        f.edit.paste();
        QCOMPARE(f.edit.cleanedHtml(), u"H<sub>23</sub>"_s);
        QGuiApplication::clipboard()->clear();
    }

    void aFieldThatIsReadOnlyTakesNothing()
    {
        Fixture f(u"H<sub>2</sub>O"_s, 0, 3);
        f.edit.setReadOnly(true);
        QTest::keyClicks(&f.edit, u"xy"_s);
        QCOMPARE(f.edit.cleanedHtml(), u"H<sub>2</sub>O"_s);
        QVERIFY(!f.edit.document()->isUndoAvailable());
    }

    void theHeightFollows()
    {
        Fixture f(u"H<sub>2O</sub><br>b"_s, 0, 5);
        const int one = SingleLineTextEdit().height();
        f.edit.adjustHeight();
        QVERIFY(f.edit.height() > one);
        QTest::keyClick(&f.edit, Qt::Key_X);
        QCOMPARE(f.edit.cleanedHtml(), u"x"_s);
        QCOMPARE(f.edit.height(), static_cast<int>(f.edit.document()->size().height()) + 5);
        QVERIFY(f.edit.height() <= one);
    }
};

QTEST_MAIN(TestTypedAlignment)
#include "tst_typedalignment.moc"

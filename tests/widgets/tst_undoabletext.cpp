// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/warnings.h"
#include "widgets/undoabletext.h"

#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

class TestUndoableText : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void theWholeTextIsReplacedInOneStep_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::newRow("word") << u"old"_s << u"new"_s;
        QTest::newRow("lines") << u"1 2\n3 4\n"_s << u"5 6\n7 8\n9 10"_s;
        QTest::newRow("fewer lines") << u"1\n2\n3"_s << u"4"_s;
        QTest::newRow("emptied") << u"1 2\n3 4"_s << u""_s;
        QTest::newRow("null text") << u"1 2\n3 4"_s << QString();
        QTest::newRow("filled") << u""_s << u"1 2\n3 4"_s;
        QTest::newRow("line ends alone") << u"\n\n"_s << u"\n"_s;
        QTest::newRow("signs") << u"<b>x</b>"_s << u"<sub>&amp;</sub>"_s;
        QTest::newRow("non-ASCII") << u"α\nש"_s << u"数据\n🧪 e\u0301"_s;
        QTest::newRow("huge") << u"12.5, 0.25\n"_s.repeated(10'000) << QString(100'000, u'<');
    }
    void theWholeTextIsReplacedInOneStep()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QPlainTextEdit editor;
        editor.setPlainText(before);
        const int steps = editor.document()->availableUndoSteps();
        replaceTextUndoably(&editor, after);
        QCOMPARE(editor.toPlainText(), after.isNull() ? u""_s : after);
        editor.undo();
        QCOMPARE(editor.toPlainText(), before);
        QCOMPARE(editor.document()->availableUndoSteps(), steps);
        QVERIFY(!editor.document()->isUndoAvailable());
        editor.redo();
        QCOMPARE(editor.toPlainText(), after.isNull() ? u""_s : after);
        QVERIFY(!editor.document()->isRedoAvailable());
    }

    void anEmptyTextInAnEmptyEditorChangesNothing()
    {
        QPlainTextEdit editor;
        replaceTextUndoably(&editor, {});
        QCOMPARE(editor.toPlainText(), u""_s);
        editor.undo();
        QCOMPARE(editor.toPlainText(), u""_s);
    }

    void whatWasTypedBeforeCanStillBeUndone()
    {
        QPlainTextEdit editor;
        QTest::keyClicks(&editor, u"typed"_s);
        replaceTextUndoably(&editor, u"replaced"_s);
        editor.undo();
        QCOMPARE(editor.toPlainText(), u"typed"_s);
        editor.undo();
        QCOMPARE(editor.toPlainText(), u""_s);
        editor.redo();
        editor.redo();
        QCOMPARE(editor.toPlainText(), u"replaced"_s);
    }

    void whatIsTypedAfterwardsIsAStepOfItsOwn()
    {
        QPlainTextEdit editor;
        editor.setPlainText(u"old"_s);
        replaceTextUndoably(&editor, u"new"_s);
        QTest::keyClicks(&editor, u"x"_s);
        QCOMPARE(editor.toPlainText(), u"xnew"_s);
        editor.undo();
        QCOMPARE(editor.toPlainText(), u"new"_s);
        editor.undo();
        QCOMPARE(editor.toPlainText(), u"old"_s);
    }

    void theCursorGoesToTheStartWithoutASelection()
    {
        QPlainTextEdit editor;
        editor.setPlainText(u"1 2\n3 4"_s);
        editor.selectAll();
        replaceTextUndoably(&editor, u"5 6\n7 8"_s);
        QCOMPARE(editor.textCursor().position(), 0);
        QVERIFY(!editor.textCursor().hasSelection());
    }

    void theChangeIsAnnounced()
    {
        QPlainTextEdit editor;
        editor.setPlainText(u"old"_s);
        const QSignalSpy changes(&editor, &QPlainTextEdit::textChanged);
        replaceTextUndoably(&editor, u"new"_s);
        QCOMPARE(changes.count(), 1);
        QVERIFY(editor.document()->isModified());
    }

    void aReadOnlyEditorIsFilledToo()
    {
        QPlainTextEdit editor;
        editor.setReadOnly(true);
        replaceTextUndoably(&editor, u"new"_s);
        QCOMPARE(editor.toPlainText(), u"new"_s);
    }
};

QTEST_MAIN(TestUndoableText)
#include "tst_undoabletext.moc"

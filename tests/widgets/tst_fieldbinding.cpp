// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/warnings.h"
#include "widgets/cleantextedit.h"
#include "widgets/fieldbinding.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QDataWidgetMapper>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// Two rows of three columns; can refuse or change what is written.
class Model : public QStandardItemModel
{
public:
    using QStandardItemModel::QStandardItemModel;

    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        ++writes;
        if (refuses)
            return false;
        return QStandardItemModel::setData(index, value.toString().left(longest), role);
    }

    int writes = 0;
    bool refuses = false;
    int longest = 1'000'000;
};

enum class Shown { No, Yes };

// Two mapped editors and one that is not, in a window that is shown and active. The cells of the
// first row are "first", "second" and the number 12.5, the last one without an editor.
struct Fixture {
    Model model{2, 3};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QWidget window;
    CleanTextEdit *first = new CleanTextEdit(&window);
    CleanTextEdit *second = new CleanTextEdit(&window);
    CleanTextEdit *unmapped = new CleanTextEdit(&window);
    QLineEdit *line = new QLineEdit(&window);
    QDataWidgetMapper mapper;
    FieldBinding *binding = nullptr;

    explicit Fixture(Shown shown = Shown::Yes)
    {
        auto *layout = new QVBoxLayout(&window);
        for (QWidget *widget : {static_cast<QWidget *>(first), static_cast<QWidget *>(second),
                                static_cast<QWidget *>(unmapped), static_cast<QWidget *>(line)})
            layout->addWidget(widget);
        model.setItem(0, 0, new QStandardItem(u"first"_s));
        model.setItem(0, 1, new QStandardItem(u"second"_s));
        model.setItem(1, 0, new QStandardItem(u"other row"_s));
        binding = new FieldBinding(&mapper, &model, &window);
        mapper.addMapping(first, 0, "cleanedHtml");
        mapper.addMapping(second, 1, "cleanedHtml");
        mapper.toFirst();
        window.resize(300, 400);
        if (shown == Shown::Yes) {
            window.show();
            window.activateWindow();
            if (!QTest::qWaitForWindowActive(&window))
                QTest::qFail("the window does not become active", __FILE__, __LINE__);
        }
        first->setFocus();
    }

    void commit() { binding->commitEdits(); }
    [[nodiscard]] QVariant value(int column, int row = 0) const
    {
        return model.data(model.index(row, column));
    }
};

// As dictation and screen readers see an editor.
QAccessibleEditableTextInterface *accessibleText(QWidget *editor)
{
    return QAccessible::queryAccessibleInterface(editor)->editableTextInterface();
}

void select(QTextEdit *editor, int anchor, int position)
{
    QTextCursor cursor = editor->textCursor();
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    editor->setTextCursor(cursor);
}

} // namespace

class TestFieldBinding : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void aTextTooLongToBeShownIsWrittenOnlyWhenEditedAndThenWhole()
    {
        Fixture f;
        f.model.longest = 10'000'000;
        const QString text =
            u"H<SUB>2</sub>  O\n&amp;&#8239;<i>\ufffc\u2028\t<br/>"_s.repeated(50'000);
        QVERIFY(f.model.setData(f.model.index(0, 0), text, Qt::EditRole));
        f.model.writes = 0;
        QTest::keyClick(f.first, Qt::Key_End);
        f.second->setFocus();
        f.commit();
        f.binding->submit();
        QCOMPARE(f.model.writes, 0);
        QVERIFY(f.value(0).toString() == text);

        f.first->setFocus();
        f.first->moveCursor(QTextCursor::Start);
        QTest::keyClick(f.first, Qt::Key_Delete);
        QTest::keyClicks(f.first, u"D"_s);
        f.second->setFocus();
        QCOMPARE(f.model.writes, 1);
        QVERIFY(f.value(0).toString() == u'D' + text.sliced(1));
        f.first->undo();
        f.first->undo();
        f.commit();
        QVERIFY(f.value(0).toString() == text);
    }

    void whatWasTypedIsWrittenOnce()
    {
        Fixture f;
        const QSignalSpy changes(&f.model, &QAbstractItemModel::dataChanged);
        QTest::keyClicks(f.first, u"my "_s);
        QCOMPARE(f.value(0), QVariant(u"first"_s));
        f.commit();
        QCOMPARE(f.value(0), QVariant(u"my first"_s));
        QCOMPARE(f.first->cleanedHtml(), u"my first"_s);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.at(0).at(0).toModelIndex(), f.model.index(0, 0));
        f.commit();
        QCOMPARE(f.model.writes, 1);
    }

    void markupIsWritten()
    {
        Fixture f;
        QTextCharFormat low;
        low.setVerticalAlignment(QTextCharFormat::AlignSubScript);
        f.first->moveCursor(QTextCursor::End);
        f.first->mergeCurrentCharFormat(low);
        QTest::keyClicks(f.first, u"2"_s);
        f.commit();
        QCOMPARE(f.value(0), QVariant(u"first<sub>2</sub>"_s));
        QCOMPARE(f.first->cleanedHtml(), u"first<sub>2</sub>"_s);
    }

    void theFocusStays()
    {
        Fixture f;
        QTest::keyClicks(f.first, u"my "_s);
        f.commit();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(QApplication::focusWidget(), f.first);
        QTest::keyClicks(f.first, u"very "_s);
        QCOMPARE(f.first->cleanedHtml(), u"my very first"_s);
        f.commit();
        QCOMPARE(f.value(0), QVariant(u"my very first"_s));
    }

    void cursorAndSelectionStay_data()
    {
        QTest::addColumn<int>("anchor");
        QTest::addColumn<int>("position");
        QTest::newRow("start") << 0 << 0;
        QTest::newRow("inside") << 3 << 3;
        QTest::newRow("end") << 6 << 6;
        QTest::newRow("selection") << 1 << 4;
        QTest::newRow("selection backwards") << 4 << 1;
        QTest::newRow("everything") << 0 << 6;
        QTest::newRow("everything backwards") << 6 << 0;
    }
    void cursorAndSelectionStay()
    {
        QFETCH(int, anchor);
        QFETCH(int, position);
        Fixture f;
        QTest::keyClicks(f.first, u"x"_s);
        select(f.first, anchor, position);
        f.commit();
        QCOMPARE(f.value(0), QVariant(u"xfirst"_s));
        QCOMPARE(f.first->textCursor().anchor(), anchor);
        QCOMPARE(f.first->textCursor().position(), position);
    }

    void theScrollPositionStays()
    {
        Fixture f;
        f.first->setLineWrapMode(QTextEdit::NoWrap);
        f.model.setData(f.model.index(0, 0),
                        QString(u"word "_s.repeated(200) + u"<br>line"_s.repeated(200)),
                        Qt::EditRole);
        f.model.writes = 0;
        QTest::keyClicks(f.first, u"x"_s);
        f.first->verticalScrollBar()->setValue(57);
        f.first->horizontalScrollBar()->setValue(43);
        QCOMPARE(f.first->verticalScrollBar()->value(), 57);
        f.commit();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(f.first->verticalScrollBar()->value(), 57);
        QCOMPARE(f.first->horizontalScrollBar()->value(), 43);
    }

    void theEditorKeepsItsTextAndSelectionWhereTheModelStoresAnother()
    {
        Fixture f;
        f.model.longest = 3;
        QTest::keyClicks(f.first, u"x"_s);
        select(f.first, 2, 6);
        f.commit();
        QCOMPARE(f.value(0), QVariant(u"xfi"_s));
        QCOMPARE(f.first->cleanedHtml(), u"xfirst"_s);
        QCOMPARE(f.first->textCursor().anchor(), 2);
        QCOMPARE(f.first->textCursor().position(), 6);
    }

    void aTextThatTheModelRefusesStaysInTheEditor()
    {
        Fixture f;
        f.model.refuses = true;
        QTest::keyClicks(f.first, u"my "_s);
        f.commit();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(f.value(0), QVariant(u"first"_s));
        QCOMPARE(f.first->cleanedHtml(), u"my first"_s);
        QCOMPARE(f.first->textCursor().position(), 3);
    }

    void anUntouchedEditorIsNotWritten()
    {
        Fixture f;
        select(f.first, 1, 3);
        f.commit();
        QCOMPARE(f.model.writes, 0);
        QCOMPARE(f.first->textCursor().selectedText(), u"ir"_s);
    }

    void whatWasTypedAndUndoneIsNotWritten()
    {
        Fixture f;
        QTest::keyClicks(f.first, u"x"_s);
        f.first->undo();
        QCOMPARE(f.first->cleanedHtml(), u"first"_s);
        f.commit();
        QCOMPARE(f.model.writes, 0);
    }

    void aNumberThatIsShownOnlyStaysANumber()
    {
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), 12.5);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        CleanTextEdit editor;
        QDataWidgetMapper mapper;
        auto *binding = new FieldBinding(&mapper, &model, &editor);
        mapper.addMapping(&editor, 0, "cleanedHtml");
        mapper.toFirst();
        editor.show();
        editor.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&editor));
        editor.setFocus();
        QCOMPARE(editor.cleanedHtml(), u"12.5"_s);

        binding->commitEdits();
        QCOMPARE(model.data(model.index(0, 0)).metaType(), QMetaType::fromType<double>());
        QTest::keyClicks(&editor, u"1"_s);
        binding->commitEdits();
        QCOMPARE(model.data(model.index(0, 0)), QVariant(u"112.5"_s));
    }

    void everyEditorThatWasChangedIsWrittenAndNoOther_data()
    {
        QTest::addColumn<bool>("changesFirst");
        QTest::addColumn<bool>("changesSecond");
        QTest::newRow("the one with the focus") << true << false;
        QTest::newRow("one without the focus") << false << true;
        QTest::newRow("both") << true << true;
        QTest::newRow("none") << false << false;
    }
    void everyEditorThatWasChangedIsWrittenAndNoOther()
    {
        QFETCH(bool, changesFirst);
        QFETCH(bool, changesSecond);
        Fixture f;
        if (changesFirst)
            QTest::keyClicks(f.first, u"my "_s);
        if (changesSecond)
            f.second->insertPlainText(u"my "_s);
        f.commit();
        QCOMPARE(f.model.writes, int(changesFirst) + int(changesSecond));
        QCOMPARE(f.value(0), QVariant(changesFirst ? u"my first"_s : u"first"_s));
        QCOMPARE(f.value(1), QVariant(changesSecond ? u"my second"_s : u"second"_s));
        f.commit();
        QCOMPARE(f.model.writes, int(changesFirst) + int(changesSecond));
    }

    void aTextThatItsEditorCannotShowIsKeptWhereTheEditorShowsWhatItDid_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("raw <") << u"m/z <40"_s;
        QTest::newRow("blanks") << u"two  blanks"_s;
        QTest::newRow("a line feed") << u"two\nlines"_s;
        QTest::newRow("other tags") << u"<b>bold</b>"_s;
    }
    void aTextThatItsEditorCannotShowIsKeptWhereTheEditorShowsWhatItDid()
    {
        QFETCH(QString, text);
        Fixture f;
        f.model.setData(f.model.index(0, 0), text, Qt::EditRole);
        f.model.setData(f.model.index(0, 1), text, Qt::EditRole);
        f.model.writes = 0;
        f.commit();
        QCOMPARE(f.model.writes, 0);
        for (CleanTextEdit *editor : {f.first, f.second}) {
            editor->insertPlainText(u"x"_s);
            editor->textCursor().deletePreviousChar();
            QVERIFY(editor->document()->isModified());
        }
        f.commit();
        QCOMPARE(f.model.writes, 0);
        QCOMPARE(f.value(0), QVariant(text));
        QCOMPARE(f.value(1), QVariant(text));
    }

    // Committed text stays as typed; a refill would change it.
    void aDeletionThatLooksLikeARefillIsWritten_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("left");
        QTest::addColumn<bool>("byLeaving");
        for (const bool byLeaving : {false, true}) {
            const char *how = byLeaving ? "by leaving" : "in the field";
            QTest::addRow("less than, %s", how) << u"E<8"_s << 1 << 3 << u"E"_s << byLeaving;
            QTest::addRow("two blanks, %s", how)
                << u"two  blanks"_s << 3 << 4 << u"two blanks"_s << byLeaving;
            QTest::addRow("entity, %s", how) << u"a&lt;b"_s << 2 << 5 << u"a&b"_s << byLeaving;
        }
    }
    void aDeletionThatLooksLikeARefillIsWritten()
    {
        QFETCH(QString, typed);
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(QString, left);
        QFETCH(bool, byLeaving);
        Fixture f;
        const auto commit = [&f, byLeaving] {
            if (!byLeaving)
                return f.commit();
            f.line->setFocus();
            f.first->setFocus();
        };
        f.first->selectAll();
        QTest::keyClicks(f.first, typed);
        commit();
        QCOMPARE(f.value(0), QVariant(typed));
        select(f.first, from, to);
        QTest::keyClick(f.first, Qt::Key_Delete);
        commit();
        QCOMPARE(f.value(0), QVariant(left));
        f.first->undo();
        QCOMPARE(f.first->cleanedHtml(), typed);
        commit();
        QCOMPARE(f.value(0), QVariant(typed));
        QCOMPARE(f.model.writes, 3);
        commit();
        QCOMPARE(f.model.writes, 3);
    }

    void escapeShowsWhatTheModelHoldsAndWritesNothing()
    {
        Fixture f;
        QTest::keyClicks(f.first, u"E<8"_s);
        f.commit();
        QTest::keyClicks(f.first, u"x"_s);
        QTest::keyClick(f.first, Qt::Key_Escape);
        QCOMPARE(f.first->cleanedHtml(), u"E"_s);
        f.line->setFocus();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(f.value(0), QVariant(u"E<8first"_s));
    }

    void whatAnotherFillGivesIsWhatCounts()
    {
        Fixture f;
        f.model.setData(f.model.index(0, 0), u"two  blanks"_s, Qt::EditRole);
        QCOMPARE(f.first->cleanedHtml(), u"two blanks"_s);
        f.model.writes = 0;
        f.commit();
        QCOMPARE(f.model.writes, 0);
        f.first->selectAll();
        QTest::keyClicks(f.first, u"first"_s);
        f.commit();
        QCOMPARE(f.value(0), QVariant(u"first"_s));
    }

    void aChangeOfAnotherCellDoesNotForgetAnEdit()
    {
        Fixture f;
        QTest::keyClicks(f.first, u"my "_s);
        f.model.setData(f.model.index(1, 0), u"other"_s, Qt::EditRole);
        f.model.setData(f.model.index(0, 1), u"other"_s, Qt::EditRole);
        f.commit();
        QCOMPARE(f.value(0), QVariant(u"my first"_s));
    }

    void aTextThatTheProgramSetsIsWrittenByLeavingAndSubmitting()
    {
        Fixture f;
        f.first->setCleanedHtml(u"set"_s);
        f.second->setPlainText(u"set"_s);
        f.commit();
        QCOMPARE(f.model.writes, 0);
        f.line->setFocus();
        QCOMPARE(f.value(0), QVariant(u"set"_s));
        QCOMPARE(f.value(1), QVariant(u"second"_s));
        f.binding->submit();
        QCOMPARE(f.value(1), QVariant(u"set"_s));
        QCOMPARE(f.model.writes, 2);
    }

    void aVisitWritesNoTextButMakesANumberAText()
    {
        Fixture f;
        f.model.setData(f.model.index(0, 0), u"raw <40  and blanks"_s, Qt::EditRole);
        f.model.setItem(0, 1, new QStandardItem);
        f.model.item(0, 1)->setData(12.5, Qt::EditRole);
        f.model.setItem(1, 1, nullptr);
        f.model.writes = 0;
        f.second->setFocus();
        f.line->setFocus();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(f.value(1).metaType(), QMetaType::fromType<QString>());
        f.mapper.setCurrentIndex(1);
        f.second->setFocus();
        f.line->setFocus();
        QCOMPARE(f.model.writes, 1);
        QVERIFY(!f.value(1, 1).isValid());
    }

    void theFocusOfAnotherWidgetDoesNotMatter_data()
    {
        QTest::addColumn<bool>("richText");
        QTest::newRow("an editor that is not mapped") << true;
        QTest::newRow("another kind of widget") << false;
    }
    void theFocusOfAnotherWidgetDoesNotMatter()
    {
        QFETCH(bool, richText);
        Fixture f;
        QWidget *other = richText ? static_cast<QWidget *>(f.unmapped) : f.line;
        other->setFocus();
        QTest::keyClicks(other, u"x"_s);
        f.model.writes = 0;
        f.first->insertPlainText(u"my "_s);
        f.commit();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(f.value(0), QVariant(u"my first"_s));
        QCOMPARE(QApplication::focusWidget(), other);
    }

    void withoutAnyFocusItIsWrittenAllTheSame()
    {
        Fixture f;
        f.first->clearFocus();
        f.model.writes = 0;
        f.first->insertPlainText(u"my "_s);
        QCOMPARE(f.window.focusWidget(), nullptr);
        f.commit();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(f.value(0), QVariant(u"my first"_s));
    }

    void aChangeWithoutFocusIsWrittenSoon()
    {
        Fixture f;
        QVERIFY(!f.second->hasFocus());
        select(f.second, 2, 4);
        accessibleText(f.second)->insertText(0, u"my "_s);
        accessibleText(f.second)->replaceText(0, 2, u"our"_s);
        QCOMPARE(f.model.writes, 0);
        QCoreApplication::processEvents();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(f.value(1), QVariant(u"our second"_s));
        QVERIFY(f.first->hasFocus());
        QCOMPARE(f.second->textCursor().selectedText(), u"co"_s);
        while (f.second->document()->isUndoAvailable())
            f.second->undo();
        QCOMPARE(f.second->cleanedHtml(), u"second"_s);
        QCoreApplication::processEvents();
        QCOMPARE(f.value(1), QVariant(u"second"_s));
    }

    void typingInAFieldWithTheFocusIsNotWrittenKeyByKey()
    {
        Fixture f;
        QTest::keyClicks(f.first, u"my "_s);
        QCoreApplication::processEvents();
        QCOMPARE(f.model.writes, 0);
    }

    void fillingAnEditorWritesNothing()
    {
        Fixture f;
        f.model.setData(f.model.index(0, 1), u"raw <40  and blanks"_s, Qt::EditRole);
        f.model.writes = 0;
        f.mapper.toFirst();
        f.mapper.setCurrentIndex(1);
        f.mapper.setCurrentIndex(0);
        QCoreApplication::processEvents();
        QCOMPARE(f.model.writes, 0);
        QCOMPARE(f.value(1), QVariant(u"raw <40  and blanks"_s));
    }

    void anEditorThatIsGoneOrNotMappedWhenItsTurnComesIsPassedOver()
    {
        Fixture f;
        f.unmapped->insertPlainText(u"x"_s);
        f.second->insertPlainText(u"x"_s);
        f.mapper.removeMapping(f.second);
        QCoreApplication::processEvents();
        QCOMPARE(f.model.writes, 0);
        f.mapper.addMapping(f.second, 1, "cleanedHtml");
        f.second->insertPlainText(u"x"_s);
        delete f.second;
        QCoreApplication::processEvents();
        QCOMPARE(f.model.writes, 0);
    }

    void anEditorOfAnotherMapperIsNotWritten()
    {
        Fixture f;
        Model otherModel(1, 1);
        QDataWidgetMapper otherMapper;
        auto *binding = new FieldBinding(&otherMapper, &otherModel, &f.window);
        otherMapper.addMapping(f.unmapped, 0, "cleanedHtml");
        otherMapper.toFirst();
        QTest::keyClicks(f.first, u"my "_s);
        binding->commitEdits();
        QCOMPARE(otherModel.writes, 0);
        QCOMPARE(f.model.writes, 0);
    }

    void theFocusOfAWindowThatIsNotActiveCounts()
    {
        Fixture f(Shown::No);
        QVERIFY(!f.window.isActiveWindow());
        f.first->insertPlainText(u"my "_s);
        f.commit();
        QCOMPARE(f.model.writes, 1);
        QCOMPARE(f.value(0), QVariant(u"my first"_s));
        QVERIFY(!f.window.isActiveWindow());
    }

    void theRowThatTheMapperShowsIsWritten()
    {
        Fixture f;
        f.mapper.setCurrentIndex(1);
        QCOMPARE(f.first->cleanedHtml(), u"other row"_s);
        QTest::keyClicks(f.first, u"my "_s);
        f.commit();
        QCOMPARE(f.value(0, 1), QVariant(u"my other row"_s));
        QCOMPARE(f.value(0), QVariant(u"first"_s));
    }

    void hugeTextsAreWritten()
    {
        Fixture f;
        const QString text = u"α<sub>2</sub>🧪<br>"_s.repeated(5'000);
        f.model.setData(f.model.index(0, 0), text, Qt::EditRole);
        QTest::keyClicks(f.first, u"x"_s);
        f.commit();
        QCOMPARE(f.value(0), QVariant(u'x' + text));
    }
};

QTEST_MAIN(TestFieldBinding)
#include "tst_fieldbinding.moc"

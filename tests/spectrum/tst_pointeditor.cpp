// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/pointeditor.h"
#include "support/warnings.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QToolTip>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

// An editor with a text that was changed once, and whether the wait cursor was up when it changed
// last.
struct Fixture {
    PointEditor editor;
    std::optional<bool> waited;

    Fixture()
    {
        editor.setPlainText(u"1 2\n3 4"_s);
        editor.moveCursor(QTextCursor::End);
        QTest::keyClick(&editor, Qt::Key_5);
        editor.show();
        QObject::connect(&editor, &QPlainTextEdit::textChanged, &editor, [this] {
            const QCursor *cursor = QGuiApplication::overrideCursor();
            waited = cursor && cursor->shape() == Qt::WaitCursor;
        });
    }
    ~Fixture() { QGuiApplication::clipboard()->clear(); }
    Q_DISABLE_COPY_MOVE(Fixture)

    // Chooses an entry of the menu that the right button brings up.
    [[nodiscard]] bool choose(const QString &entry)
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(1, 1), QPoint(1, 1));
        QCoreApplication::sendEvent(editor.viewport(), &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        auto *action = menu ? menu->findChild<QAction *>(entry) : nullptr;
        const bool isEnabled = action && action->isEnabled();
        if (isEnabled)
            action->trigger();
        if (menu)
            menu->close();
        return isEnabled;
    }
};

} // namespace

class TestPointEditor : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void everyWayOfPastingAndUndoingShowsTheWaitCursor_data()
    {
        QTest::addColumn<std::function<bool(Fixture &)>>("act");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const std::function<bool(Fixture &)> &act,
                            const QString &text) { QTest::newRow(name) << act << text; };
        const auto keys = [](QKeySequence::StandardKey key) {
            return [key](Fixture &f) { return QTest::keySequence(&f.editor, key), true; };
        };
        const auto entry = [](const QString &name) {
            return [name](Fixture &f) { return f.choose(name); };
        };
        // After one of the two, the other.
        const auto after = [](QKeySequence::StandardKey first,
                              const std::function<bool(Fixture &)> &second) {
            return [first, second](Fixture &f) {
                QTest::keySequence(&f.editor, first);
                f.waited.reset();
                return second(f);
            };
        };
        const QString before = u"1 2\n3 4"_s;
        const QString typed = u"1 2\n3 45"_s;
        row("undo, keys", keys(QKeySequence::Undo), before);
        row("undo, menu", entry(u"edit-undo"_s), before);
        row("redo, keys", after(QKeySequence::Undo, keys(QKeySequence::Redo)), typed);
        row("redo, menu", after(QKeySequence::Undo, entry(u"edit-redo"_s)), typed);
        row("paste, keys", keys(QKeySequence::Paste), typed + u"\n6 7"_s);
        row("paste, menu", entry(u"edit-paste"_s), typed + u"\n6 7"_s);
        row("cut, menu", after(QKeySequence::SelectAll, entry(u"edit-cut"_s)), u""_s);
        row("delete, menu", after(QKeySequence::SelectAll, entry(u"edit-delete"_s)), u""_s);
    }
    void everyWayOfPastingAndUndoingShowsTheWaitCursor()
    {
        QFETCH(std::function<bool(Fixture &)>, act);
        Fixture fixture;
        QGuiApplication::clipboard()->setText(u"\n6 7"_s);
        QVERIFY(act(fixture));
        QTEST(fixture.editor.toPlainText(), "text");
        QCOMPARE(fixture.waited, std::optional(true));
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
    }

    void aKeyShowsTheWaitCursorOverALargeSelectionOnly()
    {
        Fixture fixture;
        QTest::keyClick(&fixture.editor, Qt::Key_1);
        QCOMPARE(fixture.waited, std::optional(false));
        fixture.editor.setPlainText(u"12.5 0.25\n"_s.repeated(20'000));
        fixture.editor.selectAll();
        QTest::keyClick(&fixture.editor, Qt::Key_1);
        QCOMPARE(fixture.waited, std::optional(true));
        QCOMPARE(fixture.editor.toPlainText(), u"1"_s);
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
    }

    void theMenuHasQtsEntries()
    {
        Fixture fixture;
        const QMenu *usual = fixture.editor.createStandardContextMenu();
        QStringList names;
        for (const QAction *action : usual->actions())
            names.append(action->text());
        delete usual;
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
        QCoreApplication::sendEvent(fixture.editor.viewport(), &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QStringList shown;
        for (const QAction *action : menu->actions())
            shown.append(action->text());
        QCOMPARE(shown, names);
        QPointer<QMenu> gone(menu);
        menu->close();
        QTRY_VERIFY(!gone);
    }

    // Such a line is no point, and Qt cannot lay it out at any length.
    void whatIsPastedWithALineTooLongToBeLaidOutIsRefused_data()
    {
        QTest::addColumn<QString>("text");
        const QString most(1'000'000, u'8');
        QTest::newRow("between others")
            << QString(u"\n6 7\r\n"_s + u"8 "_s.repeated(5'000'000) + u"\n9"_s);
        QTest::newRow("last") << QString(u"\n8"_s + most);
        QTest::newRow("at the end of a line") << QString(most + u"\n1 2"_s);
        QTest::newRow("many letters of another script") << QString(100'000, u'א');
    }
    void whatIsPastedWithALineTooLongToBeLaidOutIsRefused()
    {
        QFETCH(QString, text);
        Fixture fixture;
        const QString before = fixture.editor.toPlainText();
        QGuiApplication::clipboard()->setText(text);
        fixture.editor.paste();
        QCOMPARE(fixture.editor.toPlainText(), before);
        QVERIFY(QToolTip::text().contains(u"Nothing is pasted"_s));
        QCOMPARE(QGuiApplication::clipboard()->text(), text);
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void aLongLineThatCanBeLaidOutIsPastedWhole_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("numbers") << u"\n"_s + u"1.25 8;"_s.repeated(100'000) + u"\n9 10"_s;
        QTest::newRow("no place to break it") << u"\n"_s + QString(900'000, u'8') + u"\n9 10"_s;
    }
    void aLongLineThatCanBeLaidOutIsPastedWhole()
    {
        QFETCH(QString, text);
        Fixture fixture;
        QGuiApplication::clipboard()->setText(text);
        QElapsedTimer clock;
        clock.start();
        fixture.editor.paste();
        QVERIFY(!fixture.editor.grab().isNull());
        QCOMPARE_LT(clock.elapsed(), 30'000);
        QVERIFY(fixture.editor.toPlainText().endsWith(text));
    }

    void manyLinesArePastedInTime()
    {
        Fixture fixture;
        const QString text = u"12.5 0.25\n"_s.repeated(500'000);
        QGuiApplication::clipboard()->setText(text);
        QElapsedTimer clock;
        clock.start();
        fixture.editor.paste();
        QCOMPARE_LT(clock.elapsed(), 30'000);
        QVERIFY(fixture.editor.toPlainText().endsWith(text));
    }
};

QTEST_MAIN(TestPointEditor)
#include "tst_pointeditor.moc"

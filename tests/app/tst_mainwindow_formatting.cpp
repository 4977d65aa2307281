// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumwindow.h"
#include "support/dialogs.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QComboBox>
#include <QDockWidget>
#include <QPlainTextEdit>
#include <QTest>
#include <QToolBar>

namespace
{

const QString subscript = QStringLiteral("actionSubscript");
const QString superscript = QStringLiteral("actionSuperscript");

enum class Place { Docked, Hidden, Floating, FloatingAndHidden };

// Imitates a tool bar that is dragged out of its window.
void floatToolBar(QToolBar *bar)
{
    bar->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    bar->show();
    QVERIFY(bar->isFloating());
}

void select(CleanTextEdit *field, int anchor, int position)
{
    QTextCursor cursor = field->textCursor();
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    field->setTextCursor(cursor);
}

} // namespace

// Subscript and superscript in whichever field has the focus.
class TestMainWindowFormatting : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void subscriptIsSetAndASecondTimeTakenBack()
    {
        MainWindowFixture fixture;
        CleanTextEdit *formula = focusFormula(fixture, QStringLiteral("H2O"));
        select(formula, 1, 2);
        fixture.trigger(subscript);
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("H<sub>2</sub>O"));
        fixture.trigger(subscript);
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("H2O"));
    }

    void aSelectionMadeBackwardsIsTakenBackToo()
    {
        MainWindowFixture fixture;
        CleanTextEdit *formula = focusFormula(fixture, {});
        QTest::keyClicks(formula, QStringLiteral("H2"));
        QTest::keyClick(formula, Qt::Key_Left, Qt::ShiftModifier);
        for (const char *markup : {"H<sub>2</sub>", "H2", "H<sub>2</sub>"}) {
            fixture.trigger(subscript);
            QCOMPARE(formula->cleanedHtml(), QString::fromLatin1(markup));
            QCOMPARE(formula->textCursor().anchor(), 1);
            QCOMPARE(formula->textCursor().position(), 2);
        }
    }

    void ofASelectionMadeBackwardsTheCharacterBeforeItIsRead()
    {
        MainWindowFixture fixture;
        CleanTextEdit *formula = focusFormula(fixture, QStringLiteral("<sub>2</sub>O"));
        select(formula, 2, 1);
        fixture.trigger(subscript);
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("<sub>2</sub>O"));
        fixture.trigger(subscript);
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("<sub>2O</sub>"));
    }

    void superscriptOnASubscriptMakesItSuperscript()
    {
        MainWindowFixture fixture;
        CleanTextEdit *formula = focusFormula(fixture, QStringLiteral("H<sub>2</sub>O"));
        select(formula, 1, 2);
        fixture.trigger(superscript);
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("H<sup>2</sup>O"));
    }

    void aMixedSelectionFollowsTheCharacterBeforeTheCursor()
    {
        MainWindowFixture fixture;
        CleanTextEdit *formula = focusFormula(fixture, QStringLiteral("<sub>2</sub>O"));
        select(formula, 0, 2);
        fixture.trigger(subscript);
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("<sub>2O</sub>"));

        formula->setCleanedHtml(QStringLiteral("H<sub>2</sub>"));
        select(formula, 0, 2);
        fixture.trigger(subscript);
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("H2"));
    }

    void theShortcutsWorkWhereverTheToolBarAndTheProfileAre_data()
    {
        QTest::addColumn<Place>("toolBar");
        QTest::addColumn<bool>("profileFloats");
        const QList<std::pair<const char *, Place>> places{
            {"docked", Place::Docked},
            {"hidden", Place::Hidden},
            {"floating", Place::Floating},
            {"floating and hidden", Place::FloatingAndHidden}};
        for (const auto &[name, place] : places) {
            QTest::addRow("tool bar %s, profile docked", name) << place << false;
            QTest::addRow("tool bar %s, profile floating", name) << place << true;
        }
    }
    void theShortcutsWorkWhereverTheToolBarAndTheProfileAre()
    {
        QFETCH(Place, toolBar);
        QFETCH(bool, profileFloats);
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionNew"));
        auto *bar = fixture.find<QToolBar>(QStringLiteral("toolBar"));
        if (toolBar == Place::Floating || toolBar == Place::FloatingAndHidden)
            floatToolBar(bar);
        if (toolBar == Place::Hidden || toolBar == Place::FloatingAndHidden)
            bar->toggleViewAction()->trigger();
        fixture.find<QDockWidget>(QStringLiteral("speciesDock"))->setFloating(profileFloats);

        for (CleanTextEdit *field :
             {fixture.field(QStringLiteral("lineEditSumFormula")),
              MainWindowFixture::field(fixture.spectra().value(0),
                                       QStringLiteral("textEditComments"))}) {
            field->window()->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(field->window()));
            field->setFocus();
            QTRY_VERIFY(field->hasFocus());
            QTest::keyClicks(field, QStringLiteral("H2"));
            select(field, 1, 2);
            QTest::keyClick(field, Qt::Key_B, Qt::ControlModifier);
            QCOMPARE(field->cleanedHtml(), QStringLiteral("H<sub>2</sub>"));
            QTest::keyClick(field, Qt::Key_P, Qt::ControlModifier);
            QCOMPARE(field->cleanedHtml(), QStringLiteral("H<sup>2</sup>"));
        }
    }

    void withoutAFocusedTextFieldAWarningIsShown()
    {
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionNew"));
        QWidget *combo = fixture.spectra().value(0)->findChild<QComboBox *>();
        QWidget *points = MainWindowFixture::points(fixture.spectra().value(0));
        for (QWidget *widget : {combo, points}) {
            fixture.window.activateWindow();
            widget->setFocus();
            QTRY_VERIFY(widget->hasFocus());
            Dialogs dialogs;
            dialogs.press();
            fixture.trigger(subscript);
            QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Warning);
            QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("No Text Field Focused"));
            QCOMPARE(dialogs.boxes.value(0).text,
                     QStringLiteral("Please focus on a text field to apply formatting."));
            QCOMPARE(dialogs.boxes.value(0).parent, &fixture.window);
        }
    }

    void withoutASelectionAnInformationIsShown()
    {
        MainWindowFixture fixture;
        CleanTextEdit *formula = focusFormula(fixture, QStringLiteral("H2O"));
        Dialogs dialogs;
        dialogs.press();
        fixture.trigger(superscript);
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Information);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("No Selection"));
        QCOMPARE(dialogs.boxes.value(0).text, QStringLiteral("Please select text to format."));
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("H2O"));
    }

    void boldAndItalicSurvive()
    {
        MainWindowFixture fixture;
        CleanTextEdit *formula = focusFormula(fixture, QStringLiteral("<b><i>H2O</i></b>"));
        select(formula, 1, 2);
        fixture.trigger(subscript);
        QTextCursor cursor = formula->textCursor();
        cursor.setPosition(2);
        QVERIFY(cursor.charFormat().fontWeight() >= QFont::Bold);
        QVERIFY(cursor.charFormat().fontItalic());
        QCOMPARE(cursor.charFormat().verticalAlignment(), QTextCharFormat::AlignSubScript);
    }

    void fieldsOfASpectrumAreFormattedToo()
    {
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionNew"));
        CleanTextEdit *title =
            MainWindowFixture::field(fixture.spectra().value(0), QStringLiteral("lineEditTitle"));
        title->setFocus();
        QTest::keyClicks(title, QStringLiteral("H2O"));
        select(title, 1, 2);
        fixture.trigger(subscript);
        QCOMPARE(title->cleanedHtml(), QStringLiteral("H<sub>2</sub>O"));
    }

    void theFormattedTextReachesTheFile()
    {
        MainWindowFixture fixture;
        CleanTextEdit *formula = focusFormula(fixture, {});
        QTest::keyClicks(formula, QStringLiteral("H2O"));
        select(formula, 1, 2);
        fixture.trigger(subscript);
        QVERIFY(!fixture.isModified());
        QTest::keyClick(formula, Qt::Key_Tab);
        QVERIFY(fixture.isModified());
        QCOMPARE(formula->cleanedHtml(), QStringLiteral("H<sub>2</sub>O"));
    }

private:
    static CleanTextEdit *focusFormula(const MainWindowFixture &fixture, const QString &markup)
    {
        CleanTextEdit *formula = fixture.field(QStringLiteral("lineEditSumFormula"));
        formula->setCleanedHtml(markup);
        formula->setFocus();
        return formula;
    }
};

QTEST_MAIN(TestMainWindowFormatting)
#include "tst_mainwindow_formatting.moc"

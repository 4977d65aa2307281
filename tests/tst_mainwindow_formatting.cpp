// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumwindow.h"
#include "support/dialogs.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QTest>

namespace
{

const QString subscript = QStringLiteral("actionSubscript");
const QString superscript = QStringLiteral("actionSuperscript");

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

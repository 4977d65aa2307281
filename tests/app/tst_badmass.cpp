// SPDX-License-Identifier: GPL-3.0-or-later
// The mark under a mass that is no number and so is saved as 0.
#include "files/jsonfile.h"
#include "species/speciesmodel.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"
#include "widgets/contrast.h"

#include <QApplication>
#include <QTest>
#include <QToolTip>

#include <algorithm>

namespace
{

const QString fault = QStringLiteral("Not a number with a decimal point: it is saved as 0.");

class Fixture : public MainWindowFixture
{
public:
    CleanTextEdit *mass = field(QStringLiteral("lineEditMass"));

    // Whether all of its text is underlined and the field says so.
    [[nodiscard]] bool isMarked() const
    {
        const QList<QTextEdit::ExtraSelection> marks = mass->extraSelections();
        const bool underlined =
            marks.size() == 1
            && marks.first().format.underlineStyle() == QTextCharFormat::WaveUnderline
            && marks.first().cursor.selectedText().size() == mass->toPlainText().size();
        const bool said = mass->toolTip().contains(fault) && mass->accessibleDescription() == fault;
        const bool silent = mass->toolTip().isEmpty() && mass->accessibleDescription().isEmpty();
        if (underlined != said || said == silent || underlined != !marks.isEmpty())
            QTest::qFail("the parts of the mark disagree", __FILE__, __LINE__);
        return underlined;
    }
    // What saving would make of the field.
    [[nodiscard]] double saved()
    {
        SpeciesModel model(nullptr);
        model.setData(model.index(0, 2), mass->cleanedHtml(), Qt::EditRole);
        return model.toJson().value(QLatin1String("Mass")).toDouble();
    }
};

} // namespace

class TestBadMass : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void whatIsSavedAsAnotherNumberIsMarked_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("marked");
        for (const char *good :
             {"78.112", "0", "0.0", "-1", "1e3", " 78.11 ", "78.", ".5", "+2", "", "  ", "1e308"})
            QTest::newRow(good) << QString::fromUtf8(good) << false;
        for (const char *bad :
             {"78,112", "1e400", "abc", "78.11 amu", "nan", "inf", "-inf", "1 000", "1.000,5",
              "1'000", "1\u202f000", "<b>78</b>", "-", "1e", "0x10", "\u0661", "7\u00a08"})
            QTest::newRow(bad) << QString::fromUtf8(bad) << true;
    }

    void whatIsSavedAsAnotherNumberIsMarked()
    {
        QFETCH(QString, text);
        QFETCH(bool, marked);
        Fixture f;
        f.mass->setPlainText(text);
        QCOMPARE(f.isMarked(), marked);
        if (marked)
            QCOMPARE(f.saved(), 0.0);
    }

    void theMarkFollowsTypingUndoAndFormatting()
    {
        Fixture f;
        f.mass->setFocus();
        QTest::keyClicks(f.mass, QStringLiteral("78"));
        QVERIFY(!f.isMarked());
        QTest::keyClick(f.mass, Qt::Key_Comma);
        QVERIFY(f.isMarked());
        QTest::keyClick(f.mass, Qt::Key_Backspace);
        QVERIFY(!f.isMarked());
        QTest::keySequence(f.mass, QKeySequence(QKeySequence::Undo));
        QVERIFY(f.isMarked());
        f.mass->setCleanedHtml(QStringLiteral("1<sub>2</sub>"));
        QVERIFY(f.isMarked());
    }

    void theMarkFollowsTheDocument()
    {
        Fixture f;
        QVERIFY(!f.isMarked());
        QJsonObject file = speciesFileWith(QStringLiteral("a"));
        QJsonObject species = file.value(QLatin1String("Species")).toObject();
        species.insert(QLatin1String("Mass"), 18.015);
        file.insert(QLatin1String("Species"), species);
        QVERIFY(writeJsonObject(f.path(QStringLiteral("a.json")), file));
        f.mass->setPlainText(QStringLiteral("x"));
        QVERIFY(f.isMarked());
        f.window.updateWindowTitle(false);
        QVERIFY(f.window.loadSpeciesFile(f.path(QStringLiteral("a.json"))));
        QCOMPARE(f.mass->toPlainText(), QStringLiteral("18.015"));
        QVERIFY(!f.isMarked());
        f.mass->setPlainText(QStringLiteral("x"));
        QVERIFY(f.isMarked());
        f.window.cleanUp();
        QVERIFY(!f.isMarked());
    }

    void theMarkChangesNothingElse()
    {
        Fixture f;
        f.mass->setFocus();
        QTest::keyClicks(f.mass, QStringLiteral("1,5"));
        QVERIFY(f.isMarked());
        QVERIFY(!f.isModified()); // until the field is left
        QCOMPARE(f.mass->cleanedHtml(), QStringLiteral("1,5"));
        QCOMPARE(f.mass->document()->availableUndoSteps(), 1);
        f.mass->undo();
        QCOMPARE(f.mass->cleanedHtml(), QString());
        f.mass->setPlainText(QStringLiteral("1,5"));
        QVERIFY(f.isMarked());
        QVERIFY(!f.mass->document()->isModified());
        QVERIFY(!f.isModified());
    }

    void waveAndTipCanBeSeenInADarkTheme()
    {
        QPalette dark(QColor(0x31, 0x36, 0x3b), QColor(0x1b, 0x1e, 0x20));
        const QPalette before = QApplication::palette();
        const QPalette tipBefore = QToolTip::palette();
        QApplication::setPalette(dark);
        QPalette tipPalette = dark;
        tipPalette.setColor(QPalette::ToolTipText, Qt::white);
        QToolTip::setPalette(tipPalette);
        {
            Fixture f;
            f.mass->setPlainText(QStringLiteral("78,112"));
            const QImage field = f.mass->grab().toImage();
            int red = 0;
            for (int y = 0; y < field.height(); ++y) {
                for (int x = 0; x < field.width(); ++x) {
                    const QColor colour = field.pixelColor(x, y);
                    red += colour.red() - std::max(colour.green(), colour.blue()) > 80;
                }
            }
            QVERIFY(red >= 10);

            QToolTip::showText(f.window.pos(), f.mass->toolTip(), f.mass);
            QImage tip;
            for (QWidget *widget : QApplication::topLevelWidgets()) {
                if (widget->inherits("QTipLabel"))
                    tip = widget->grab().toImage();
            }
            QVERIFY(!tip.isNull());
            double most = 1;
            const QColor ground = tip.pixelColor(3, 3);
            for (int y = 3; y < tip.height() - 3; ++y) {
                for (int x = 3; x < tip.width() - 3; ++x)
                    most = std::max(most, contrast(tip.pixelColor(x, y), ground));
            }
            QVERIFY(most >= leastTextContrast);
            QToolTip::hideText();
        }
        QToolTip::setPalette(tipBefore);
        QApplication::setPalette(before);
    }
};

QTEST_MAIN(TestBadMass)
#include "tst_badmass.moc"

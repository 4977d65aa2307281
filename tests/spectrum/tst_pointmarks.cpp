// SPDX-License-Identifier: GPL-3.0-or-later
// The marks under lines of the point editor that are not points.
#include "spectrum/pointmarks.h"
#include "spectrum/points.h"
#include "spectrum/spectrummodel.h"
#include "spectrum/spectrumwindow.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>

#include <algorithm>

namespace
{

// A shown spectrum with this point text, which has been read.
class Spectrum
{
public:
    explicit Spectrum(const QString &text = QString())
    {
        window.show();
        if (!text.isEmpty())
            setText(text);
    }

    void setText(const QString &text)
    {
        editor()->setPlainText(text);
        read();
    }
    void read()
    {
        window.readPendingPoints();
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QPlainTextEdit *editor() const
    {
        return window.findChild<QPlainTextEdit *>(QStringLiteral("textEditSpect"));
    }
    [[nodiscard]] QString toolTip() const
    {
        return window.findChild<QLabel *>(QStringLiteral("label_14"))->toolTip();
    }
    // The numbers, from 1 on, of the lines that are drawn with a wave under all of their text.
    [[nodiscard]] QList<int> waves() const
    {
        QList<int> lines;
        const QList<QTextEdit::ExtraSelection> selections = editor()->extraSelections();
        for (const QTextEdit::ExtraSelection &selection : selections) {
            const QTextBlock line =
                editor()->document()->findBlock(selection.cursor.selectionStart());
            if (selection.format.underlineStyle() == QTextCharFormat::WaveUnderline
                && selection.cursor.selectedText() == line.text())
                lines.append(line.blockNumber() + 1);
        }
        return lines;
    }

    SpectrumWindow window;
};

} // namespace

class TestPointMarks : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void marksWhatIsNoPoint_data();
    void marksWhatIsNoPoint();
    void marksJudgeWhatTheModelTakes_data();
    void marksJudgeWhatTheModelTakes();
    void toolTipCountsAndNamesTheFirst();
    void linesOfAFileAreLookedAt();
    void marksComeWithTheReading();
    void marksGoWithTheirLines();
    void textHistoryAndStateStay();
    void onlyLinesThatCanBeSeenAreDrawn();
    void waveCanBeSeen_data();
    void waveCanBeSeen();
};

void TestPointMarks::marksWhatIsNoPoint_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<int>>("lines");
    using Lines = QList<int>;
    QTest::newRow("points") << "1 2\n1.5e-05;3\n;4, 5;" << Lines{};
    QTest::newRow("ends with a line feed") << "1 2\n3 4\n" << Lines{};
    QTest::newRow("blank lines") << "\n1 2\n \t\n\n3 4\n\u00a0\n" << Lines{};
    QTest::newRow("decimal commas") << "1,5 2,5\n1 2" << Lines{1};
    QTest::newRow("one number") << "1 2\n3" << Lines{2};
    QTest::newRow("three numbers") << "1 2 3\n4 5" << Lines{1};
    QTest::newRow("words") << "eV counts\n1 2\n# end" << Lines{1, 3};
    QTest::newRow("separators alone") << "1 2\n;" << Lines{2};
    QTest::newRow("infinity") << "inf 1\n1 -inf\n1 2" << Lines{1, 2};
    QTest::newRow("no number") << "nan 1\n1 nan\n1 2" << Lines{1, 2};
    QTest::newRow("overflow") << "1e400 1\n1 2" << Lines{1};
    QTest::newRow("other digits") << "\u0661 \u0662\n1 2" << Lines{1};
    QTest::newRow("nothing") << "" << Lines{};
    QTest::newRow("no-break space") << "1\u00a02\n3 4" << Lines{};
    QTest::newRow("other blanks") << "1\u20092\n3 4\n5\u202f6" << Lines{1, 3};
    QTest::newRow("line separator") << "1 2\u20283 4\n5\u20286\n7 8\u2028" << Lines{2};
    QTest::newRow("paragraph separator") << "1 2\u20293 4\n5\u20296" << Lines{3, 4};
    QTest::newRow("line separator and a bad line") << "1 2\u20283 4\nbad" << Lines{2};
    // As many points as non-empty lines, but other ones.
    QTest::newRow("a blank and a bad line") << "x\n\n1 2\n\n\n3 4" << Lines{1};
}

void TestPointMarks::marksWhatIsNoPoint()
{
    QFETCH(QString, text);
    QFETCH(QList<int>, lines);
    const Spectrum spectrum(text);
    QCOMPARE(spectrum.waves(), lines);
    QCOMPARE(spectrum.toolTip().isEmpty(), lines.isEmpty());
}

void TestPointMarks::marksJudgeWhatTheModelTakes_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("behind");
    QTest::newRow("between numbers") << "9.610"
                                     << "7";
    QTest::newRow("between points") << "1 2"
                                    << "3 4";
    QTest::newRow("before a mistake") << "1 2"
                                      << "x";
    QTest::newRow("alone") << ""
                           << "";
    QTest::newRow("in a number") << "1 2"
                                 << "3";
    // As many points as lines, but one line is no point.
    QTest::newRow("beside a mistake") << "bad\n1 2"
                                      << "3 4";
}

// Every character without a script or of the Latin one: documents treat a few of them specially.
void TestPointMarks::marksJudgeWhatTheModelTakes()
{
    QFETCH(QString, before);
    QFETCH(QString, behind);
    QPlainTextEdit editor;
    SpectrumModel model(nullptr, &editor);
    PointMarks marks(&editor);
    int separated = 0;
    for (char32_t c = 1; c <= 0x10000 + 3; ++c) {
        // Others need the fonts of their scripts, and documents have no ways of their own with
        // them.
        if (QChar::script(c) > QChar::Script_Latin)
            continue;
        const QString text = before + QString::fromUcs4(&c, 1) + behind;
        if (c % 2)
            editor.setPlainText(text);
        else { // as it is typed and pasted
            editor.clear();
            editor.insertPlainText(text);
        }
        model.readPendingPoints();
        const QList<QPointF> points = model.getXYVectors();
        marks.readLines(points, model.lineCount());

        const QStringList lines = editor.toPlainText().split(QLatin1Char('\n'));
        const auto leftOut = std::count_if(lines.begin(), lines.end(), [](const QString &line) {
            return !line.trimmed().isEmpty() && !parsePoint(line);
        });
        QVERIFY2((marks.count() > 0) == (leftOut > 0), qPrintable(QString::number(c, 16)));
        QCOMPARE(points, parsePoints(lines));
        separated += leftOut == 0;
    }
    QVERIFY(separated < 0x100);
}

void TestPointMarks::toolTipCountsAndNamesTheFirst()
{
    Spectrum spectrum(QStringLiteral("1 2\n\nbad\n3 4\n\nworse\n"));
    const QString two =
        QStringLiteral("2 lines are not points of two finite numbers. The first is line 3.");
    QCOMPARE(spectrum.toolTip(), two);
    QCOMPARE(spectrum.editor()->accessibleDescription(), two);
    spectrum.setText(QStringLiteral("1 2\n\nbad\n3 4"));
    QCOMPARE(spectrum.toolTip(), QStringLiteral("Line 3 is not a point of two finite numbers."));
    spectrum.setText(QStringLiteral("1 2"));
    QCOMPARE(spectrum.toolTip(), QString());
    QCOMPARE(spectrum.editor()->accessibleDescription(), QString());
}

void TestPointMarks::linesOfAFileAreLookedAt()
{
    SpectrumWindow window(QJsonObject{{QStringLiteral("E"), QJsonArray{1, 2}},
                                      {QStringLiteral("I"), QJsonArray{3, 4}}});
    QCOMPARE(window.findChild<QLabel *>(QStringLiteral("label_14"))->toolTip(), QString());
    const auto *marks = window.findChild<PointMarks *>();
    QVERIFY(marks);
    QCOMPARE(marks->count(), 0);
}

// Not while a line is typed.
void TestPointMarks::marksComeWithTheReading()
{
    Spectrum spectrum(QStringLiteral("1 2"));
    spectrum.editor()->moveCursor(QTextCursor::End);
    QTest::keyClick(spectrum.editor(), Qt::Key_Return);
    QTest::keyClicks(spectrum.editor(), QStringLiteral("3"));
    QCoreApplication::processEvents();
    QCOMPARE(spectrum.waves(), QList<int>());
    spectrum.read();
    QCOMPARE(spectrum.waves(), QList<int>{2});
    QTest::keyClicks(spectrum.editor(), QStringLiteral(" 4"));
    QCoreApplication::processEvents();
    QCOMPARE(spectrum.waves(), QList<int>{2});
    QTRY_COMPARE_WITH_TIMEOUT(spectrum.waves(), QList<int>(), 5000); // the pause in typing
    QCOMPARE(spectrum.toolTip(), QString());

    spectrum.setText(QStringLiteral("bad\n1 2"));
    QCOMPARE(spectrum.waves(), QList<int>{1});
    spectrum.window.findChild<QPushButton *>(QStringLiteral("buttonNormalize"))->click();
    QCoreApplication::processEvents();
    QCOMPARE(spectrum.waves(), QList<int>());
    spectrum.editor()->undo();
    spectrum.read();
    QCOMPARE(spectrum.waves(), QList<int>{1});
}

void TestPointMarks::marksGoWithTheirLines()
{
    Spectrum spectrum(QStringLiteral("1 2\nbad\n3 4"));
    spectrum.editor()->moveCursor(QTextCursor::Start);
    QTest::keyClick(spectrum.editor(), Qt::Key_Return);
    QTest::keyClick(spectrum.editor(), Qt::Key_Return);
    QCoreApplication::processEvents();
    QCOMPARE(spectrum.waves(), QList<int>{4});
}

void TestPointMarks::textHistoryAndStateStay()
{
    Spectrum spectrum(QStringLiteral("bad\n1 2"));
    QPlainTextEdit *editor = spectrum.editor();
    QTest::keyClicks(editor, QStringLiteral("x"));
    const int steps = editor->document()->availableUndoSteps();
    const QString text = editor->toPlainText();
    editor->document()->setModified(false);
    const QSignalSpy changes(editor, &QPlainTextEdit::textChanged);
    spectrum.read();
    QCOMPARE(spectrum.waves(), QList<int>{1});
    QCOMPARE(editor->toPlainText(), text);
    QCOMPARE(editor->document()->availableUndoSteps(), steps);
    QVERIFY(!editor->document()->isModified());
    QCOMPARE(changes.count(), 0);
}

void TestPointMarks::onlyLinesThatCanBeSeenAreDrawn()
{
    constexpr int lines = 20'000;
    QString text;
    for (int i = 0; i < lines; ++i)
        text += QStringLiteral("1,5 2,5\n");
    Spectrum spectrum(text);
    QVERIFY(spectrum.toolTip().startsWith(QString::number(lines)));
    QVERIFY(spectrum.waves().size() < 200);
    QCOMPARE(spectrum.waves().constFirst(), 1);

    auto *bar = spectrum.editor()->verticalScrollBar();
    for (const int line : {5000, 19'000, 3}) {
        bar->setValue(line);
        QCoreApplication::processEvents();
        const QList<int> waves = spectrum.waves();
        QVERIFY(waves.size() < 200);
        // From the first line that can be seen to the last.
        QCOMPARE(waves.first(), line + 1);
        const QPoint end(1, spectrum.editor()->viewport()->height() - 1);
        QVERIFY(waves.contains(spectrum.editor()->cursorForPosition(end).blockNumber() + 1));
    }
    spectrum.window.resize(spectrum.window.width(), spectrum.window.height() + 600);
    QCoreApplication::processEvents();
    const QPoint end(1, spectrum.editor()->viewport()->height() - 1);
    QVERIFY(spectrum.waves().contains(spectrum.editor()->cursorForPosition(end).blockNumber() + 1));
}

void TestPointMarks::waveCanBeSeen_data()
{
    QTest::addColumn<QColor>("background");
    QTest::newRow("light") << QColor(Qt::white);
    QTest::newRow("dark") << QColor(27, 30, 32);
}

// Red enough pixels under the bad line, and none under the good one.
void TestPointMarks::waveCanBeSeen()
{
    QFETCH(QColor, background);
    Spectrum spectrum;
    QPalette palette = spectrum.editor()->palette();
    palette.setColor(QPalette::Base, background);
    spectrum.editor()->setPalette(palette);
    spectrum.setText(QStringLiteral("1 2\nbad\n3 4"));
    const QImage image = spectrum.editor()->viewport()->grab().toImage();
    const auto redPixels = [&](int line) {
        const QTextBlock block = spectrum.editor()->document()->findBlockByNumber(line);
        const QRect rect = spectrum.editor()->cursorRect(QTextCursor(block));
        int count = 0;
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor colour = image.pixelColor(x, y);
                count += colour.red() - std::max(colour.green(), colour.blue()) > 80;
            }
        }
        return count;
    };
    QVERIFY(redPixels(1) >= 10);
    QCOMPARE(redPixels(0), 0);
    QCOMPARE(redPixels(2), 0);
}

QTEST_MAIN(TestPointMarks)
#include "tst_pointmarks.moc"

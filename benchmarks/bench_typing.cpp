// SPDX-License-Identifier: GPL-3.0-or-later
// A key press in the point editor of a large spectrum against one in that of a small spectrum, and
// in one of which half of the lines are marked as no points against one without marks.
#include "benchmarks/measure.h"
#include "spectrum/spectrumwindow.h"

#include <QApplication>
#include <QJsonArray>
#include <QKeyEvent>
#include <QPlainTextEdit>

namespace
{

constexpr int rounds = 31;
constexpr int keysPerRound = 20;

// A shown spectrum window whose point editor has the focus.
class Typist
{
public:
    explicit Typist(int lines, bool withMarks = false) : m_window(spectrumOf(lines))
    {
        m_editor = m_window.findChild<QPlainTextEdit *>(QStringLiteral("textEditSpect"));
        if (withMarks)
            spoilEveryOtherLine();
        m_window.show();
        m_editor->setFocus();
        QCoreApplication::processEvents();
    }

    // Puts the cursor at a part of the text, from 0 to 1.
    void goTo(double part)
    {
        QTextCursor cursor(m_editor->document());
        cursor.setPosition(static_cast<int>(part * (m_editor->document()->characterCount() - 1)));
        m_editor->setTextCursor(cursor);
        press(Qt::Key_0, QStringLiteral("0"));
    }

    // The average of a few keys in turn, until each is painted.
    double secondsPerKey()
    {
        const double seconds = secondsOf([this] {
            for (int i = 0; i < keysPerRound; ++i) {
                if (i % 2)
                    press(Qt::Key_Backspace, QString());
                else
                    press(Qt::Key_1, QStringLiteral("1"));
            }
        });
        return seconds / keysPerRound;
    }

private:
    void spoilEveryOtherLine()
    {
        QStringList lines = m_editor->toPlainText().split(QLatin1Char('\n'));
        for (qsizetype i = 0; i < lines.size(); i += 2)
            lines[i].replace(QLatin1Char('.'), QLatin1Char(','));
        m_editor->setPlainText(lines.join(QLatin1Char('\n')));
        m_window.readPendingPoints();
    }

    static QJsonObject spectrumOf(int lines)
    {
        QJsonArray energies;
        QJsonArray intensities;
        for (int i = 0; i < lines; ++i) {
            energies.append(10 + 0.0001 * i);
            intensities.append(i % 1000);
        }
        return {{QStringLiteral("E"), energies}, {QStringLiteral("I"), intensities}};
    }

    void press(int key, const QString &text)
    {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier, text);
            QCoreApplication::sendEvent(m_editor, &event);
        }
        QCoreApplication::processEvents();
    }

    SpectrumWindow m_window;
    QPlainTextEdit *m_editor;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    Typist large(200'000);
    Typist small(5'000);
    Typist marked(200'000, true);
    bool kept = true;
    for (const auto &[what, part] : {std::pair("a key press at the start of 200,000 lines", 0.0),
                                     std::pair("a key press in the middle of 200,000 lines", 0.5),
                                     std::pair("a key press at the end of 200,000 lines", 1.0)}) {
        large.goTo(part);
        small.goTo(part);
        const Ratio ratio = measureSeconds(
            rounds, [&] { return large.secondsPerKey(); }, [&] { return small.secondsPerKey(); });
        kept &= report(what, ratio, "one in 5,000 lines", 1.5);

        marked.goTo(part);
        const Ratio marks = measureSeconds(
            rounds, [&] { return marked.secondsPerKey(); }, [&] { return large.secondsPerKey(); });
        kept &= report("the same with every other line marked", marks, "one without marks", 1.5);
    }
    return kept ? 0 : 1;
}

// SPDX-License-Identifier: GPL-3.0-or-later
// Parsing the point text against the bare conversion of its numbers, and resampling many points
// against resampling few of them onto the same grid.
#include "benchmarks/measure.h"
#include "spectrum/points.h"
#include "spectrum/spectrummodel.h"
#include "widgets/undoabletext.h"

#include <QApplication>
#include <QJsonArray>
#include <QPlainTextEdit>
#include <QRandomGenerator>

#include <charconv>
#include <cmath>
#include <string>

namespace
{

using Points = QList<QPointF>;

constexpr int rounds = 31;

// A spectrum from 5 eV on, evenly spaced but for a little noise.
Points makePoints(int count, double rangeEv)
{
    QRandomGenerator random(1);
    const double step = rangeEv / (count - 1);
    Points points;
    for (int i = 0; i < count; ++i)
        points.append(QPointF(5 + step * i, 1000 * random.generateDouble()));
    return points;
}

QStringList asLoaded(const Points &points)
{
    QStringList lines;
    for (const QPointF &point : points)
        lines.append(loadedPointLine(point.x(), point.y()));
    return lines;
}

QStringList asTyped(const Points &points)
{
    QStringList lines;
    for (const QPointF &point : points)
        lines.append(QString::number(point.x(), 'g', 9) + QLatin1String(",\t")
                     + QString::number(point.y(), 'e', 8));
    return lines;
}

// The tokens of the lines, ready for the converter.
std::vector<std::string> tokensOf(const QStringList &lines)
{
    std::vector<std::string> tokens;
    for (const QString &line : lines) {
        const std::string text = line.toStdString();
        const std::size_t stop = text.find_first_of("; ,\t");
        tokens.push_back(text.substr(0, stop));
        tokens.push_back(text.substr(text.find_first_not_of("; ,\t", stop)));
    }
    return tokens;
}

bool compareParsing(const char *what, const QStringList &lines)
{
    const std::vector<std::string> tokens = tokensOf(lines);
    const Ratio ratio = measureRatio(
        rounds,
        [&] {
            const Points points = parsePoints(lines);
            keep(points);
        },
        [&] {
            double sum = 0;
            for (const std::string &token : tokens) {
                double value = 0;
                std::from_chars(token.data(), token.data() + token.size(), value);
                sum += value;
            }
            keep(sum);
        });
    return report(what, ratio, "bare from_chars", 2);
}

QJsonObject spectrumOf(const Points &points)
{
    QJsonArray energies;
    QJsonArray intensities;
    for (const QPointF &point : points) {
        energies.append(point.x());
        intensities.append(point.y());
    }
    return {{QStringLiteral("E"), energies}, {QStringLiteral("I"), intensities}};
}

// What makePointsSparser() takes of the same range in many points and in few.
bool compareResampling(const char *what, QPlainTextEdit *editor)
{
    const QJsonObject many = spectrumOf(makePoints(100'000, 10));
    const QJsonObject few = spectrumOf(makePoints(5'000, 10));
    SpectrumModel model(nullptr, editor);
    const auto seconds = [&](const QJsonObject &spectrum) {
        model.loadFromJson(spectrum);
        return secondsOf([&] { model.makePointsSparser(); });
    };
    const Ratio ratio = measureSeconds(
        rounds, [&] { return seconds(many); }, [&] { return seconds(few); });
    return report(what, ratio, "5,000 points", 3);
}

// The same many points against the editor's own part: one text for another, undoably.
bool compareResamplingWithReplacing(QPlainTextEdit *editor)
{
    const QJsonObject many = spectrumOf(makePoints(100'000, 10));
    SpectrumModel model(nullptr, editor);
    model.loadFromJson(many);
    model.makePointsSparser();
    const QString resampled = editor->toPlainText();
    const Ratio ratio = measureSeconds(
        rounds,
        [&] {
            model.loadFromJson(many);
            return secondsOf([&] { model.makePointsSparser(); });
        },
        [&] {
            model.loadFromJson(many);
            return secondsOf([&] { replaceTextUndoably(editor, resampled); });
        });
    return report("resample 100,000 points with an editor", ratio, "replacing its text", 1.3);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    bool kept = true;
    kept &= compareParsing("parse 200,000 points as loaded", asLoaded(makePoints(200'000, 10)));
    kept &= compareParsing("parse 200,000 points as normalised",
                           fixedPointLines(makePoints(200'000, 10), 4, 2));
    kept &= compareParsing("parse 200,000 points of many digits", asTyped(makePoints(200'000, 10)));
    kept &= compareResampling("resample 100,000 points without an editor", nullptr);
    QPlainTextEdit editor;
    editor.resize(400, 400);
    editor.show();
    kept &= compareResampling("resample 100,000 points with an editor", &editor);
    kept &= compareResamplingWithReplacing(&editor);
    return kept ? 0 : 1;
}

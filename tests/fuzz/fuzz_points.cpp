// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/invariant.h"
#include "spectrum/points.h"
#include "spectrum/spectrummodel.h"

#include <QJsonArray>
#include <QPlainTextEdit>
#include <QRegularExpression>

#include <algorithm>
#include <bit>
#include <cmath>
#include <variant>

using namespace Qt::StringLiterals;

namespace
{

// Bit for bit: "not a number" equals itself, and -0 is not 0.
bool isSame(double left, double right)
{
    return std::bit_cast<quint64>(left) == std::bit_cast<quint64>(right)
           || (std::isnan(left) && std::isnan(right));
}

bool isSame(const QList<QPointF> &left, const QList<QPointF> &right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const QPointF &a, const QPointF &b) {
                          return isSame(a.x(), b.x()) && isSame(a.y(), b.y());
                      });
}

QList<double> numbersIn(const QJsonValue &array)
{
    QList<double> numbers;
    const QJsonArray elements = array.toArray();
    for (const auto &element : elements) {
        REQUIRE(element.isDouble());
        numbers.append(element.toDouble());
    }
    return numbers;
}

QList<QPointF> pointsOf(const QList<double> &energies, const QList<double> &intensities)
{
    REQUIRE_EQUAL(energies.size(), intensities.size());
    QList<QPointF> points;
    for (qsizetype i = 0; i < energies.size(); ++i)
        points.append({energies[i], intensities[i]});
    return points;
}

QList<QPointF> withoutSignedZeros(QList<QPointF> points)
{
    for (QPointF &point : points)
        point += QPointF(0, 0);
    return points;
}

// The plain way of reading points, which the program's own must agree with.
QList<QPointF> pointsIn(const QString &text)
{
    static const QRegularExpression separator(u"[,;\\s]+"_s);
    QList<QPointF> points;
    for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList tokens = line.split(separator, Qt::SkipEmptyParts);
        bool isX = false;
        bool isY = false;
        if (tokens.size() != 2)
            continue;
        const QPointF point(tokens[0].toDouble(&isX), tokens[1].toDouble(&isY));
        if (isX && isY)
            points.append(point);
    }
    return points;
}

// The plain way of resampling: for every grid energy, all segments from the first.
QStringList resampledLines(const QList<QPointF> &points)
{
    const double start = points.first().x() + 0.001;
    const double end = points.last().x() - 0.001;
    const int steps = static_cast<int>((end - start) / 0.001);
    QStringList lines;
    for (int i = 0; i <= steps && (end - start) / 0.001 > -1; ++i) {
        const double x = std::fma(i, 0.001, start);
        for (qsizetype j = 0; j + 1 < points.size(); ++j) {
            if (!(points[j + 1].x() >= x))
                continue;
            const double fraction = (x - points[j].x()) / (points[j + 1].x() - points[j].x());
            const double y = std::fma(points[j + 1].y() - points[j].y(), fraction, points[j].y());
            lines.append(QString::number(x, 'f', 3) + u' ' + QString::number(y, 'f', 2));
            break;
        }
    }
    return lines;
}

QStringList normalisedLines(const QList<QPointF> &points, double maximum)
{
    QStringList lines;
    for (const QPointF &point : points)
        lines.append(QString::number(point.x(), 'f', 4) + u' '
                     + QString::number(point.y() / maximum * 1000.0, 'f', 2));
    return lines;
}

void testNormalising(const QString &text, const QList<QPointF> &points)
{
    QPlainTextEdit editor;
    SpectrumModel model(nullptr, &editor);
    editor.setPlainText(text);
    const QString before = editor.toPlainText();
    model.readPendingPoints();
    model.normalizeSpectrum();
    double maximum = points.isEmpty() ? 0 : points.first().y();
    for (const QPointF &point : points)
        maximum = point.y() > maximum ? point.y() : maximum;
    const bool isDone = maximum != 0;
    REQUIRE_EQUAL(editor.toPlainText(),
                  isDone ? normalisedLines(points, maximum).join(u'\n') : before);
}

void testResampling(const QString &text, const QList<QPointF> &points)
{
    constexpr double widest = 3; // eV; a wide range is the business of a benchmark
    if (points.isEmpty() || !(std::abs(points.last().x() - points.first().x()) < widest)
        || points.size() > 100)
        return;
    QPlainTextEdit editor;
    SpectrumModel model(nullptr, &editor);
    editor.setPlainText(text);
    model.readPendingPoints();
    model.makePointsSparser();
    REQUIRE_EQUAL(editor.toPlainText(), resampledLines(points).join(u'\n'));
}

} // namespace

// Any text in the point editor: read as the plain way reads it, the same however often, saved as
// numbers, normalised and resampled as the plain ways do it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(bytesOf(data, size));
    REQUIRE(isSame(parsePoints(splitPointLines(text)), pointsIn(text)));

    QPlainTextEdit editor;
    SpectrumModel model(nullptr, &editor);
    editor.setPlainText(text);
    model.readPendingPoints();
    const QList<QPointF> points = model.getXYVectors();
    REQUIRE(isSame(points, pointsIn(editor.toPlainText())));
    model.emitSpectrumDataChanged();
    REQUIRE(!model.lastReadFoundChanges());
    REQUIRE(isSame(model.getXYVectors(), points));

    const QJsonObject saved = model.toJson();
    // JSON does not tell -0 from 0.
    REQUIRE(isSame(withoutSignedZeros(pointsOf(numbersIn(saved["E"_L1]), numbersIn(saved["I"_L1]))),
                   withoutSignedZeros(points)));

    testNormalising(text, points);
    testResampling(text, points);
    return 0;
}

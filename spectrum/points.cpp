// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/points.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace
{

constexpr double gridStepEv = 0.001;
constexpr double largestGrid = 10'000'000;
constexpr double normalisedMaximum = 1000.0;

// What the pattern class [,;\s] matches: Unicode's other white space does not separate.
constexpr bool isSeparator(char16_t c)
{
    return c == u',' || c == u';' || c == u' ' || (c >= u'\t' && c <= u'\r');
}

constexpr bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

// The value of a plain token such as "12.345" or "-1.5e-05" by the fast converter; nothing for whatever
// is unusual (signs, infinities, overflow, other scripts, ...), which is not to say that it is no number.
std::optional<double> plainNumber(QStringView token)
{
    std::array<char, 32> narrow;
    const qsizetype first = token.front() == u'-' ? 1 : 0;
    if (token.size() > qsizetype(narrow.size()) || token.size() == first
        || !isDigit(token[first].unicode()))
        return std::nullopt;
    char *end = narrow.data();
    for (const QChar c : token) {
        if (c.unicode() > u'~')
            return std::nullopt;
        *end++ = static_cast<char>(c.unicode());
    }
    double value = 0;
    const auto [rest, error] = std::from_chars(narrow.data(), end, value);
    if (error != std::errc() || rest != end)
        return std::nullopt;
    return value;
}

std::optional<double> number(QStringView token)
{
    if (const std::optional<double> plain = plainNumber(token))
        return plain;
    bool ok = false;
    const double value = token.toDouble(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

// Takes the next token off the front of rest; an empty one when there is none.
QStringView takeToken(QStringView &rest)
{
    const char16_t *const end = rest.utf16() + rest.size();
    const char16_t *const begin = std::find_if_not(rest.utf16(), end, isSeparator);
    const char16_t *const stop = std::find_if(begin, end, isSeparator);
    rest = QStringView(stop, end);
    return QStringView(begin, stop);
}

} // namespace

QStringList splitPointLines(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

std::optional<QPointF> parsePoint(QStringView line)
{
    const QStringView first = takeToken(line);
    const QStringView second = takeToken(line);
    if (second.isEmpty() || !takeToken(line).isEmpty())
        return std::nullopt;
    const std::optional<double> x = number(first);
    const std::optional<double> y = x ? number(second) : std::nullopt;
    return y ? std::optional(QPointF(*x, *y)) : std::nullopt;
}

QList<QPointF> parsePoints(const QStringList &lines)
{
    QList<QPointF> points;
    points.reserve(lines.size());
    for (const QString &line : lines) {
        if (const std::optional<QPointF> point = parsePoint(line))
            points.append(*point);
    }
    return points;
}

QString loadedPointLine(double energyEv, double intensity)
{
    return QString::number(energyEv, 'g', 6) + QLatin1String("; ")
        + QString::number(intensity, 'g', 6);
}

QStringList fixedPointLines(const QList<QPointF> &points, int energyDecimals, int intensityDecimals)
{
    QStringList lines;
    lines.reserve(points.size());
    for (const QPointF &point : points)
        lines.append(QString::number(point.x(), 'f', energyDecimals) + QLatin1Char(' ')
                     + QString::number(point.y(), 'f', intensityDecimals));
    return lines;
}

std::optional<QList<QPointF>> normalised(QList<QPointF> points)
{
    if (points.isEmpty())
        return std::nullopt;
    double maximum = points.first().y();
    for (const QPointF &point : std::as_const(points)) {
        if (point.y() > maximum)
            maximum = point.y();
    }
    if (maximum == 0.0)
        return std::nullopt;
    for (QPointF &point : points)
        point.setY(point.y() / maximum * normalisedMaximum);
    return points;
}

std::variant<QList<QPointF>, ResampleError> resampled(const QList<QPointF> &points)
{
    if (points.isEmpty())
        return ResampleError::NoPoints;
    const double start = points.first().x() + gridStepEv;
    const double end = points.last().x() - gridStepEv;
    const double steps = std::trunc((end - start) / gridStepEv);
    if (!std::isfinite(start) || !std::isfinite(end) || steps + 1 > largestGrid)
        return ResampleError::GridTooLarge;

    QList<QPointF> grid;
    // The first segment that ends at or above a grid energy never lies before that of the energy before
    // it, whatever the order of the points, so one walk over them serves the whole grid.
    qsizetype j = 0;
    for (double i = 0; i <= steps; ++i) {
        const double x = std::fma(i, gridStepEv, start);
        while (j + 1 < points.size() && !(points[j + 1].x() >= x))
            ++j;
        if (j + 1 >= points.size())
            break;
        const QPointF &left = points[j];
        const QPointF &right = points[j + 1];
        const double fraction = (x - left.x()) / (right.x() - left.x());
        grid.append({x, std::fma(right.y() - left.y(), fraction, left.y())});
    }
    return grid;
}

QList<QPointF> stickPlot(const QList<QPointF> &points)
{
    QList<QPointF> corners;
    corners.reserve(3 * points.size());
    const qsizetype last = points.size() - 1;
    for (qsizetype i = 0; i <= last; ++i) {
        corners.append(points[i]);
        if (i < last)
            corners.append({points[i].x(), 0});
        if (i < last - 1)
            corners.append({points[i + 1].x(), 0});
    }
    return corners;
}

std::optional<PointRange> finiteRange(const QList<QPointF> &points)
{
    if (points.isEmpty())
        return std::nullopt;
    PointRange range{points[0].x(), points[0].x(), points[0].y(), points[0].y()};
    bool finite = true;
    for (const QPointF &point : points) {
        finite = finite && std::isfinite(point.x()) && std::isfinite(point.y());
        range.minX = std::min(range.minX, point.x());
        range.maxX = std::max(range.maxX, point.x());
        range.minY = std::min(range.minY, point.y());
        range.maxY = std::max(range.maxY, point.y());
    }
    if (!finite || !std::isfinite(range.maxX - range.minX)
        || !std::isfinite(range.maxY - range.minY))
        return std::nullopt;
    return range;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/points.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace
{

constexpr double gridStepEv = 0.001;
constexpr double largestGrid = 10'000'000;
constexpr double normalisedMaximum = 1000.0;

// Matches the pattern class [,;\s]: other white space of Unicode does not separate.
constexpr bool isSeparator(char16_t c)
{
    constexpr std::uint64_t set = 1ull << u',' | 1ull << u';' | 1ull << u' ' | 0x1full << u'\t';
    return c < 64 && (set >> c & 1);
}

constexpr bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

const char16_t *skipSeparators(const char16_t *c, const char16_t *end)
{
    while (c != end && isSeparator(*c))
        ++c;
    return c;
}

const char16_t *skipToken(const char16_t *c, const char16_t *end)
{
    while (c != end && !isSeparator(*c))
        ++c;
    return c;
}

// Converts a plain token with the fast converter; nothing for an unusual one (signs, infinities,
// overflow, other scripts, ...), which may still be a number.
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

// The number of one token, which must not be empty.
std::optional<double> number(QStringView token)
{
    if (const std::optional<double> plain = plainNumber(token))
        return plain;
    bool ok = false;
    const double value = token.toDouble(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

// Appends the digits at c to a number; returns where they end.
const char16_t *takeDigits(const char16_t *c, const char16_t *end, std::int64_t &digits)
{
    for (; c != end && isDigit(*c); ++c)
        digits = 10 * digits + (*c - u'0');
    return c;
}

// Takes a number such as -12.345 or 1.5e-05 off the front of c and returns its value, if it is the
// whole token and has so few digits that they and the power of ten are exact doubles; else leaves
// c. The one operation on the two gives the double next to the number, as a converter does, but
// several times as fast.
std::optional<double> takeShortNumber(const char16_t *&c, const char16_t *end)
{
    constexpr std::ptrdiff_t mostDigits = 15;
    constexpr std::ptrdiff_t mostExponentDigits = 3;
    constexpr std::array powersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const auto upTo = [&](const char16_t *from, std::ptrdiff_t most) {
        return from + std::min(end - from, most);
    };

    const bool negative = c != end && *c == u'-';
    const char16_t *const begin = c + negative;
    const char16_t *const farthest = upTo(begin, mostDigits + 1);
    std::int64_t digits = 0;
    const char16_t *at = takeDigits(begin, farthest, digits);
    std::ptrdiff_t count = at - begin;
    std::int64_t power = 0;
    if (at != farthest && *at == u'.') {
        const char16_t *const first = at + 1;
        at = takeDigits(first, farthest, digits);
        count += at - first;
        power = first - at;
    }
    if (count < 1 || count > mostDigits)
        return std::nullopt;
    if (at != end && (*at == u'e' || *at == u'E')) {
        ++at;
        const bool isNegative = at != end && *at == u'-';
        at += isNegative || (at != end && *at == u'+');
        const char16_t *const first = at;
        std::int64_t exponent = 0;
        at = takeDigits(first, upTo(first, mostExponentDigits), exponent);
        if (at == first)
            return std::nullopt;
        power += isNegative ? -exponent : exponent;
    }
    const std::size_t magnitude = static_cast<std::size_t>(std::abs(power));
    if ((at != end && !isSeparator(*at)) || magnitude >= powersOfTen.size() || FLT_EVAL_METHOD != 0)
        return std::nullopt;
    c = at;
    const auto exact = static_cast<double>(digits);
    const double value =
        power < 0 ? exact / powersOfTen[magnitude] : exact * powersOfTen[magnitude];
    return negative ? -value : value;
}

// Appends digits as a decimal number of so many decimals.
void appendDecimal(QString &line, int digits, int decimals)
{
    std::array<char16_t, 12> text;
    char16_t *at = text.data() + text.size();
    for (int i = 0; i <= decimals || digits > 0; ++i) {
        if (i == decimals && decimals > 0)
            *--at = u'.';
        *--at = static_cast<char16_t>(u'0' + digits % 10);
        digits /= 10;
    }
    line.append(reinterpret_cast<const QChar *>(at), text.data() + text.size() - at);
}

// Appends the number with the digits that loading keeps, as QString::number() writes it. Most
// numbers need few decimals and are the quotient of a whole number and a power of ten, which has
// the same digits and is written in a fifth of the time.
void appendLoaded(QString &line, double number)
{
    constexpr std::array powersOfTen{1e0, 1e1, 1e2, 1e3, 1e4};
    constexpr double tooMany = 1e6; // for keptDigits
    const double size = std::abs(number);
    for (std::size_t i = 0; i < powersOfTen.size() && FLT_EVAL_METHOD == 0; ++i) {
        const double digits = std::nearbyint(size * powersOfTen[i]);
        if (!(digits < tooMany))
            break;
        if (digits / powersOfTen[i] != size)
            continue;
        if (std::signbit(number))
            line += QLatin1Char('-');
        return appendDecimal(line, static_cast<int>(digits), static_cast<int>(i));
    }
    line += QString::number(number, 'g', keptDigits);
}

// Takes the next token off the front of c; nothing if there is none or it is no number.
std::optional<double> takeNumber(const char16_t *&c, const char16_t *end)
{
    c = skipSeparators(c, end);
    if (const std::optional<double> value = takeShortNumber(c, end))
        return value;
    const char16_t *const begin = std::exchange(c, skipToken(c, end));
    return begin != c ? number(QStringView(begin, c)) : std::nullopt;
}

} // namespace

QStringList splitPointLines(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

std::optional<QPointF> parsePoint(QStringView line)
{
    const char16_t *c = line.utf16();
    const char16_t *const end = c + line.size();
    const std::optional<double> x = takeNumber(c, end);
    const std::optional<double> y = x ? takeNumber(c, end) : std::nullopt;
    if (!y || skipSeparators(c, end) != end)
        return std::nullopt;
    return QPointF(*x, *y);
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
    QString line;
    line.reserve(24);
    appendLoaded(line, energyEv);
    line += QLatin1String("; ");
    appendLoaded(line, intensity);
    return line;
}

double loadedNumber(double number)
{
    const std::optional<QPointF> point = parsePoint(loadedPointLine(number, 0));
    return point ? point->x() : number;
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
    const double wholeSteps = std::trunc((end - start) / gridStepEv);
    if (!std::isfinite(start) || !std::isfinite(end) || wholeSteps + 1 > largestGrid)
        return ResampleError::GridTooLarge;

    QList<QPointF> grid;
    // The segment of a grid energy never lies before that of the previous grid energy, whatever the
    // order of the points, so one walk serves the whole grid.
    qsizetype j = 0;
    // A range far below zero has no step either; the cast must not overflow.
    const int steps = static_cast<int>(std::max(wholeSteps, -1.0));
    for (int i = 0; i <= steps; ++i) {
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

bool isFinite(const QPointF &point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

QList<QPointF> finitePoints(const QList<QPointF> &points)
{
    if (std::all_of(points.begin(), points.end(), isFinite))
        return points;
    QList<QPointF> finite;
    std::copy_if(points.begin(), points.end(), std::back_inserter(finite), isFinite);
    return finite;
}

std::optional<PointRange> finiteRange(const QList<QPointF> &points)
{
    std::optional<PointRange> range;
    for (const QPointF &point : points) {
        if (!isFinite(point))
            continue;
        if (!range)
            range = {point.x(), point.x(), point.y(), point.y()};
        range->minX = std::min(range->minX, point.x());
        range->maxX = std::max(range->maxX, point.x());
        range->minY = std::min(range->minY, point.y());
        range->maxY = std::max(range->maxY, point.y());
    }
    const bool canBeShown = range && std::isfinite(range->maxX - range->minX)
                            && std::isfinite(range->maxY - range->minY);
    return canBeShown ? range : std::nullopt;
}

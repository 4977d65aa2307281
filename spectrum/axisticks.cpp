// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/axisticks.h"

#include <QByteArray>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace
{

// digits * 10^exponent, exactly.
struct Decimal {
    qint64 digits;
    int exponent;
};

// The double next to a decimal, as which its label is read.
double valueOf(const Decimal &decimal)
{
    const QByteArray text =
        QByteArray::number(decimal.digits) + 'e' + QByteArray::number(decimal.exponent);
    return text.toDouble();
}

// The multiples of step in the range; nothing if there are far more than an axis can have, or if
// doubles cannot distinguish them.
std::optional<QList<Decimal>> multiplesIn(double min, double max, const Decimal &step)
{
    constexpr double mostDigits = 1e15; // a double has every decimal of so many
    const double width = valueOf(step);
    const double first = std::floor(min / width);
    const double last = std::ceil(max / width);
    const double largest = std::max(std::abs(first), std::abs(last)) * double(step.digits);
    if (!(largest < mostDigits) || last - first > mostTicks + 2)
        return std::nullopt;
    QList<Decimal> found;
    for (auto i = qint64(first); i <= qint64(last); ++i) {
        const Decimal decimal{i * step.digits, step.exponent};
        const double value = valueOf(decimal);
        if (value >= min && value <= max)
            found.append(decimal);
    }
    return found;
}

// The shortest decimal that is read as this number.
Decimal shortestOf(double value)
{
    const QByteArray text = QByteArray::number(value, 'e', QLocale::FloatingPointShortest);
    const qsizetype end = text.indexOf('e');
    const qsizetype point = text.indexOf('.');
    const int decimals = point < 0 ? 0 : int(end - point - 1);
    return {text.first(end).replace(".", "").toLongLong(), text.sliced(end + 1).toInt() - decimals};
}

QList<Decimal> roundValues(double min, double max, int most)
{
    const double width = max - min;
    if (!std::isfinite(width) || width < 0)
        return {};
    if (width == 0)
        return {shortestOf(min)};
    // From a step with ten or more multiples to one with at most one.
    const int decade = int(std::floor(std::log10(width)));
    QList<Decimal> finer;
    for (int exponent = decade - 1; exponent <= decade + 1; ++exponent) {
        for (const Decimal &step :
             {Decimal{1, exponent}, {2, exponent}, {25, exponent - 1}, {5, exponent}}) {
            const std::optional<QList<Decimal>> found = multiplesIn(min, max, step);
            if (!found || found->size() > mostTicks)
                continue;
            if (found->size() < leastTicks && !finer.isEmpty())
                return finer;
            if (found->size() <= most)
                return *found;
            finer = *found;
        }
    }
    return finer;
}

QString fixedText(const Decimal &decimal, int decimals)
{
    QByteArray text = QByteArray::number(std::abs(decimal.digits));
    text += QByteArray(decimal.digits == 0 ? 0 : decimal.exponent + decimals, '0');
    text = text.rightJustified(decimals + 1, '0');
    if (decimals > 0)
        text.insert(text.size() - decimals, '.');
    return QString::fromLatin1(decimal.digits < 0 ? '-' + text : text);
}

QString superscript(int number)
{
    static constexpr QChar digits[] = {u'⁰', u'¹', u'²', u'³', u'⁴', u'⁵', u'⁶', u'⁷', u'⁸', u'⁹'};
    QString text;
    const QByteArray characters = QByteArray::number(number);
    for (const char c : characters)
        text += c == '-' ? QChar(u'⁻') : digits[c - '0'];
    return text;
}

// The power of ten of the first digit of the largest number.
int magnitudeOf(const QList<Decimal> &decimals)
{
    qint64 largest = 0;
    for (const Decimal &decimal : decimals)
        largest = std::max<qint64>(largest, std::abs(decimal.digits));
    return int(QByteArray::number(largest).size()) - 1 + decimals.first().exponent;
}

QStringList plainLabels(const QList<Decimal> &decimals)
{
    QStringList labels;
    for (const Decimal &decimal : decimals)
        labels.append(fixedText(decimal, std::max(2, -decimal.exponent)));
    return labels;
}

QStringList powerLabels(const QList<Decimal> &decimals, int power)
{
    QStringList labels;
    for (const Decimal &decimal : decimals) {
        const Decimal factor{decimal.digits, decimal.exponent - power};
        labels.append(decimal.digits == 0 ? QStringLiteral("0")
                                          : fixedText(factor, -factor.exponent)
                                                + QStringLiteral("×10") + superscript(power));
    }
    return labels;
}

qsizetype longest(const QStringList &labels)
{
    qsizetype most = 0;
    for (const QString &label : labels)
        most = std::max(most, label.size());
    return most;
}

// The decimals must have the same exponent.
QStringList labelsOf(const QList<Decimal> &decimals)
{
    constexpr int large = 6;
    constexpr int small = -4;
    if (decimals.isEmpty())
        return {};
    QStringList plain = plainLabels(decimals);
    const int power = magnitudeOf(decimals);
    if (power > small && power < large)
        return plain;
    QStringList powers = powerLabels(decimals, power);
    return power < 0 || longest(powers) < longest(plain) ? powers : plain;
}

} // namespace

AxisTicks axisTicks(double min, double max, int most)
{
    const QList<Decimal> decimals = roundValues(min, max, most);
    AxisTicks ticks;
    for (const Decimal &decimal : decimals)
        ticks.values.append(valueOf(decimal));
    ticks.labels = labelsOf(decimals);
    return ticks;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/numbers.h"

#include <QLocale>

#include <charconv>
#include <cmath>

std::optional<double> numberIn(QByteArrayView text)
{
    text = text.trimmed();
    if (text.startsWith('+') && text.size() > 1 && text[1] != '-')
        text = text.sliced(1);
    double value = 0;
    const char *const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

QByteArray shortestText(double value)
{
    return QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
}

double rounded(double value)
{
    constexpr int digits = 12;
    return QByteArray::number(value, 'e', digits - 1).toDouble();
}

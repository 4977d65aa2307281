// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/numbertext.h"

#include "spectrum/points.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace
{

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

NumberForm formOf(QByteArrayView raw)
{
    // Qt writes the shorter form, which is 1e-04 for small numbers and may have an exponent for
    // large ones.
    constexpr int mostLeadingZeros = 2;
    constexpr int mostWholeDigits = 6;
    int significant = 0;  // up to the last digit that is not 0
    int digits = 0;       // from the first digit that is not 0
    int whole = 0;        // digits before the point, from the first that is not 0
    int leadingZeros = 0; // behind the point
    bool point = false;
    bool exponent = false;
    char last = '0';
    for (const char c : raw) {
        if (isDigit(c)) {
            if (c != '0')
                significant = ++digits;
            else if (digits > 0)
                ++digits;
            else if (point)
                ++leadingZeros;
            whole += !point && digits > 0;
            last = c;
        } else if (c == '.') {
            point = true;
        } else if (c != '-') {
            exponent = true;
            break;
        }
    }
    const bool isNegativeZero = significant == 0 && raw.startsWith('-');
    return {significant, !exponent && !isNegativeZero && !(point && last == '0')
                             && leadingZeros <= mostLeadingZeros && whole <= mostWholeDigits};
}

std::optional<double> valueOf(QByteArrayView raw)
{
    double value = 0;
    const auto [end, error] = std::from_chars(raw.begin(), raw.end(), value);
    // Zero loses nothing, whatever its exponent.
    if (error == std::errc() || formOf(raw).significantDigits == 0)
        return error == std::errc() ? value : 0.0;
    return std::nullopt;
}

double lastDigitOf(QByteArrayView raw)
{
    int exponent = 0;
    const qsizetype e = raw.toByteArray().toLower().indexOf('e');
    if (e >= 0)
        exponent = raw.sliced(e + 1).toByteArray().toInt();
    const QByteArrayView digits = e >= 0 ? raw.first(e) : raw;
    const qsizetype point = digits.indexOf('.');
    const auto decimals = static_cast<int>(point >= 0 ? digits.size() - point - 1 : 0);
    return std::pow(10.0, exponent - decimals);
}

bool losesDigits(QByteArrayView raw, double value)
{
    constexpr int mostMeasuredDigits = 12;
    constexpr double computation = 1e-12; // relative
    const int digits = formOf(raw).significantDigits;
    if (digits <= keptDigits)
        return false;
    return digits <= mostMeasuredDigits
           || std::abs(loadedNumber(value) - value) > computation * std::abs(value);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/asdf.h"

#include "exchange/numbers.h"

#include <QByteArray>

#include <cmath>
#include <limits>

namespace
{

enum class Form { Plain, Squeezed, Difference, Repeat };

struct Token {
    Form form;
    QByteArray digits; // with the sign and the first digit decoded
};

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The form and the signed first digit that a letter at the start of a number stands for.
struct Lead {
    Form form;
    int digit;
};

std::optional<Lead> leadOf(char c)
{
    if (c == '@')
        return Lead{Form::Squeezed, 0};
    if (c >= 'A' && c <= 'I')
        return Lead{Form::Squeezed, c - 'A' + 1};
    if (c >= 'a' && c <= 'i')
        return Lead{Form::Squeezed, -(c - 'a' + 1)};
    if (c == '%')
        return Lead{Form::Difference, 0};
    if (c >= 'J' && c <= 'R')
        return Lead{Form::Difference, c - 'J' + 1};
    if (c >= 'j' && c <= 'r')
        return Lead{Form::Difference, -(c - 'j' + 1)};
    if (c >= 'S' && c <= 'Z')
        return Lead{Form::Repeat, c - 'S' + 1};
    if (c == 's')
        return Lead{Form::Repeat, 9};
    return std::nullopt;
}

class Scanner
{
public:
    explicit Scanner(QByteArrayView line) : m_rest(line) {}

    // The next number's text; nothing at the end or before something else.
    std::optional<Token> next()
    {
        while (!m_rest.isEmpty() && QByteArrayView(" \t,;").contains(m_rest.front()))
            m_rest = m_rest.sliced(1);
        if (m_rest.isEmpty())
            return std::nullopt;
        const char first = m_rest.front();
        if (first == '?') {
            m_rest = m_rest.sliced(1);
            return Token{Form::Plain, "?"};
        }
        if (const std::optional<Lead> lead = leadOf(first)) {
            m_rest = m_rest.sliced(1);
            return Token{lead->form, QByteArray::number(lead->digit) + takeDigits()};
        }
        if (isDigit(first) || first == '+' || first == '-' || first == '.')
            return Token{Form::Plain, takePlain()};
        return std::nullopt;
    }

    [[nodiscard]] QByteArrayView rest() const { return m_rest; }

private:
    QByteArray takeDigits()
    {
        qsizetype end = 0;
        while (end < m_rest.size() && (isDigit(m_rest[end]) || m_rest[end] == '.'))
            ++end;
        return take(end);
    }

    QByteArray takePlain()
    {
        const QByteArray sign = take(QByteArrayView("+-").contains(m_rest.front()) ? 1 : 0);
        QByteArray number = sign + takeDigits();
        // "E" and a sign begin an exponent; "E" and a digit begin a squeezed number.
        const bool hasExponent = m_rest.size() > 2 && (m_rest[0] == 'E' || m_rest[0] == 'e')
                                 && (m_rest[1] == '+' || m_rest[1] == '-') && isDigit(m_rest[2]);
        if (hasExponent) {
            number += take(2);
            number += takeDigits();
        }
        return number;
    }

    QByteArray take(qsizetype size)
    {
        QByteArray taken = m_rest.first(size).toByteArray();
        m_rest = m_rest.sliced(size);
        return taken;
    }

    QByteArrayView m_rest;
};

double halfUnitOfLastDigit(const QByteArray &digits)
{
    const QByteArray mantissa = digits.split('E').first();
    const qsizetype point = mantissa.indexOf('.');
    const qsizetype decimals = point < 0 ? 0 : mantissa.size() - point - 1;
    return 0.5 * std::pow(10.0, -double(decimals));
}

AsdfError notANumber(const QByteArray &text)
{
    return {'"' + text.left(20) + "\" is not a number"};
}

// A limit that keeps a line of repeats from filling the memory.
constexpr double mostRepeats = 10'000'000;

} // namespace

std::variant<AsdfLine, AsdfError> readAsdfLine(QByteArrayView line)
{
    Scanner scanner(line);
    AsdfLine result;
    std::optional<Token> previous;
    bool hasX = false;
    while (const std::optional<Token> token = scanner.next()) {
        const bool isMissing = token->digits == "?";
        const std::optional<double> value =
            isMissing ? std::numeric_limits<double>::quiet_NaN() : numberIn(token->digits);
        if (!value)
            return notANumber(token->digits);
        if (!hasX) {
            if (token->form != Form::Plain || isMissing)
                return AsdfError{"the line does not begin with an abscissa"};
            result.x = *value;
            result.xPrecision = halfUnitOfLastDigit(token->digits);
            hasX = true;
            continue;
        }
        if (token->form == Form::Repeat) {
            if (!previous || !(*value >= 1 && *value <= mostRepeats))
                return AsdfError{"a count of repeats with nothing to repeat"};
            // A repeated difference is added again; the count includes the number before it.
            const double step =
                previous->form == Form::Difference ? numberIn(previous->digits).value_or(0) : 0;
            const auto repeats = static_cast<qsizetype>(std::ceil(*value));
            for (qsizetype i = 1; i < repeats; ++i)
                result.values.append(result.values.last() + step);
            continue;
        }
        if (token->form == Form::Difference) {
            if (result.values.isEmpty())
                return AsdfError{"a difference to nothing"};
            result.values.append(result.values.last() + *value);
        } else {
            result.values.append(*value);
        }
        previous = token;
    }
    if (!scanner.rest().isEmpty())
        return notANumber(scanner.rest().toByteArray());
    if (!hasX)
        return AsdfError{"the line is empty"};
    result.endsInDifference = previous && previous->form == Form::Difference;
    return result;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/inchiscanner.h"

void failInchi(const QString &message)
{
    throw InchiLayerError{message};
}

bool InchiScanner::atDigit() const
{
    return peek() >= QLatin1Char('0') && peek() <= QLatin1Char('9');
}

bool InchiScanner::take(char c)
{
    if (peek() != QLatin1Char(c))
        return false;
    m_text = m_text.sliced(1);
    return true;
}

QChar InchiScanner::takeAny()
{
    const QChar c = peek();
    if (!atEnd())
        m_text = m_text.sliced(1);
    return c;
}

int InchiScanner::number(int otherwise)
{
    constexpr int largest = 100'000;
    if (!atDigit())
        return otherwise;
    if (peek() == QLatin1Char('0'))
        failInchi(QStringLiteral("a number in it begins with 0"));
    int value = 0;
    while (atDigit()) {
        value = 10 * value + takeAny().digitValue();
        if (value > largest)
            failInchi(QStringLiteral("a number in it is too large"));
    }
    return value;
}

int InchiScanner::number()
{
    if (!atDigit())
        failInchi(atEnd() ? QStringLiteral("a number is missing at the end of a layer")
                          : QStringLiteral("\"%1\" stands where a number belongs").arg(peek()));
    return number(0);
}

void InchiScanner::expect(char c)
{
    if (take(c))
        return;
    const QLatin1Char expected(c);
    failInchi(atEnd()
                  ? QStringLiteral("\"%1\" is missing at the end of a layer").arg(expected)
                  : QStringLiteral("\"%1\" stands where \"%2\" belongs").arg(peek()).arg(expected));
}

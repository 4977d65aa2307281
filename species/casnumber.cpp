// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/casnumber.h"

#include <QRegularExpression>
#include <QStringList>

bool isValidCasNumber(const QString &cas)
{
    static const QRegularExpression form(QStringLiteral("^\\d{1,7}-\\d{2}-\\d$"));
    // "$" also matches before a line feed at the end of the text.
    if (cas.endsWith(QLatin1Char('\n')) || !form.match(cas).hasMatch())
        return false;

    // The check digit of the CAS Registry: the sum of the digits before it, read from the right and
    // multiplied by 1, 2, 3, ..., modulo 10.
    const QStringList parts = cas.split(QLatin1Char('-'));
    const QString digits = parts[0] + parts[1];
    int sum = 0;
    for (qsizetype i = 0; i < digits.size(); ++i)
        sum += digits[digits.size() - 1 - i].digitValue() * static_cast<int>(i + 1);
    return sum % 10 == parts[2].toInt();
}

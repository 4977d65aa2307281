// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/textcheck.h"

#include "check/markup.h"
#include "check/numbertext.h"
#include "check/recordcheck.h"

#include <QRegularExpression>

#include <algorithm>

namespace
{

Check checkOf(MarkupIssue::Kind kind)
{
    switch (kind) {
    case MarkupIssue::ForeignTag:
        return Check::MarkupTag;
    case MarkupIssue::Unbalanced:
        return Check::MarkupUnbalanced;
    case MarkupIssue::Lost:
        return Check::TextLost;
    case MarkupIssue::Invisible:
        return Check::InvisibleCharacter;
    }
    Q_UNREACHABLE();
}

// A number with one comma, perhaps with an uncertainty and a unit; no list of numbers.
QRegularExpressionMatch commaIn(const QString &text)
{
    static const QRegularExpression comma(
        QStringLiteral("^[<>~\u2248 ]*-?(\\d+),(\\d+)(\\s*(\u00b1|\\+/-)\\s*\\d+([.,]\\d+)?)?"
                       "\\s*[a-zA-Z]*$"));
    return comma.match(text);
}

void checkDecimalComma(const JsonValue &value, TextUse use, FindingList &findings)
{
    const QString text = plainText(value);
    const QRegularExpressionMatch match = commaIn(text);
    if (!match.hasMatch())
        return;
    const bool isEnergy = use == TextUse::Energy;
    // 1,200 K may be one thousand two hundred.
    const bool mayGroup = match.capturedLength(2) == 3 && match.captured(1) != QLatin1String("0");
    if (!isEnergy && mayGroup)
        return;
    findings.add(Check::DecimalComma, value,
                 QStringLiteral("%1 has a decimal comma").arg(quoted(text)),
                 QStringLiteral("Write %1.%2").arg(match.captured(1), match.captured(2)),
                 isEnergy ? Severity::Error : Severity::Warning);
}

} // namespace

void checkText(const JsonValue &value, TextUse use, FindingList &findings)
{
    if (!value || !value.isString())
        return;
    for (const MarkupIssue &issue : markupIssues(value.string(), use == TextUse::Lines))
        findings.add(checkOf(issue.kind), value,
                     QStringLiteral("In %1 %2").arg(quoted(value.key()), issue.message));
    if (use == TextUse::Energy || use == TextUse::Quantity)
        checkDecimalComma(value, use, findings);
}

bool hasDecimalComma(const QString &plain)
{
    return commaIn(plain).hasMatch();
}

QString plainText(const JsonValue &value)
{
    static const QRegularExpression tags(QStringLiteral("</?(sub|sup|br)\\b[^>]*>"));
    if (!value || !value.isString())
        return {};
    const QString text = value.string();
    // Looking for a tag behind the last ">" from every "<" would take the square of the length.
    const qsizetype end = text.lastIndexOf(QLatin1Char('>')) + 1;
    const QString plain = text.first(end).remove(tags) + QStringView(text).sliced(end);
    return plain.trimmed();
}

std::optional<EnergyText> energyOf(const QString &plain)
{
    static const QRegularExpression number(
        QStringLiteral("^([\\s<>~\u2248(]*)([+-]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][+-]?\\d+)?)"
                       "(?:\\((\\d{1,3})\\)$)?(.*)$"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = number.match(plain);
    // In "9,24" the number is not 9.
    if (!match.hasMatch() || match.capturedView(4).startsWith(QLatin1Char(',')))
        return std::nullopt;
    const QString digits = match.captured(2);
    const double lastDigit = lastDigitOf(digits.toLatin1());
    const double uncertainty = match.captured(3).toDouble() * lastDigit;
    return EnergyText{digits.toDouble(), std::max(lastDigit / 2, uncertainty),
                      match.capturedView(1).isEmpty() && match.capturedView(4).isEmpty()};
}

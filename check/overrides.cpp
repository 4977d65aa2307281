// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/overrides.h"

#include <algorithm>
#include <vector>

namespace
{

QRegularExpression patternOf(const QString &glob)
{
    QString pattern;
    for (qsizetype at = 0; at < glob.size(); ++at) {
        const QStringView rest = QStringView(glob).sliced(at);
        if (rest.startsWith(u"**/")) {
            pattern += QLatin1String("(?:.*/)?");
            at += 2;
        } else if (rest.startsWith(u"**")) {
            pattern += QLatin1String(".*");
            ++at;
        } else if (rest.front() == QLatin1Char('*')) {
            pattern += QLatin1String("[^/]*");
        } else if (rest.front() == QLatin1Char('?')) {
            pattern += QLatin1String("[^/]");
        } else {
            pattern += QRegularExpression::escape(rest.first(1));
        }
    }
    return QRegularExpression(QLatin1String("(?:^|/)") + pattern + QLatin1String("\\z"),
                              QRegularExpression::DotMatchesEverythingOption);
}

std::variant<Override, OverrideError> parseLine(const QString &text, int line)
{
    static const QRegularExpression form(
        QStringLiteral("^(?:\"([^\"]+)\"|(\\S+))\\s+(\\S+)(?:\\s+(.*))?$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return OverrideError{line, QStringLiteral("a line is: GLOB CHECK-ID REASON")};
    const QString id = match.captured(3);
    const std::optional<Check> check = checkOfId(id);
    if (!check)
        return OverrideError{line, QStringLiteral("there is no check \"%1\"").arg(id)};
    if (*check == Check::Unreadable)
        return OverrideError{line, QStringLiteral("what cannot be read is always said")};
    if (match.captured(4).isEmpty())
        return OverrideError{line, QStringLiteral("the reason is missing")};
    const QString glob = match.captured(1) + match.captured(2);
    return Override{patternOf(glob), *check, text, line};
}

} // namespace

std::variant<QList<Override>, OverrideError> parseOverrides(const QByteArray &text)
{
    QList<Override> overrides;
    const QStringList lines = QString::fromUtf8(text).split(QLatin1Char('\n'));
    for (int number = 1; const QString &each : lines) {
        const QString line = each.trimmed();
        if (!line.isEmpty() && !line.startsWith(QLatin1Char('#'))) {
            auto parsed = parseLine(line, number);
            if (const auto *error = std::get_if<OverrideError>(&parsed))
                return *error;
            overrides.append(std::get<Override>(std::move(parsed)));
        }
        ++number;
    }
    return overrides;
}

void applyOverrides(const QList<Override> &overrides, const QString &name, QList<Finding> &findings)
{
    std::vector<bool> used(static_cast<std::size_t>(overrides.size()));
    findings.removeIf([&](const Finding &finding) {
        bool overridden = false;
        for (qsizetype i = 0; i < overrides.size(); ++i) {
            if (overrides[i].check != finding.check
                || !overrides[i].files.match(finding.path).hasMatch())
                continue;
            used[static_cast<std::size_t>(i)] = true;
            overridden = true;
        }
        return overridden;
    });
    for (qsizetype i = 0; i < overrides.size(); ++i) {
        if (!used[static_cast<std::size_t>(i)])
            findings.append({.check = Check::UnusedOverride,
                             .severity = infoOf(Check::UnusedOverride).severity,
                             .path = name,
                             .pointer = {},
                             .line = overrides[i].line,
                             .column = 1,
                             .message = QLatin1String("Nothing was found that this overrides: ")
                                        + overrides[i].text,
                             .hint = QStringLiteral("Delete the line."),
                             .source = {}});
    }
}

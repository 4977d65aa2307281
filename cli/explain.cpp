// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/checks.h"
#include "cli/command.h"
#include "cli/console.h"

#include <span>

namespace
{

constexpr char details[] =
    R"(Says of a check that stands in brackets behind a finding of "zoravel check" what it
looks for, why, how what it finds is mended, and gives an example. Without an ID it
lists all checks.

Examples:
  zoravel explain cas-check-digit
)";

QByteArray bytesOf(QLatin1String text)
{
    return {text.data(), text.size()};
}

// The text in indented lines of up to 80 characters.
QByteArray wrapped(QLatin1String text, int indent)
{
    constexpr qsizetype width = 80;
    QByteArray lines;
    QByteArray line;
    for (const QByteArray &word : bytesOf(text).split(' ')) {
        if (!line.isEmpty() && indent + line.size() + 1 + word.size() > width) {
            lines += QByteArray(indent, ' ') + line + '\n';
            line.clear();
        }
        line += line.isEmpty() ? word : ' ' + word;
    }
    return lines + QByteArray(indent, ' ') + line + '\n';
}

QByteArray explanation(const CheckInfo &info)
{
    constexpr int indent = 2;
    return bytesOf(info.id) + ": " + bytesOf(info.summary) + " ("
           + bytesOf(severityName(info.severity)) + ")\n\n" + wrapped(info.why, indent)
           + "\n  Mend: " + wrapped(info.mend, indent + 6).trimmed()
           + "\n\n  Example: " + wrapped(info.example, indent + 9).trimmed() + '\n';
}

void list(Console &console)
{
    constexpr qsizetype idWidth = 22;
    constexpr qsizetype severityWidth = 9;
    for (const CheckInfo &info : allChecks())
        console.out(bytesOf(info.id).leftJustified(idWidth)
                    + bytesOf(severityName(info.severity)).leftJustified(severityWidth)
                    + bytesOf(info.summary) + '\n');
}

int run(const Arguments &arguments, Console &console)
{
    bool isFirst = true;
    for (const QByteArray &id : arguments.operands()) {
        const std::optional<Check> check = checkOfId(QString::fromUtf8(id));
        if (!check)
            return usageError(console, explainCommand(),
                              {"there is no check " + id, closestTo(id, checkIds())});
        console.out((isFirst ? "" : "\n") + explanation(infoOf(*check)));
        isFirst = false;
    }
    if (isFirst)
        list(console);
    return exitFine;
}

} // namespace

const Command &explainCommand()
{
    static const Command command{
        "explain", "[ID...]", "Explain the checks", details, std::span<const Option>(), run};
    return command;
}

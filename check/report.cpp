// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLatin1String>

#include <algorithm>

namespace
{

QByteArray counted(qsizetype count, const char *what)
{
    return QByteArray::number(count) + ' ' + what + (count == 1 ? "" : "s");
}

// A text for one line of a terminal, with escapes for control characters, which could move its
// cursor.
QByteArray shown(const QString &text)
{
    constexpr int hexadecimal = 16;
    QString escaped;
    for (const QChar c : text) {
        if (c.category() == QChar::Other_Control)
            escaped += QStringLiteral("\\x%1").arg(c.unicode(), 2, hexadecimal, QLatin1Char('0'));
        else
            escaped += c;
    }
    return escaped.toUtf8();
}

QByteArray findingLine(const Finding &finding, bool coloured)
{
    constexpr const char *colours[] = {"\x1b[36m", "\x1b[33m", "\x1b[31m"};
    const auto paint = [&](const QByteArray &text, const char *colour) {
        return coloured ? colour + text + "\x1b[0m" : text;
    };
    const QLatin1String name = severityName(finding.severity);
    const QByteArray place = shown(finding.path) + ':' + QByteArray::number(finding.line) + ':'
                             + QByteArray::number(finding.column) + ':';
    const QLatin1String id = infoOf(finding.check).id;
    return paint(place, "\x1b[1m") + ' '
           + paint(QByteArray(name.data(), name.size()) + ':',
                   colours[static_cast<int>(finding.severity)])
           + ' ' + shown(finding.message) + " [" + QByteArray(id.data(), id.size()) + "]\n";
}

// The data of a workflow command, and one of its properties.
QByteArray commandData(QByteArray text)
{
    return text.replace('%', "%25").replace('\r', "%0D").replace('\n', "%0A");
}

QByteArray commandProperty(const QByteArray &text)
{
    return commandData(text).replace(':', "%3A").replace(',', "%2C");
}

QByteArray workflowCommand(const Finding &finding)
{
    constexpr const char *commands[] = {"notice", "warning", "error"};
    const QLatin1String id = infoOf(finding.check).id;
    const QString text = finding.hint.isEmpty()
                             ? finding.message
                             : finding.message + QLatin1String(". ") + finding.hint;
    return QByteArray("::") + commands[static_cast<int>(finding.severity)]
           + " file=" + commandProperty(finding.plainPath().toUtf8()) + ",line="
           + QByteArray::number(finding.line) + ",col=" + QByteArray::number(finding.column)
           + ",title=" + QByteArray(id.data(), id.size()) + "::" + commandData(text.toUtf8())
           + '\n';
}

} // namespace

Totals totalsOf(const QList<Finding> &findings)
{
    const auto count = [&](Severity severity) {
        return std::count_if(findings.begin(), findings.end(),
                             [&](const Finding &finding) { return finding.severity == severity; });
    };
    return {count(Severity::Error), count(Severity::Warning), count(Severity::Note)};
}

QByteArray totalsLine(const Report &report)
{
    const Totals totals = totalsOf(report.findings);
    return counted(totals.errors, "error") + ", " + counted(totals.warnings, "warning") + " and "
           + counted(totals.notes, "note") + " in " + counted(report.files, "file");
}

QByteArray textReport(const Report &report, bool coloured)
{
    QByteArray text;
    for (const Finding &finding : report.findings) {
        text += findingLine(finding, coloured);
        if (!finding.source.isEmpty())
            text += "    " + finding.source.toUtf8().replace('\n', "\n    ") + '\n';
    }
    return text.isEmpty() ? text : text + totalsLine(report) + '\n';
}

QByteArray jsonReport(const Report &report)
{
    QJsonArray findings;
    for (const Finding &finding : report.findings)
        findings.append(QJsonObject{{QStringLiteral("id"), infoOf(finding.check).id},
                                    {QStringLiteral("severity"), severityName(finding.severity)},
                                    {QStringLiteral("path"), finding.path},
                                    {QStringLiteral("pointer"), finding.pointer},
                                    {QStringLiteral("line"), finding.line},
                                    {QStringLiteral("column"), finding.column},
                                    {QStringLiteral("message"), finding.message},
                                    {QStringLiteral("hint"), finding.hint}});
    const Totals totals = totalsOf(report.findings);
    const QJsonObject root{
        {QStringLiteral("tool"),
         QJsonObject{{QStringLiteral("name"), QStringLiteral("zoravel check")},
                     {QStringLiteral("version"), QString::fromLatin1(report.toolVersion)}}},
        {QStringLiteral("totals"), QJsonObject{{QStringLiteral("files"), report.files},
                                               {QStringLiteral("errors"), totals.errors},
                                               {QStringLiteral("warnings"), totals.warnings},
                                               {QStringLiteral("notes"), totals.notes}}},
        {QStringLiteral("findings"), findings}};
    return QJsonDocument(root).toJson();
}

QByteArray githubReport(const Report &report)
{
    constexpr qsizetype mostAnnotations = 10; // of one severity that a step may have
    QByteArray commands;
    QByteArray log;
    qsizetype hidden = 0;
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        qsizetype count = 0;
        for (const Finding &finding : report.findings) {
            if (finding.severity != severity)
                continue;
            if (++count <= mostAnnotations) {
                commands += workflowCommand(finding);
            } else {
                log += findingLine(finding, false);
                ++hidden;
            }
        }
    }
    if (report.findings.isEmpty())
        return {};
    if (hidden > 0)
        log = "Beyond what GitHub shows beside the files, " + counted(hidden, "finding") + ":\n"
              + log;
    return commands + log + totalsLine(report) + '\n';
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLatin1String>
#include <QUrl>

namespace
{

QJsonObject textObject(const QString &text)
{
    return {{QStringLiteral("text"), text}};
}

QJsonArray rules()
{
    QJsonArray rules;
    for (const CheckInfo &info : allChecks()) {
        // The format requires full stops in descriptions.
        const QString summary = QString(info.summary).at(0).toUpper()
                                + QString(info.summary).sliced(1) + QLatin1Char('.');
        rules.append(
            QJsonObject{{QStringLiteral("id"), info.id},
                        {QStringLiteral("shortDescription"), textObject(summary)},
                        {QStringLiteral("fullDescription"), textObject(info.why)},
                        {QStringLiteral("help"),
                         textObject(info.mend + QLatin1String("\n\nExample: ") + info.example)},
                        {QStringLiteral("defaultConfiguration"),
                         QJsonObject{{QStringLiteral("level"), severityName(info.severity)}}}});
    }
    return rules;
}

QJsonObject result(const Finding &finding)
{
    // A relative reference must not look as if it had a scheme.
    const QString uri = QString::fromLatin1(QUrl::toPercentEncoding(finding.plainPath(), "/"));
    QJsonObject location{
        {QStringLiteral("physicalLocation"),
         QJsonObject{
             {QStringLiteral("artifactLocation"), QJsonObject{{QStringLiteral("uri"), uri}}},
             {QStringLiteral("region"),
              QJsonObject{{QStringLiteral("startLine"), finding.line},
                          {QStringLiteral("startColumn"), finding.column}}}}}};
    if (!finding.pointer.isEmpty())
        location.insert(
            QStringLiteral("logicalLocations"),
            QJsonArray{QJsonObject{{QStringLiteral("fullyQualifiedName"), finding.pointer}}});
    QString text = finding.message + QLatin1Char('.');
    if (!finding.hint.isEmpty())
        text += QLatin1Char(' ') + finding.hint;
    return {{QStringLiteral("ruleId"), infoOf(finding.check).id},
            {QStringLiteral("ruleIndex"), static_cast<int>(finding.check)},
            {QStringLiteral("level"), severityName(finding.severity)},
            {QStringLiteral("message"), textObject(text)},
            {QStringLiteral("locations"), QJsonArray{location}}};
}

} // namespace

QByteArray sarifReport(const Report &report)
{
    QJsonArray results;
    for (const Finding &finding : report.findings)
        results.append(result(finding));
    const QJsonObject driver{{QStringLiteral("name"), QStringLiteral("zoravel")},
                             {QStringLiteral("version"), QString::fromLatin1(report.toolVersion)},
                             {QStringLiteral("rules"), rules()}};
    const QJsonObject run{{QStringLiteral("tool"), QJsonObject{{QStringLiteral("driver"), driver}}},
                          {QStringLiteral("columnKind"), QStringLiteral("unicodeCodePoints")},
                          {QStringLiteral("results"), results}};
    const QJsonObject root{{QStringLiteral("$schema"),
                            QStringLiteral("https://json.schemastore.org/sarif-2.1.0.json")},
                           {QStringLiteral("version"), QStringLiteral("2.1.0")},
                           {QStringLiteral("runs"), QJsonArray{run}}};
    return QJsonDocument(root).toJson();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/databasecheck.h"

#include "check/comparison.h"
#include "check/memberreader.h"
#include "check/recordcheck.h"
#include "database/databasecompiler.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"

#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <functional>
#include <variant>

namespace
{

class DatabaseChecker
{
public:
    DatabaseChecker(const QString &name, QIODevice &device, const FileCheckOptions &options)
        : m_name(name), m_reader(device), m_options(options), m_comparison(options.enabled, {name})
    {
    }

    std::optional<FileResult> check()
    {
        bool isReadable = true;
        while (isReadable && m_reader.next())
            isReadable = checkMember();
        FindingList around(m_name, m_none, m_options.enabled);
        const auto &error = m_reader.error();
        if (m_reader.hasFailed())
            reportUnreadable(QStringLiteral("The file cannot be read: reading it failed"), {},
                             around);
        else if (error)
            around.addUnread(Check::JsonSyntax, {{}, error->position.line, error->position.column},
                             error->message);
        else if (isReadable && m_type != databaseFileType)
            return std::nullopt;
        const bool isWhole = isReadable && !error && !m_reader.hasFailed();
        m_findings.append(around.take());
        sortByPlace(m_findings);
        return FileResult{std::move(m_findings),
                          {isWhole ? FileFacts::Database : FileFacts::Other, {}}};
    }

private:
    // Returns whether reading on makes sense.
    bool checkMember()
    {
        const QString key = m_reader.key();
        const TextPosition position = m_reader.keyPosition();
        const Place place{QLatin1Char('/') + key, position.line, position.column};
        const std::optional<QByteArray> bytes = m_reader.take(largestJsonFile);
        // The text begins with an added brace.
        FindingList findings(m_name, bytes ? *bytes : m_none, m_options.enabled,
                             {position.line, position.column - 1});
        const bool isReadable =
            bytes ? checkText(*bytes, key, findings) : reportSize(place, findings);
        const auto before = m_keys.constFind(key);
        if (before != m_keys.cend())
            reportDuplicateKey(key, {place.pointer, before->line, before->column}, findings);
        m_keys.insert(key, position);
        m_findings.append(findings.take());
        return isReadable;
    }

    bool reportSize(const Place &place, FindingList &findings)
    {
        reportUnreadable(
            QStringLiteral("The entry is larger than %1 MB").arg(largestJsonFile >> 20), place,
            findings);
        return true;
    }

    bool checkText(const QByteArray &bytes, const QString &key, FindingList &findings)
    {
        const auto text = parsedText(bytes, findings);
        if (!text) // behind a wrong byte or number there may be a next entry
            return !findings.has(Check::JsonSyntax);
        checkDuplicateKeys(text->root(), findings);
        const JsonValue member = text->root().firstChild();
        if (key == typeKey)
            m_type = member.string();
        else if (key == headerKey)
            checkHeader(member, findings);
        else if (isEntryKey(key))
            checkEntry(member, findings);
        else
            reportUnknownKey(member, findings);
        checkNumbers(text->root(), findings);
        return true;
    }

    static void checkHeader(const JsonValue &header, FindingList &findings)
    {
        static constexpr std::array known{KnownKey{QLatin1String("Version"), JsonKind::String},
                                          KnownKey{QLatin1String("Database"), JsonKind::String},
                                          KnownKey{QLatin1String("Title"), JsonKind::String},
                                          KnownKey{QLatin1String("Date"), JsonKind::String}};
        if (checkKind(header, JsonKind::Object, findings))
            checkMembers(header, known, findings);
    }

    void checkEntry(const JsonValue &entry, FindingList &findings)
    {
        if (!checkKind(entry, JsonKind::Object, findings))
            return;
        std::vector<Fact> facts;
        checkSpeciesObject(entry, Envelope::Entry, m_options.today, findings, facts);
        m_findings.append(m_comparison.add(0, facts));
    }

    static void reportUnknownKey(const JsonValue &member, FindingList &findings)
    {
        static constexpr std::array known{KnownKey{typeKey, JsonKind::String},
                                          KnownKey{headerKey, JsonKind::Object},
                                          KnownKey{QLatin1String("Entry1"), JsonKind::Object}};
        findings.addAtKey(Check::UnknownKey, member,
                          QStringLiteral("A database has no key %1").arg(quoted(member.key())),
                          meantHint(similarKey(member.key(), known)));
    }

    QString m_name;
    const QByteArray m_none;
    MemberReader m_reader;
    const FileCheckOptions &m_options;
    Comparison m_comparison;
    QHash<QString, TextPosition> m_keys;
    QString m_type;
    QList<Finding> m_findings;
};

QString nameOf(const QJsonObject &entry)
{
    return quoted(entry.value(speciesKey).toObject().value(keyOf(SpeciesColumn::Name)).toString());
}

// Passes each entry of the database to take. False if the file cannot be read.
bool takeEntries(const QString &database,
                 const std::function<void(const QString &key, const QJsonObject &entry)> &take)
{
    QFile file(database);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    MemberReader reader(file);
    while (reader.next()) {
        const QString key = reader.key();
        if (!isEntryKey(key))
            continue;
        const QByteArray text = reader.take(largestJsonFile).value_or(QByteArray());
        take(key, QJsonDocument::fromJson(text).object().value(key).toObject());
    }
    return !reader.hasFailed();
}

} // namespace

std::optional<FileResult> checkDatabase(const QString &name, QIODevice &device,
                                        const FileCheckOptions &options)
{
    return DatabaseChecker(name, device, options).check();
}

std::optional<QString> databaseDifference(const QString &database,
                                          const QList<SpeciesSource> &species)
{
    // The number of entries of each content that have no file yet.
    QHash<QByteArray, int> unmatched;
    const bool isRead = takeEntries(database, [&](const QString &, const QJsonObject &entry) {
        ++unmatched[entryDigest(entry)];
    });
    if (!isRead)
        return std::nullopt;
    QStringList missing;
    for (const SpeciesSource &source : species) {
        const auto entry = readEntry(source.path);
        if (!std::holds_alternative<QJsonObject>(entry))
            continue;
        const QByteArray digest = entryDigest(std::get<QJsonObject>(entry));
        if (!unmatched.contains(digest))
            missing.append(source.name);
        else if (--unmatched[digest] == 0)
            unmatched.remove(digest);
    }
    QStringList surplus;
    const auto noteSurplus = [&](const QString &key, const QJsonObject &entry) {
        if (unmatched.contains(entryDigest(entry)))
            surplus.append(key + QLatin1Char(' ') + nameOf(entry));
    };
    if (!unmatched.isEmpty() && !takeEntries(database, noteSurplus))
        return std::nullopt;
    const auto listed = [](const QStringList &names) {
        return names.size() == 1 ? names.first()
                                 : QStringLiteral("%1 and %2 more")
                                       .arg(names.first(), QString::number(names.size() - 1));
    };
    QStringList parts;
    if (!missing.isEmpty())
        parts.append(QStringLiteral("it does not hold %1 as it is").arg(listed(missing)));
    if (!surplus.isEmpty())
        parts.append(QStringLiteral("no species file holds %1").arg(listed(surplus)));
    if (parts.isEmpty())
        return std::nullopt;
    return parts.join(QStringLiteral("; "));
}

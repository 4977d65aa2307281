// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/databasecheck.h"

#include "check/recordcheck.h"
#include "database/databasecompiler.h"
#include "species/jsonfile.h"
#include "species/speciesfile.h"

#include <QCryptographicHash>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <array>

namespace
{

bool isEntryKey(const QString &key)
{
    static const QRegularExpression form(QStringLiteral("^Entry[1-9][0-9]*$"));
    return !key.endsWith(QLatin1Char('\n')) && form.match(key).hasMatch();
}

QByteArray digestOf(const QJsonObject &object)
{
    return QCryptographicHash::hash(QJsonDocument(object).toJson(QJsonDocument::Compact),
                                    QCryptographicHash::Sha256);
}

QString nameOf(const QJsonObject &entry)
{
    return quoted(entry.value(speciesKey).toObject().value(QLatin1String("Name")).toString());
}

} // namespace

void checkDatabaseFile(const JsonValue &root, FindingList &findings)
{
    static constexpr std::array known{KnownKey{typeKey, JsonKind::String},
                                      KnownKey{headerKey, JsonKind::Object},
                                      KnownKey{QLatin1String("Entry1"), JsonKind::Object}};
    static constexpr std::array inHeader{KnownKey{QLatin1String("Version"), JsonKind::String},
                                         KnownKey{QLatin1String("Database"), JsonKind::String},
                                         KnownKey{QLatin1String("Title"), JsonKind::String},
                                         KnownKey{QLatin1String("Date"), JsonKind::String}};
    for (JsonValue member = root.firstChild(); member; member = member.nextSibling()) {
        const QString key = member.key();
        if (key == typeKey)
            continue;
        if (isEntryKey(key) || key == headerKey) {
            if (checkKind(member, JsonKind::Object, findings) && key == headerKey)
                checkMembers(member, inHeader, findings);
            continue;
        }
        const QString meant = similarKey(key, known);
        findings.addAtKey(Check::UnknownKey, member,
                          QStringLiteral("A database has no key %1").arg(quoted(key)),
                          meantHint(meant));
    }
}

std::optional<QString> databaseDifference(const QString &database,
                                          const QList<SpeciesSource> &species)
{
    const std::optional<QJsonObject> file = readJsonObject(database);
    if (!file)
        return std::nullopt;
    // How many entries are still without their file.
    QHash<QByteArray, int> unmatched;
    for (auto member = file->begin(); member != file->end(); ++member) {
        if (isEntryKey(member.key()))
            ++unmatched[digestOf(member.value().toObject())];
    }
    QStringList missing;
    for (const SpeciesSource &source : species) {
        std::optional<QJsonObject> object = readJsonObject(source.path);
        if (!object)
            continue;
        object->remove(typeKey);
        const QByteArray digest = digestOf(*object);
        if (!unmatched.contains(digest))
            missing.append(source.name);
        else if (--unmatched[digest] == 0)
            unmatched.remove(digest);
    }
    QStringList surplus;
    for (auto member = file->begin(); member != file->end(); ++member) {
        const QJsonObject entry = member.value().toObject();
        if (isEntryKey(member.key()) && unmatched.contains(digestOf(entry)))
            surplus.append(member.key() + QLatin1Char(' ') + nameOf(entry));
    }
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

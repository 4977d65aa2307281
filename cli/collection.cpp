// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/collection.h"

#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/readfile.h"
#include "database/databasecompiler.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "spectrum/spectrumfile.h"

#include <QCryptographicHash>
#include <QHash>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace
{

QByteArray textOf(const QJsonObject &object, const char *key)
{
    return plainText(object.value(QLatin1String(key)).toString()).toUtf8();
}

CollectionEntry recognised(const QByteArray &name, QJsonObject object)
{
    CollectionEntry entry;
    entry.name = name;
    entry.kind = object.take(typeKey).toString(speciesFileType).toUtf8();
    entry.digest = QCryptographicHash::hash(QJsonDocument(object).toJson(QJsonDocument::Compact),
                                            QCryptographicHash::Sha256);
    const QJsonObject profile = object.value(speciesKey).toObject();
    const bool isSpecies = entry.kind == QByteArray(speciesFileType.data());
    entry.cas = textOf(profile, "CAS");
    entry.inchi = textOf(profile, "InChI");
    entry.species = isSpecies ? textOf(profile, "Name") : textOf(object, "Title");
    return entry;
}

// Pairs step by step those that are still free.
class Pairing
{
public:
    Pairing(const QList<CollectionEntry> &before, const QList<CollectionEntry> &after)
        : m_before(before),
          m_after(after),
          m_partners(static_cast<std::size_t>(before.size()), nullptr),
          m_taken(static_cast<std::size_t>(after.size()), false)
    {
    }

    // Those of one kind whose key is the same; empty keys are none.
    void pairBy(QByteArray (*key)(const CollectionEntry &))
    {
        QHash<QByteArray, QList<qsizetype>> free;
        for (qsizetype j = 0; j < m_after.size(); ++j) {
            if (!m_taken[static_cast<std::size_t>(j)] && !key(m_after[j]).isEmpty())
                free[m_after[j].kind + key(m_after[j])].append(j);
        }
        for (qsizetype i = 0; i < m_before.size(); ++i) {
            const CollectionEntry *&partner = m_partners[static_cast<std::size_t>(i)];
            const auto found = free.find(m_before[i].kind + key(m_before[i]));
            if (partner || key(m_before[i]).isEmpty() || found == free.end() || found->isEmpty())
                continue;
            const qsizetype j = found->takeFirst();
            partner = &m_after[j];
            m_taken[static_cast<std::size_t>(j)] = true;
        }
    }

    [[nodiscard]] EntryPairs result() const
    {
        EntryPairs result;
        for (qsizetype i = 0; i < m_before.size(); ++i) {
            if (const CollectionEntry *partner = m_partners[static_cast<std::size_t>(i)])
                result.pairs.emplaceBack(&m_before[i], partner);
            else
                result.removed.append(&m_before[i]);
        }
        for (qsizetype j = 0; j < m_after.size(); ++j) {
            if (!m_taken[static_cast<std::size_t>(j)])
                result.added.append(&m_after[j]);
        }
        return result;
    }

private:
    const QList<CollectionEntry> &m_before;
    const QList<CollectionEntry> &m_after;
    std::vector<const CollectionEntry *> m_partners; // of those before
    std::vector<bool> m_taken;                       // of those after
};

} // namespace

std::optional<QJsonObject> CollectionEntry::read() const
{
    return path.isEmpty() ? std::optional(object) : readJsonObject(path);
}

Collection collectionInFolder(const QByteArray &folder, Console &console)
{
    Collection collection;
    collection.isFolder = true;
    const InputList list = listInputs({folder});
    collection.isWhole = !nameBadFolders(list, console);
    Progress progress(console, "Reading", list.files.size());
    for (qsizetype i = 0; i < list.files.size(); ++i) {
        progress.advance(i);
        const InputFile &input = list.files[i];
        const std::optional<QJsonObject> object = readObject(input, console);
        if (object && isPassedOver(input, *object, PassOver::Databases))
            continue;
        if (!object || !spectraOf(*object)) {
            if (object)
                console.error(shownName(input.name) + ": neither a species nor a spectrum file");
            collection.isWhole = false;
            continue;
        }
        const qsizetype prefix = folder.size() + (folder.endsWith('/') ? 0 : 1);
        collection.entries.append(recognised(input.name.sliced(prefix), *object));
        collection.entries.last().path = input.path;
    }
    return collection;
}

Collection collectionInDatabase(const QJsonObject &database)
{
    static const QRegularExpression form(QStringLiteral("^Entry([0-9]+)\\z"));
    Collection collection;
    collection.header = database.value(headerKey).toObject();
    collection.rest = database;
    collection.rest.remove(typeKey);
    collection.rest.remove(headerKey);
    QList<std::pair<qulonglong, QString>> keys; // the entries by their numbers
    for (const QString &key : database.keys()) {
        if (const QRegularExpressionMatch match = form.match(key); match.hasMatch())
            keys.append({match.captured(1).toULongLong(), key});
    }
    std::sort(keys.begin(), keys.end());
    for (const auto &[number, key] : std::as_const(keys)) {
        const QJsonObject object = collection.rest.take(key).toObject();
        collection.entries.append(recognised(key.toUtf8(), object));
        collection.entries.last().object = object;
    }
    return collection;
}

EntryPairs pairedEntries(const Collection &before, const Collection &after)
{
    Pairing pairing(before.entries, after.entries);
    if (before.isFolder && after.isFolder)
        pairing.pairBy([](const CollectionEntry &entry) { return entry.name; });
    pairing.pairBy(
        [](const CollectionEntry &entry) -> QByteArray { return entry.name + entry.digest; });
    pairing.pairBy([](const CollectionEntry &entry) { return entry.digest; });
    pairing.pairBy([](const CollectionEntry &entry) { return entry.cas; });
    pairing.pairBy([](const CollectionEntry &entry) { return entry.inchi; });
    pairing.pairBy([](const CollectionEntry &entry) { return entry.species; });
    return pairing.result();
}

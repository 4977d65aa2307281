// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/collection.h"

#include "check/memberreader.h"
#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/readfile.h"
#include "database/databasecompiler.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumfile.h"
#include "spectrum/spectrumobject.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <map>
#include <utility>
#include <vector>

namespace
{

QByteArray textOf(const QJsonObject &object, QLatin1String key)
{
    return plainText(object.value(key).toString()).toUtf8();
}

CollectionEntry recognised(const QByteArray &name, QJsonObject object)
{
    CollectionEntry entry;
    entry.name = name;
    entry.kind = object.take(typeKey).toString(speciesFileType).toUtf8();
    entry.digest = entryDigest(object);
    const QJsonObject profile = object.value(speciesKey).toObject();
    const bool isSpecies = entry.kind == QByteArray(speciesFileType.data());
    entry.cas = textOf(profile, keyOf(SpeciesColumn::Cas));
    entry.inchi = textOf(profile, keyOf(SpeciesColumn::Inchi));
    entry.species = isSpecies ? textOf(profile, keyOf(SpeciesColumn::Name))
                              : textOf(object, keyOf(SpectrumColumn::Title));
    return entry;
}

// Takes the entries of a database one by one. Of two with the same key the last counts, as for
// every reader of objects.
class DatabaseCollector
{
public:
    DatabaseCollector(const InputFile &database, Console &console)
        : m_database(database), m_console(console), m_file(database.path), m_reader(m_file)
    {
    }

    std::optional<Collection> collect()
    {
        if (!m_file.open(QIODevice::ReadOnly))
            return fail(whyUnreadable(m_database, FileProblem::Inaccessible));
        while (m_reader.next()) {
            if (!takeMember())
                return std::nullopt;
        }
        if (m_reader.hasFailed())
            return fail("cannot be read");
        if (const auto &error = m_reader.error())
            return fail("line " + QByteArray::number(error->position.line) + ": "
                        + error->message.toUtf8());
        for (auto &[key, entry] : m_entries)
            m_collection.entries.append(std::move(entry));
        return std::move(m_collection);
    }

private:
    std::nullopt_t fail(const QByteArray &reason)
    {
        m_console.error(shownName(m_database.name) + ": " + shownName(reason));
        return std::nullopt;
    }

    bool takeMember()
    {
        static const QRegularExpression form(QStringLiteral("^Entry([0-9]+)\\z"));
        const QByteArray name = m_reader.key().toUtf8();
        const qint64 offset = m_reader.offset();
        const std::optional<QByteArray> text = m_reader.take(largestJsonFile);
        if (!text)
            fail(name + ": too large");
        QJsonParseError error{};
        const QJsonObject member = QJsonDocument::fromJson(text.value_or("{}"), &error).object();
        if (error.error != QJsonParseError::NoError)
            fail(name + ": no JSON: " + error.errorString().toUtf8());
        if (!text || error.error != QJsonParseError::NoError)
            return false;
        const QString key = member.begin().key();
        const QRegularExpressionMatch match = form.match(key);
        if (match.hasMatch()) {
            CollectionEntry entry = recognised(name, member.begin().value().toObject());
            entry.path = m_database.path;
            entry.offset = offset;
            entry.size = m_reader.offset() - offset;
            m_entries.insert_or_assign({match.captured(1).toULongLong(), key}, std::move(entry));
        } else if (key == headerKey) {
            m_collection.header = member.begin().value().toObject();
        } else if (key != typeKey) {
            m_collection.rest.insert(key, member.begin().value());
        }
        return true;
    }

    const InputFile &m_database;
    Console &m_console;
    QFile m_file;
    MemberReader m_reader;
    Collection m_collection;
    std::map<std::pair<qulonglong, QString>, CollectionEntry> m_entries; // by their numbers
};

// Pairs the free entries step by step.
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

    // Pairs entries of one kind with the same key; an empty key matches none.
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
    if (size == 0)
        return readJsonObject(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(offset))
        return std::nullopt;
    // The colon stands between key and value.
    const QByteArray value = file.read(size).trimmed().mid(1);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson("[" + value + "]", &error);
    if (error.error != QJsonParseError::NoError)
        return std::nullopt;
    return document.array().at(0).toObject();
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
        if (!input.isNamed && isDatabaseFile(input.path))
            continue;
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

std::optional<Collection> collectionInDatabase(const InputFile &database, Console &console)
{
    return DatabaseCollector(database, console).collect();
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

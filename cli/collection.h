// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

class Console;
struct InputFile;

// An entry of a collection and how to recognise it. It is read when needed, so that two collections
// need not fit into memory.
struct CollectionEntry {
    QByteArray name;   // in the folder, with "/" between its parts, or the key in the database
    QString path;      // of the file or of the database
    qint64 offset = 0; // of its value in the database
    qint64 size = 0;   // of that, in bytes; 0 if the entry is a file of its own
    QByteArray kind;   // its "Type"; entries of databases are species
    QByteArray digest; // of all but its "Type"
    QByteArray cas;
    QByteArray inchi;
    QByteArray species; // its name, or the title of a spectrum, without markup

    // Nothing if the entry cannot be read any more.
    [[nodiscard]] std::optional<QJsonObject> read() const;
};

// The species and spectrum files of a folder and its subfolders, or the entries of a database.
struct Collection {
    QList<CollectionEntry> entries;
    QJsonObject header; // of a database
    QJsonObject rest;   // what else stands in the database
    bool isFolder = false;
    bool isWhole = true; // false if a file could not be read
};

// Reports files on standard error that cannot be read or do not belong to the collection.
[[nodiscard]] Collection collectionInFolder(const QByteArray &folder, Console &console);

// Nothing, and a message on standard error, if the database is broken: the rest would seem to be
// missing.
[[nodiscard]] std::optional<Collection> collectionInDatabase(const InputFile &database,
                                                             Console &console);

struct EntryPairs {
    QList<std::pair<const CollectionEntry *, const CollectionEntry *>> pairs;
    QList<const CollectionEntry *> removed;
    QList<const CollectionEntry *> added;
};

// Pairs the entries: in two folders by file name, then equal ones, then by CAS number, InChI and
// name of the species, in this order.
[[nodiscard]] EntryPairs pairedEntries(const Collection &before, const Collection &after);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDate>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLatin1String>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <variant>

inline constexpr QLatin1String databaseFileType("Database v1");
inline constexpr QLatin1String headerKey("Header");

// Whether key is that of an entry: "Entry" and a number from 1 on, without leading zeros.
[[nodiscard]] bool isEntryKey(const QString &key);

// The values of a database file's "Header".
struct DatabaseHeader {
    QString version;
    QString database; // the data release
    QString title;
    QDate date; // the day of the compilation
};

struct CompileError {
    enum Kind {
        UnreadableInput, // file is the species file that cannot be read
        InvalidInput,    // file is not a species file
        UnwritableOutput,
        UnreadableOutput, // the database to compare with
        Cancelled,
    };
    Kind kind;
    QString file = {};
    bool isTooLarge = false; // the file, or what its entry would be
};

// The entry that compiling makes of a species file: the file's object without its "Type"; or what
// is wrong with the file.
[[nodiscard]] std::variant<QJsonObject, CompileError> readEntry(const QString &file);

// A fingerprint of what compiling writes of an entry: entries of equal ones are the same.
[[nodiscard]] QByteArray entryDigest(const QJsonObject &entry);

// Called before each species file with the count of those done and the index of the next one in the
// list: files are read in the order of their entries' keys. Returning false cancels.
using CompileProgress = std::function<bool(int done, int index)>;

// Compiles species files into the database file at output: "Entry1", "Entry2", ... in the order of
// the list, each the file's object without its "Type". Returns nothing on success. After an error
// nothing is written and an existing database is untouched; of several bad species files the first
// in the list is named. Memory is that of one species file: entries go to the new file as they are
// read.
[[nodiscard]] std::optional<CompileError>
compileDatabase(const QStringList &files, const QString &output, const DatabaseHeader &header,
                QJsonDocument::JsonFormat format, const CompileProgress &progress = {});

// Whether the file at database holds what compileDatabase() would write of the same species files,
// apart from the header's date; a file that is not there does not. Of several bad species files the
// first in the list is named. Memory is that of one species file.
[[nodiscard]] std::variant<bool, CompileError>
isDatabaseUpToDate(const QStringList &files, const QString &database, const DatabaseHeader &header,
                   QJsonDocument::JsonFormat format, const CompileProgress &progress = {});

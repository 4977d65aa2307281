// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/filecheck.h"

#include <QIODevice>
#include <QList>
#include <QString>

#include <optional>

// Checks a database from the device's present place on: its layout, each entry like a species file,
// and the entries against each other. Memory is that of the largest entry, which may have
// largestJsonFile bytes. Nothing if the text is read to its end and its "Type" is another one.
[[nodiscard]] std::optional<FileResult> checkDatabase(const QString &name, QIODevice &device,
                                                      const FileCheckOptions &options);

// A species file that is compared with a database.
struct SpeciesSource {
    QString name; // for messages
    QString path;
};

// What of a database file differs from these species files, in one sentence: entries that none of
// them holds, and those that no entry holds. Nothing if the database is up to date. Order and
// header do not count. Files that cannot be read are passed over. Memory is that of the largest
// entry.
[[nodiscard]] std::optional<QString> databaseDifference(const QString &database,
                                                        const QList<SpeciesSource> &species);

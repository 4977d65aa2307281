// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <QString>
#include <QStringList>

#include <optional>

// Checks the layout of a database file.
void checkDatabaseFile(const JsonValue &root, FindingList &findings);

// A species file as the collection is compared with a database.
struct SpeciesSource {
    QString name; // for messages
    QString path;
};

// What of a database file differs from these species files, in one sentence: entries that none of
// them holds, and those that no entry holds. Nothing if the database is up to date. Order and
// header do not count. Files that cannot be read are passed over.
[[nodiscard]] std::optional<QString> databaseDifference(const QString &database,
                                                        const QList<SpeciesSource> &species);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/entrydifference.h"

#include <QByteArray>
#include <QList>

// An entry of a folder or database, or a file, and its differences from the other's.
struct ComparedEntry {
    QByteArray before; // its name; empty if it was added
    QByteArray after;  // empty if it was removed
    QByteArray species;
    EntryDifference difference;
};

struct DiffReport {
    QByteArray before; // the names on the command line
    QByteArray after;
    bool areCollections = false;
    QList<FieldDifference> header; // of databases
    QList<ComparedEntry> entries;  // those that differ

    [[nodiscard]] bool isNone() const { return header.isEmpty() && entries.isEmpty(); }
};

// For people; empty without differences.
[[nodiscard]] QByteArray diffText(const DiffReport &report);

// For programs: an object with the list "differences", without empty keys.
[[nodiscard]] QByteArray diffJson(const DiffReport &report);

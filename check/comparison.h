// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/documentcheck.h"

#include <QHash>
#include <QList>
#include <QStringList>

#include <vector>

// Finds duplicates: the same species or the same points in a collection or a database. Keeps a
// fingerprint and a place of each, not the texts.
class Comparison
{
public:
    // Findings call the files by names.
    Comparison(const CheckSet &enabled, QStringList names);

    // Compares the facts of a file, or of a part of it, with all earlier ones. Returns the findings
    // in that file.
    [[nodiscard]] QList<Finding> add(quint32 file, const std::vector<Fact> &facts);

private:
    struct Seen {
        quint32 file;
        TextPosition position;
        QString dataset; // of points
    };
    using Key = std::pair<quint8, std::pair<quint64, quint64>>; // the check's number

    [[nodiscard]] Finding findingOf(quint32 file, const Fact &fact, const Seen &seen) const;

    CheckSet m_enabled;
    QStringList m_names;
    QHash<Key, Seen> m_seen;
};

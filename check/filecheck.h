// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/documentcheck.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <vector>

// What is compared across the collection. The entries of a database are compared with each other
// only, so a database has no facts.
struct FileFacts {
    enum Kind { Other, Species, Spectrum, Database };
    Kind kind = Other;
    std::vector<Fact> facts;
};

struct FileResult {
    QList<Finding> findings; // in the order of the file
    FileFacts facts;
};

// Checks the file at path by itself; findings call it name. Runs in any thread. Without a
// QGuiApplication an SVG image counts as undecodable. Memory is that of the file, up to
// largestJsonFile; for a database of any size it is that of its largest entry.
[[nodiscard]] FileResult checkFile(const QString &name, const QString &path,
                                   const FileCheckOptions &options);

// Checks bytes that have already been read.
[[nodiscard]] FileResult checkBytes(const QString &name, const QByteArray &bytes,
                                    const FileCheckOptions &options);

// Sorts findings by place.
void sortByPlace(QList<Finding> &findings);

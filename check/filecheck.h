// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/documentcheck.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <vector>

// What the collection needs to know of a file. The entries of a database are compared with each
// other, not with the files that they come from: it has no facts.
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
// QGuiApplication an SVG image counts as one that cannot be decoded. Memory is that of the file, up
// to largestJsonFile; of a database, which may be of any size, that of its largest entry.
[[nodiscard]] FileResult checkFile(const QString &name, const QString &path,
                                   const FileCheckOptions &options);

// The same for bytes that have been read already.
[[nodiscard]] FileResult checkBytes(const QString &name, const QByteArray &bytes,
                                    const FileCheckOptions &options);

// Puts findings into the order of their places.
void sortByPlace(QList<Finding> &findings);

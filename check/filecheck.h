// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

// A text by which files of a collection are compared, without case, markup and blanks.
struct IdentityFact {
    Check check; // that finds it twice
    QString identity;
    QString shown;
    Place place;
};

struct PointsFact {
    std::array<std::uint64_t, 2> fingerprint;
    Place place;
};

// What the collection needs to know of a file.
struct FileFacts {
    enum Kind { Other, Species, Spectrum, Database };
    Kind kind = Other;
    std::vector<IdentityFact> identities;
    std::vector<PointsFact> points;
};

struct FileResult {
    QList<Finding> findings; // in the order of the file
    FileFacts facts;
};

struct FileCheckOptions {
    CheckSet enabled = CheckSet().set();
    QDate today = QDate::currentDate();
};

// Checks the file at path by itself; findings call it name. Runs in any thread, without an
// application object.
[[nodiscard]] FileResult checkFile(const QString &name, const QString &path,
                                   const FileCheckOptions &options);

// The same for bytes that have been read already.
[[nodiscard]] FileResult checkBytes(const QString &name, const QByteArray &bytes,
                                    const FileCheckOptions &options);

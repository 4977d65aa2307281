// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"
#include "check/profilecheck.h"

#include <QByteArray>
#include <QDate>
#include <QString>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

// The common parts of files and of the entries of databases.

// Identifies a species or spectrum: equal fingerprints of one check mean equal texts or points, for
// all practical purposes.
struct Fact {
    Check check; // that finds it twice
    std::array<std::uint64_t, 2> fingerprint;
    QString shown; // the text; empty for points
    Place place;
};

struct FileCheckOptions {
    CheckSet enabled = CheckSet().set();
    QDate today = QDate::currentDate();
};

// Reports a number outside of the points for which the editor would not read the file.
void checkNumbers(const JsonValue &root, FindingList &findings);

// Reports that the file or an entry of it cannot be read.
void reportUnreadable(const QString &message, const Place &place, FindingList &findings);

// The bytes as JSON; nothing, and a finding, if they are none.
[[nodiscard]] std::unique_ptr<const JsonText> parsedText(const QByteArray &bytes,
                                                         FindingList &findings);

// Checks the object of a species file or the entry of a database, which has no "Type". Adds its
// facts to facts.
enum class Envelope { File, Entry };
void checkSpeciesObject(const JsonValue &object, Envelope envelope, QDate today,
                        FindingList &findings, std::vector<Fact> &facts);

// Checks a dataset or, with isFile, a whole spectrum file.
void checkDataset(const JsonValue &spectrum, bool isFile, const ProfileEnergies &energies,
                  QDate today, FindingList &findings, std::vector<Fact> &facts);

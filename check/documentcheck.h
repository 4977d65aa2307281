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

// What files, and entries of databases, have in common.

// Something by which species and spectra are compared: equal fingerprints of one check are equal
// texts or points, for all practical purposes.
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

// Says that something cannot be read: the file, or an entry of it.
void reportUnreadable(const QString &message, const Place &place, FindingList &findings);

// The bytes as JSON; nothing if they are none, which is reported.
[[nodiscard]] std::unique_ptr<const JsonText> parsedText(const QByteArray &bytes,
                                                         FindingList &findings);

// Checks the object of a species file, or the entry of a database: it has no "Type". Adds what it
// is compared by to facts.
enum class Envelope { File, Entry };
void checkSpeciesObject(const JsonValue &object, Envelope envelope, QDate today,
                        FindingList &findings, std::vector<Fact> &facts);

// Checks a dataset, or with isFile the whole of a spectrum file.
void checkDataset(const JsonValue &spectrum, bool isFile, const ProfileEnergies &energies,
                  QDate today, FindingList &findings, std::vector<Fact> &facts);

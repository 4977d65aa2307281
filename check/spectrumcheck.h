// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"
#include "check/profilecheck.h"

#include <QDate>

#include <array>
#include <cstdint>
#include <optional>

// What other files are compared by. Nothing where there are too few points to tell them apart.
struct SpectrumFacts {
    std::optional<std::array<std::uint64_t, 2>> fingerprint;
};

// Checks a spectrum object: a dataset, or with isFile the whole of a spectrum file, which has a
// "Type" besides. No date may be later than today.
SpectrumFacts checkSpectrum(const JsonValue &spectrum, bool isFile, const ProfileEnergies &energies,
                            QDate today, FindingList &findings);

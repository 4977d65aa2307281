// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"
#include "check/profilecheck.h"

#include <QDate>

#include <array>
#include <cstdint>
#include <optional>

// Compared with other files; nothing if there are too few points to tell spectra apart.
struct SpectrumFacts {
    std::optional<std::array<std::uint64_t, 2>> fingerprint;
};

// Checks a spectrum object: a dataset or, with isFile, a whole spectrum file, which also has a
// "Type". No date may be later than today.
SpectrumFacts checkSpectrum(const JsonValue &spectrum, bool isFile, const ProfileEnergies &energies,
                            QDate today, FindingList &findings);

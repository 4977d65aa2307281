// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <optional>

// The energies of a profile that other checks need.
struct ProfileEnergies {
    std::optional<double> aie; // eV
    std::optional<double> vie; // eV
};

// Checks the object under "Species".
ProfileEnergies checkProfile(const JsonValue &species, FindingList &findings);

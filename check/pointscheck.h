// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"
#include "check/profilecheck.h"

#include <array>
#include <cstdint>
#include <vector>

// The points of a spectrum as in the file.
struct PointArrays {
    std::vector<double> energiesEv;
    std::vector<double> intensities;
    JsonValue energies;        // the list that they come from
    JsonValue intensitiesList; // the same one where each point is an object
    bool isWhole = true;       // false if the editor loads no point, or others than these
    bool hasTooManyDigits = false;
};

// Reads the points of a spectrum object like the editor and reports what gets lost.
[[nodiscard]] PointArrays readPoints(const JsonValue &spectrum, FindingList &findings);

// What is known about the spectrum of the points.
struct PointContext {
    bool isLineSpectrum = false;
    ProfileEnergies energies;
};

// Checks the energies and intensities of whole points.
void checkPoints(const PointArrays &points, const PointContext &context, FindingList &findings);

// A fingerprint of energies and intensities: equal ones mean equal points, for all practical
// purposes.
[[nodiscard]] std::array<std::uint64_t, 2> fingerprintOf(const PointArrays &points);

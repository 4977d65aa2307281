// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/formula.h"

#include <optional>

// A mass in unified atomic mass units, and the range in which it may have been stated.
struct FormulaMass {
    double mass;
    double lowest;
    double highest;
};

enum class MassKind { Average, Monoisotopic, Nominal };

// The mass of a formula, which counts isotopes that it names as such in every kind. Nothing if an
// element has no such mass.
[[nodiscard]] std::optional<FormulaMass> massOf(const Formula &formula, MassKind kind);

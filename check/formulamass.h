// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/formula.h"

#include <optional>

// A mass in unified atomic mass units, and the range of its accepted values.
struct FormulaMass {
    double mass;
    double lowest;
    double highest;
};

enum class MassKind { Average, Monoisotopic, Nominal };

// The mass of a formula. Named isotopes count as such for every kind. Nothing if an element has no
// such mass.
[[nodiscard]] std::optional<FormulaMass> massOf(const Formula &formula, MassKind kind);

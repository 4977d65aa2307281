// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <map>
#include <utility>
#include <variant>
#include <vector>

// Atoms by atomic and mass number; mass number 0 is the natural mixture. Counts may be fractions,
// as in hemihydrates.
using Composition = std::map<std::pair<int, int>, double>;

struct Formula {
    Composition atoms;
    int charge = 0;
};

struct FormulaError {
    enum Kind { Syntax, Element };
    Kind kind;
    QString message; // a sentence without a full stop
};

// Reads a sum formula in restricted markup: elements with counts (in subscript or not), nested
// brackets, D and T, isotopes (<sup>13</sup>C, [13C]), charges (also "SO4 2-"), hydrates and other
// parts after a dot, the dot of radicals, and a prefix such as "n-". A charge without markup gives
// two readings: Fe3+ may be a triple charge or three atoms.
[[nodiscard]] std::variant<std::vector<Formula>, FormulaError> parseFormula(const QString &markup);

// Whether a formula contains Unicode's subscript or superscript characters.
[[nodiscard]] bool hasRaisedCharacters(const QString &markup);

// The atoms by element, whatever their isotopes.
[[nodiscard]] std::map<int, double> elementCounts(const Composition &atoms);

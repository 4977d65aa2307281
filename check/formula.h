// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <map>
#include <utility>
#include <variant>
#include <vector>

// Atoms by atomic number and mass number, 0 for the natural mixture of isotopes. Counts may be
// fractions, as in hemihydrates.
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

// What a sum formula in restricted markup says: elements with counts (in subscript or not), nested
// brackets, D and T, isotopes (<sup>13</sup>C, [13C]), charges (also "SO4 2-"), hydrates and other
// parts after a dot, the dot of radicals, and a prefix such as "n-". There are two readings where a
// charge without markup leaves it open what its digits belong to: Fe3+ may be a triple charge or
// three atoms.
[[nodiscard]] std::variant<std::vector<Formula>, FormulaError> parseFormula(const QString &markup);

// Whether characters that are sub- or superscripts by themselves stand in a formula.
[[nodiscard]] bool hasRaisedCharacters(const QString &markup);

// The atoms by element alone.
[[nodiscard]] std::map<int, double> elementCounts(const Composition &atoms);

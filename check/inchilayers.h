// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <set>
#include <utility>
#include <vector>

// The parts of an InChI that describe one component, each by its own text.

// An error of a layer; thrown, as the grammars are recursive, and caught by parseInchi().
struct InchiLayerError {
    QString message;
};

// One component's formula and what the layers say of it.
struct InchiComponent {
    std::map<int, int> atoms;            // by atomic number
    int heavyAtoms = 0;                  // all but hydrogen
    int numberedAtoms = 0;               // those that layers may name, from 1
    std::set<std::pair<int, int>> bonds; // smaller number first
    int hydrogens() const;
};

// The components of a formula layer such as "C2H6O.2ClH".
[[nodiscard]] std::vector<InchiComponent> inchiFormula(const QString &layer);

// The texts of a layer for each component: "2*+3;;" are three.
[[nodiscard]] QStringList inchiParts(const QString &layer);

// Takes the connections of a component, such as "1-3(2)4", into it.
void takeConnections(InchiComponent &component, const QString &text);

// The hydrogen atoms in a component's part of the layer /h, such as "1,3H2,(H,4,5)".
[[nodiscard]] int hydrogensOf(const InchiComponent &component, const QString &text);

// Adds the isotopes in a component's part of the layer /i, such as "1+1D3,2D": atom 1 is one mass
// number above the usual one and binds three deuterium atoms, atom 2 binds one.
using InchiIsotopes = std::map<std::pair<int, int>, int>;
void addIsotopes(const InchiComponent &component, const QString &text, InchiIsotopes &isotopes);

// The same for its part of the layer /h behind that, of hydrogen without a place: "D2".
void addIsotopicHydrogens(const QString &text, InchiIsotopes &isotopes);

// Checks a component's part of the layers /b and /t.
void checkStereoBonds(const InchiComponent &component, const QString &text);
void checkStereoAtoms(const InchiComponent &component, const QString &text);

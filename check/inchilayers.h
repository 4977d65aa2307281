// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <set>
#include <utility>
#include <vector>

// The parts of an InChI that describe one component, as texts. Errors are thrown as
// InchiLayerError.

// A component's formula and what the layers add to it.
struct InchiComponent {
    std::map<int, int> atoms;            // by atomic number
    int heavyAtoms = 0;                  // all but hydrogen
    int numberedAtoms = 0;               // those that layers may name, from 1
    std::set<std::pair<int, int>> bonds; // smaller number first
    int hydrogens() const;
    void checkNumber(int atom) const; // throws if there is no such atom
};

// The components of a formula layer such as "C2H6O.2ClH".
[[nodiscard]] std::vector<InchiComponent> inchiFormula(const QString &layer);

// The texts of a layer, one for each component: "2*+3;;" has three.
[[nodiscard]] QStringList inchiParts(const QString &layer);

// Adds the connections of a component, such as "1-3(2)4".
void takeConnections(InchiComponent &component, const QString &text);

// The hydrogen atoms in a component's part of the layer /h, such as "1,3H2,(H,4,5)".
[[nodiscard]] int hydrogensOf(const InchiComponent &component, const QString &text);

// Checks a component's part of the layers /b and /t.
void checkStereoBonds(const InchiComponent &component, const QString &text);
void checkStereoAtoms(const InchiComponent &component, const QString &text);

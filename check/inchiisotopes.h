// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <map>
#include <utility>

struct InchiComponent;

// Atoms by atomic and mass number. Errors of the layers are thrown as InchiLayerError.
using InchiIsotopes = std::map<std::pair<int, int>, int>;

// Adds the isotopes in a component's part of the layer /i, such as "1+1D3,2D": atom 1 is one mass
// number above the usual one and has three deuterium atoms, atom 2 has one.
void addIsotopes(const InchiComponent &component, const QString &text, InchiIsotopes &isotopes);

// Adds those in its part of the later layer /h, which places no atoms: "D2".
void addIsotopicHydrogens(const QString &text, InchiIsotopes &isotopes);

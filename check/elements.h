// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <optional>

// Chemical elements with their masses in unified atomic mass units.
//
// Average masses: IUPAC Commission on Isotopic Abundances and Atomic Weights, Standard Atomic
// Weights 2021 (Prohaska et al., Pure Appl. Chem. 94, 573, 2022); for elements whose weight is an
// interval its conventional value. The range beside it holds that interval, or the weight with its
// uncertainty, and the official weights since the scale of carbon-12: tables of 1961 (Cameron and
// Wichers, J. Am. Chem. Soc. 84, 4175, 1962) and of the Commission's reports in Pure Appl. Chem.
// since 1969. Masses of nuclides: Atomic Mass Evaluation AME2020, rounded to 0.00001.
struct Element {
    const char *symbol;
    double weight; // 0 where there is none: no stable isotope
    double lowest; // official weight since 1961
    double highest;
    int mainIsotope; // mass number of the most abundant one; 0 where there is none
    double mainMass; // of that isotope
};

// The atomic number of the element with this symbol; nothing for other texts, D and T among them.
[[nodiscard]] std::optional<int> atomicNumber(QStringView symbol);

// The element of an atomic number from 1 to 118.
[[nodiscard]] const Element &elementOf(int number);

// Whether one element precedes another in Hill's order: carbon, hydrogen, then by symbol; without
// carbon by symbol alone. Takes atomic numbers.
[[nodiscard]] bool precedesInHill(int left, int right, bool hasCarbon);

// The mass of a nuclide and its possible error: for one that the table lacks its mass number and
// 0.12, which no nuclide exceeds.
struct NuclideMass {
    double mass;
    double uncertainty;
};
[[nodiscard]] NuclideMass nuclideMass(int number, int massNumber);

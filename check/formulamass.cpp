// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/formulamass.h"

#include "check/elements.h"

#include <cmath>

std::optional<FormulaMass> massOf(const Formula &formula, MassKind kind)
{
    constexpr double electronMass = 0.000548580; // whether it is counted is not known
    const double electrons =
        kind == MassKind::Nominal ? 0 : electronMass * std::abs(formula.charge);
    FormulaMass sum{0, -electrons, electrons};
    for (const auto &[atom, count] : formula.atoms) {
        const auto [number, massNumber] = atom;
        const Element &element = elementOf(number);
        const bool natural = massNumber == 0;
        if (natural && element.mainIsotope == 0)
            return std::nullopt;
        const int isotope = natural ? element.mainIsotope : massNumber;
        FormulaMass each{double(isotope), double(isotope), double(isotope)};
        if (kind == MassKind::Average && natural) {
            each = {element.weight, element.lowest, element.highest};
        } else if (kind != MassKind::Nominal) {
            const NuclideMass nuclide = nuclideMass(number, isotope);
            each = {nuclide.mass, nuclide.mass - nuclide.uncertainty,
                    nuclide.mass + nuclide.uncertainty};
        }
        sum.mass += count * each.mass;
        sum.lowest += count * each.lowest;
        sum.highest += count * each.highest;
    }
    return sum;
}

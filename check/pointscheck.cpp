// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/pointscheck.h"

#include "spectrum/points.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

namespace
{

QString eV(double energy)
{
    return QString::number(energy, 'g', 8) + QStringLiteral(" eV");
}

// The element of a list at index; the list itself without one.
JsonValue elementOfList(const JsonValue &list, std::size_t index)
{
    JsonValue element = list.firstChild();
    for (std::size_t i = 0; i < index && element; ++i)
        element = element.nextSibling();
    return element ? element : list;
}

// The energy at index, where findings about it belong.
JsonValue elementAt(const PointArrays &points, std::size_t index)
{
    return elementOfList(points.energies, index);
}

QString others(qsizetype count)
{
    return count > 1 ? QStringLiteral(" (and %1 more)").arg(count - 1) : QString();
}

// Reports the first energy step for which wrong is true, and counts the others.
template <typename Predicate, typename Report>
void forSteps(const std::vector<double> &energies, Predicate &&wrong, Report &&report)
{
    std::size_t first = 0;
    qsizetype count = 0;
    for (std::size_t i = 1; i < energies.size(); ++i) {
        if (wrong(energies[i - 1], energies[i]) && count++ == 0)
            first = i;
    }
    if (count > 0)
        report(first, count);
}

void checkOrder(const PointArrays &points, bool isLineSpectrum, FindingList &findings)
{
    const std::vector<double> &energies = points.energiesEv;
    forSteps(
        energies, [](double before, double after) { return after < before; },
        [&](std::size_t index, qsizetype count) {
            const bool descends = count == qsizetype(energies.size()) - 1;
            findings.add(Check::NotAscending, elementAt(points, index),
                         descends ? QStringLiteral("The energies descend from %1 to %2")
                                        .arg(eV(energies.front()), eV(energies.back()))
                                  : QStringLiteral("Energy %1 at index %2 follows %3%4")
                                        .arg(eV(energies[index]))
                                        .arg(index)
                                        .arg(eV(energies[index - 1]), others(count)),
                         descends ? QStringLiteral("Turn the points around.")
                                  : QStringLiteral("Sort the points."),
                         isLineSpectrum ? std::optional(Severity::Note) : std::nullopt);
        });
}

void checkRepetition(const PointArrays &points, FindingList &findings)
{
    const auto report = [&](const QString &how) {
        return [&findings, &points, how](std::size_t index, qsizetype count) {
            findings.add(Check::RepeatedEnergy, elementAt(points, index),
                         QStringLiteral("Energy %1 at index %2 %3%4")
                             .arg(eV(points.energiesEv[index]))
                             .arg(index)
                             .arg(how, others(count)),
                         QStringLiteral("Average the points of one energy."));
        };
    };
    forSteps(
        points.energiesEv, [](double before, double after) { return after == before; },
        report(QStringLiteral("is repeated")));
    if (points.hasTooManyDigits && !findings.has(Check::RepeatedEnergy))
        forSteps(
            points.energiesEv,
            [](double before, double after) {
                return after != before && loadedNumber(after) == loadedNumber(before);
            },
            report(QStringLiteral("equals the one before it when six digits are kept")));
}

double medianOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void checkGap(const PointArrays &points, FindingList &findings)
{
    constexpr std::size_t fewest = 20;
    constexpr double widest = 25; // median steps
    const std::vector<double> &energies = points.energiesEv;
    if (energies.size() < fewest)
        return;
    double smallest = HUGE_VAL;
    double largest = 0;
    for (std::size_t i = 1; i < energies.size(); ++i) {
        const double step = energies[i] - energies[i - 1];
        largest = std::max(largest, step);
        smallest = std::min(smallest, std::abs(step));
    }
    // The median is at least the smallest step.
    if (largest <= widest * smallest)
        return;
    std::vector<double> steps;
    steps.reserve(energies.size());
    for (std::size_t i = 1; i < energies.size(); ++i)
        steps.push_back(std::abs(energies[i] - energies[i - 1]));
    const double median = medianOf(std::move(steps));
    if (median <= 0)
        return;
    forSteps(
        energies, [&](double before, double after) { return after - before > widest * median; },
        [&](std::size_t index, qsizetype count) {
            findings.add(
                Check::EnergyGap, elementAt(points, index),
                QStringLiteral("From %1 to %2 there is no point, where the usual step is "
                               "%3%4")
                    .arg(eV(energies[index - 1]), eV(energies[index]), eV(median), others(count)),
                QStringLiteral("Is a part of the scan missing?"));
        });
}

void checkSpike(const PointArrays &points, FindingList &findings)
{
    constexpr std::size_t fewest = 5;
    constexpr double aboveNeighbours = 1e5;
    constexpr double aboveOthers = 1e3;
    std::vector<double> sizes;
    sizes.reserve(points.intensities.size());
    for (const double intensity : points.intensities)
        sizes.push_back(std::abs(intensity));
    if (sizes.size() < fewest)
        return;
    const auto top = std::max_element(sizes.begin(), sizes.end());
    const double highest = *top;
    *top = 0;
    const double second = *std::max_element(sizes.begin(), sizes.end());
    double beside = top + 1 != sizes.end() ? top[1] : 0;
    if (top != sizes.begin())
        beside = std::max(beside, top[-1]);
    if (beside == 0) // as between the lines of a simulation
        beside = second;
    if (beside == 0 || highest < aboveNeighbours * beside || highest < aboveOthers * second)
        return;
    const auto index = static_cast<std::size_t>(top - sizes.begin());
    findings.add(Check::IntensitySpike, elementOfList(points.intensitiesList, index),
                 QStringLiteral("Intensity %1 at %2 is %3 times its neighbours")
                     .arg(QString::number(points.intensities[index], 'g', 6),
                          eV(points.energiesEv[index]), QString::number(highest / beside, 'g', 2)),
                 QStringLiteral("Has its exponent or decimal point slipped?"));
}

// A unit in which energies may have been entered by mistake.
struct Unit {
    const char *name;
    double smallest; // of the numbers that look like it
    double largest;
    double (*toEv)(double);
};

constexpr double evTimesNm = 1239.84198;
constexpr double wavenumbersPerEv = 8065.54394;

const Unit units[] = {
    {"nm", 50, 400, [](double nm) { return evTimesNm / nm; }},
    {"meV", 3'000, 40'000, [](double meV) { return meV / 1000; }},
    {"cm-1", 24'000, 400'000, [](double wavenumber) { return wavenumber / wavenumbersPerEv; }},
};

// Whether energies in the unit lie where this species, or most species, are ionised.
bool fits(const Unit &unit, double low, double high, const ProfileEnergies &known)
{
    constexpr double margin = 1.15;
    const double first = std::min(unit.toEv(low), unit.toEv(high));
    const double last = std::max(unit.toEv(low), unit.toEv(high));
    for (const std::optional<double> &energy : {known.aie, known.vie}) {
        if (energy && first / margin <= *energy && *energy <= last * margin)
            return true;
    }
    return !known.aie && !known.vie && first >= 6 && last <= 25;
}

bool checkUnit(const PointArrays &points, const PointContext &context, FindingList &findings)
{
    const auto [lowest, highest] =
        std::minmax_element(points.energiesEv.begin(), points.energiesEv.end());
    for (const Unit &unit : units) {
        if (*lowest < unit.smallest || *highest > unit.largest
            || !fits(unit, *lowest, *highest, context.energies))
            continue;
        findings.add(Check::EnergyUnit, points.energies,
                     QStringLiteral("Energies from %1 to %2 look like %3: that would be %4 to %5")
                         .arg(QString::number(*lowest, 'g', 8), QString::number(*highest, 'g', 8),
                              QLatin1String(unit.name), eV(unit.toEv(*lowest)),
                              eV(unit.toEv(*highest))),
                     QStringLiteral("Convert them to eV."));
        return true;
    }
    return false;
}

void checkThreshold(const PointArrays &points, const ProfileEnergies &known, FindingList &findings)
{
    const std::optional<double> threshold = known.aie ? known.aie : known.vie;
    const double highest = *std::max_element(points.energiesEv.begin(), points.energiesEv.end());
    if (threshold && highest < *threshold)
        findings.add(Check::BelowIonisation, points.energies,
                     QStringLiteral("The energies end at %1, below the ionisation energy of %2")
                         .arg(eV(highest), eV(*threshold)),
                     QStringLiteral("Compare them with AIE and VIE of the profile."));
}

} // namespace

void checkPoints(const PointArrays &points, const PointContext &context, FindingList &findings)
{
    constexpr std::size_t fewest = 5;
    if (points.energiesEv.empty())
        return;
    const bool isCurve = !context.isLineSpectrum;
    if (isCurve && points.energiesEv.size() < fewest)
        findings.add(Check::FewPoints, points.energies,
                     QStringLiteral("A curve of %1 points").arg(points.energiesEv.size()),
                     QStringLiteral("Enter the remaining points, or mark it as a line spectrum."));
    if (std::all_of(points.intensities.begin(), points.intensities.end(),
                    [](double intensity) { return intensity == 0; }))
        findings.add(Check::AllZero, points.energies,
                     QStringLiteral("All %1 intensities are zero").arg(points.intensities.size()));
    if (checkUnit(points, context, findings))
        return;
    checkOrder(points, context.isLineSpectrum, findings);
    if (isCurve) {
        checkRepetition(points, findings);
        checkGap(points, findings);
        checkSpike(points, findings);
    }
    checkThreshold(points, context.energies, findings);
}

std::array<std::uint64_t, 2> fingerprintOf(const PointArrays &points)
{
    // Two multiplicative hashes with different odd factors.
    std::uint64_t first = points.energiesEv.size();
    std::uint64_t second = ~first;
    const auto take = [&](double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value + 0.0); // -0 is 0
        first = (std::rotl(first, 23) ^ bits) * 0x9e3779b97f4a7c15u;
        second = (std::rotl(second, 41) + bits) * 0xc2b2ae3d27d4eb4fu;
    };
    for (const double energy : points.energiesEv)
        take(energy);
    for (const double intensity : points.intensities)
        take(intensity);
    return {first ^ first >> 31, second ^ second >> 29};
}

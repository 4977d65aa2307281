// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/compositioncheck.h"

#include "check/elements.h"
#include "check/formula.h"
#include "check/formulamass.h"
#include "check/inchi.h"
#include "check/numbertext.h"
#include "check/recordcheck.h"
#include "check/textcheck.h"
#include "species/speciesmodel.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr QLatin1String formulaKey = keyOf(SpeciesColumn::Formula);
constexpr QLatin1String massKey = keyOf(SpeciesColumn::Mass);
constexpr QLatin1String inchiKey = keyOf(SpeciesColumn::Inchi);

struct NamedKind {
    MassKind kind;
    const char *name;
};
constexpr std::array massKinds{NamedKind{MassKind::Average, "average"},
                               NamedKind{MassKind::Monoisotopic, "monoisotopic"},
                               NamedKind{MassKind::Nominal, "nominal"}};

// The readings of the formula; none if it is missing or cannot be read.
std::vector<Formula> readFormula(const JsonValue &value, FindingList &findings)
{
    if (plainText(value).isEmpty())
        return {};
    if (hasRaisedCharacters(value.string()))
        findings.add(Check::FormulaUnicode, value,
                     QStringLiteral("Formula %1 has subscripts that are no markup")
                         .arg(quoted(plainText(value))),
                     QStringLiteral("Write plain digits with <sub> or <sup> around them."));
    const auto result = parseFormula(value.string());
    if (const auto *readings = std::get_if<std::vector<Formula>>(&result))
        return *readings;
    const auto &error = std::get<FormulaError>(result);
    findings.add(error.kind == FormulaError::Element ? Check::FormulaElement : Check::FormulaSyntax,
                 value,
                 QStringLiteral("Formula %1: %2").arg(quoted(plainText(value)), error.message));
    return {};
}

// How far the mass is from the formula's, beyond its own rounding; 0 if it fits. People shorten
// masses by cutting as well as by rounding.
double deviation(double mass, double lastDigit, const FormulaMass &expected)
{
    constexpr double arithmetic = 1e-9;
    const double low = expected.lowest - lastDigit - arithmetic;
    const double high = expected.highest + lastDigit / 2 + arithmetic;
    return mass >= low && mass <= high ? 0 : std::abs(mass - expected.mass);
}

// What the mass is compared with.
struct Source {
    const char *name;
    QString text; // what it says, for messages
    std::vector<Formula> readings;
};

void checkMass(const JsonValue &value, const Source &source, FindingList &findings)
{
    constexpr double small = 0.001; // relative
    const std::optional<double> mass =
        value && value.isNumber() ? valueOf(value.raw()) : std::nullopt;
    // The editor writes 0 for an empty field.
    if (!mass || *mass == 0)
        return;
    const double lastDigit = lastDigitOf(value.raw());
    double nearest = 0;
    double nearestMass = 0;
    const char *nearestName = nullptr;
    for (const Formula &reading : source.readings) {
        for (const NamedKind &kind : massKinds) {
            const std::optional<FormulaMass> expected = massOf(reading, kind.kind);
            if (!expected)
                continue;
            const double off = deviation(*mass, lastDigit, *expected);
            if (off == 0)
                return;
            if (!nearestName || off < nearest) {
                nearest = off;
                nearestMass = expected->mass;
                nearestName = kind.name;
            }
        }
    }
    if (!nearestName)
        return;
    const bool isSmall = nearest < small * nearestMass;
    findings.add(
        Check::MassFormula, value,
        QStringLiteral("Mass %1 does not belong to %2: nearest is its %3 mass %4")
            .arg(QString::fromLatin1(value.raw()), source.text, QLatin1String(nearestName))
            .arg(nearestMass, 0, 'g', 8),
        isSmall ? QStringLiteral("No official atomic weight since 1961 explains that.")
                : QStringLiteral("Correct the mass or the %1.").arg(QLatin1String(source.name)),
        isSmall ? Severity::Warning : Severity::Error);
}

QString formulaText(const std::map<int, double> &counts)
{
    std::vector<std::pair<int, double>> parts(counts.begin(), counts.end());
    std::sort(parts.begin(), parts.end(), [&](const auto &a, const auto &b) {
        return precedesInHill(a.first, b.first, counts.contains(6));
    });
    QString text;
    for (const auto &[number, count] : parts) {
        const QLatin1String symbol(elementOf(number).symbol);
        text += count == 1 ? QString(symbol) : symbol + QString::number(count);
    }
    return text;
}

// The named isotopes, by atomic and mass number. The most abundant one is left out, as not
// everybody names it.
template <typename Atoms>
std::map<std::pair<int, int>, double> labelsOf(const Atoms &atoms)
{
    std::map<std::pair<int, int>, double> labels;
    for (const auto &[atom, count] : atoms) {
        if (atom.second != 0 && atom.second != elementOf(atom.first).mainIsotope && count != 0)
            labels[atom] += count;
    }
    return labels;
}

QString labelText(const std::map<std::pair<int, int>, double> &labels)
{
    QString text;
    for (const auto &[atom, count] : labels) {
        text += QLatin1Char('[') + QString::number(atom.second)
                + QLatin1String(elementOf(atom.first).symbol) + QLatin1Char(']');
        if (count != 1)
            text += QString::number(count);
    }
    return text.isEmpty() ? QStringLiteral("none") : text;
}

// The composition from the InChI, in place of a formula.
Source sourceOf(const Inchi &inchi)
{
    const std::map<int, double> counts(inchi.atoms.begin(), inchi.atoms.end());
    const auto labels = labelsOf(inchi.isotopes);
    Formula formula{labels, inchi.charge};
    for (const auto &[number, count] : counts)
        formula.atoms[{number, 0}] += count;
    for (const auto &[atom, count] : labels)
        formula.atoms[{atom.first, 0}] -= count;
    std::erase_if(formula.atoms, [](const auto &atom) { return atom.second == 0; });
    QString text = QStringLiteral("the InChI's %1").arg(formulaText(counts));
    if (!labels.empty())
        text += QStringLiteral(" with %1").arg(labelText(labels));
    return {"InChI", text, {formula}};
}

void checkAgainstInchi(const JsonValue &value, const std::vector<Formula> &readings,
                       const Inchi &inchi, FindingList &findings)
{
    constexpr double rounding = 1e-6;
    const std::map<int, double> named(inchi.atoms.begin(), inchi.atoms.end());
    const auto hasSameAtoms = [&](const Formula &reading) {
        const std::map<int, double> counts = elementCounts(reading.atoms);
        return counts.size() == named.size()
               && std::equal(
                   counts.begin(), counts.end(), named.begin(), [&](const auto &a, const auto &b) {
                       return a.first == b.first && std::abs(a.second - b.second) < rounding;
                   });
    };
    const auto same = std::find_if(readings.begin(), readings.end(), hasSameAtoms);
    if (same == readings.end()) {
        findings.add(
            Check::FormulaInchi, value,
            QStringLiteral("The InChI names %1, the formula %2")
                .arg(formulaText(named), formulaText(elementCounts(readings.front().atoms))),
            QStringLiteral("Take both from one source."));
        return;
    }
    const auto labels = labelsOf(inchi.isotopes);
    if (const auto own = labelsOf(same->atoms); own != labels) {
        findings.add(Check::FormulaInchi, value,
                     QStringLiteral("The isotopes of the InChI are %1, those of the formula %2")
                         .arg(labelText(labels), labelText(own)),
                     QStringLiteral("Take both from one source."));
        return;
    }
    const bool sameCharge = std::any_of(same, readings.end(), [&](const Formula &reading) {
        return hasSameAtoms(reading) && reading.charge == inchi.charge;
    });
    if (!sameCharge)
        findings.add(Check::FormulaInchi, value,
                     QStringLiteral("The InChI has the charge %1, the formula %2")
                         .arg(inchi.charge)
                         .arg(same->charge),
                     QStringLiteral("Write the charge in superscript behind the formula."),
                     Severity::Warning);
}

} // namespace

void checkComposition(const JsonValue &species, FindingList &findings)
{
    const JsonValue formula = species.member(formulaKey);
    const JsonValue inchi = species.member(inchiKey);
    const std::vector<Formula> readings = readFormula(formula, findings);
    const JsonValue mass = species.member(massKey);
    checkMass(mass, {"formula", plainText(formula), readings}, findings);

    const QString text = plainText(inchi);
    if (text.isEmpty())
        return;
    const auto result = parseInchi(text);
    if (const auto *error = std::get_if<InchiError>(&result))
        findings.add(Check::InchiForm, inchi, QStringLiteral("InChI: %1").arg(error->message),
                     QStringLiteral("Copy the InChI again, as a whole."));
    else if (!readings.empty())
        checkAgainstInchi(inchi, readings, std::get<Inchi>(result), findings);
    else
        checkMass(mass, sourceOf(std::get<Inchi>(result)), findings);
}

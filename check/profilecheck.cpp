// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/profilecheck.h"

#include "check/compositioncheck.h"
#include "check/picturecheck.h"
#include "check/recordcheck.h"
#include "check/textcheck.h"
#include "species/casnumber.h"
#include "species/speciesmodel.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cstddef>

namespace
{

constexpr QLatin1String adiabaticKey = keyOf(SpeciesColumn::Aie);
constexpr QLatin1String verticalKey = keyOf(SpeciesColumn::Vie);

JsonKind kindOf(SpeciesFieldKind kind)
{
    return kind == SpeciesFieldKind::Number ? JsonKind::Number : JsonKind::String;
}

const auto &knownKeys()
{
    static const auto keys = [] {
        std::array<KnownKey, speciesFields.size()> known{};
        std::transform(speciesFields.begin(), speciesFields.end(), known.begin(),
                       [](const SpeciesField &field) {
                           return KnownKey{field.key, kindOf(field.kind)};
                       });
        return known;
    }();
    return keys;
}

void checkTexts(const JsonValue &species, FindingList &findings)
{
    for (const SpeciesField &field : speciesFields) {
        if (field.kind != SpeciesFieldKind::Text && field.kind != SpeciesFieldKind::Lines)
            continue;
        const bool isEnergy = field.key == adiabaticKey || field.key == verticalKey;
        const TextUse use = field.kind == SpeciesFieldKind::Lines ? TextUse::Lines
                            : isEnergy                            ? TextUse::Energy
                                                                  : TextUse::Text;
        checkText(species.member(field.key), use, findings);
    }
}

void checkCas(const JsonValue &value, FindingList &findings)
{
    const QString cas = plainText(value);
    if (cas.isEmpty() || isValidCasNumber(cas))
        return;
    // One of the ten check digits is correct if the form is.
    const QString others = cas.chopped(1);
    for (int digit = 0; digit <= 9; ++digit) {
        if (isValidCasNumber(others + QString::number(digit))
            && QStringView(u"0123456789").contains(cas.back())) {
            findings.add(Check::CasCheckDigit, value,
                         QStringLiteral("CAS number %1 has check digit %2, expected %3")
                             .arg(cas, cas.back())
                             .arg(digit),
                         QStringLiteral("Look the number up: any of its digits may be wrong."));
            return;
        }
    }
    findings.add(Check::CasForm, value, QStringLiteral("%1 is not a CAS number").arg(quoted(cas)),
                 QStringLiteral("A CAS number looks like 71-43-2, with plain hyphens."));
}

void checkPubchem(const JsonValue &value, FindingList &findings)
{
    static const QRegularExpression form(QStringLiteral("^[1-9][0-9]{0,9}$"));
    const QString cid = plainText(value);
    if (!cid.isEmpty() && !form.match(cid).hasMatch())
        findings.add(Check::PubchemCid, value,
                     QStringLiteral("%1 is not a PubChem compound number").arg(quoted(cid)),
                     QStringLiteral("Write the digits only."));
}

std::optional<EnergyText> checkEnergy(const JsonValue &value, FindingList &findings)
{
    constexpr double lowestEv = 3.5;
    constexpr double highestEv = 25;
    const QString text = plainText(value);
    if (text.isEmpty())
        return std::nullopt;
    const std::optional<EnergyText> energy = energyOf(text);
    if (!energy) {
        if (!hasDecimalComma(text))
            findings.add(Check::EnergyNumber, value,
                         QStringLiteral("%1 %2 is not a number").arg(value.key(), quoted(text)),
                         QStringLiteral("Write the energy in eV, such as 9.24 or 9.24(3)."));
        return std::nullopt;
    }
    if (!energy->isAlone) {
        findings.add(Check::EnergyNumber, value,
                     QStringLiteral("%1 %2 is more than a number").arg(value.key(), quoted(text)),
                     QStringLiteral("Move what is not the number into the comment beside it."),
                     Severity::Warning);
        return energy;
    }
    if (energy->value < lowestEv || energy->value > highestEv) {
        findings.add(Check::EnergyRange, value,
                     QStringLiteral("%1 of %2 eV is outside %3 to %4 eV")
                         .arg(value.key(), text)
                         .arg(lowestEv)
                         .arg(highestEv),
                     QStringLiteral("Is it in another unit?"));
        return std::nullopt;
    }
    return energy;
}

} // namespace

ProfileEnergies checkProfile(const JsonValue &species, FindingList &findings)
{
    checkMembers(species, knownKeys(), findings);
    checkTexts(species, findings);
    checkCas(species.member(keyOf(SpeciesColumn::Cas)), findings);
    checkPubchem(species.member(keyOf(SpeciesColumn::PubChem)), findings);
    checkComposition(species, findings);
    checkPicture(species.member(keyOf(SpeciesColumn::Image)), findings);

    const JsonValue vertical = species.member(verticalKey);
    const std::optional<EnergyText> aie = checkEnergy(species.member(adiabaticKey), findings);
    const std::optional<EnergyText> vie = checkEnergy(vertical, findings);
    // Each value may have been rounded: 12.62 is not below 12.621.
    if (aie && vie && vie->value + vie->tolerance + aie->tolerance < aie->value)
        findings.add(
            Check::VieBelowAie, vertical,
            QStringLiteral("VIE of %1 eV is below AIE of %2 eV").arg(vie->value).arg(aie->value),
            QStringLiteral("Have the two been exchanged?"));
    ProfileEnergies energies;
    if (aie)
        energies.aie = aie->value;
    if (vie)
        energies.vie = vie->value;
    return energies;
}

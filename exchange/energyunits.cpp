// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/energyunits.h"

#include "exchange/numbers.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <array>

namespace
{

// h c / e in eV nm: exact, by the definition of the SI's units (CODATA 2018 and 2022).
constexpr double planckTimesLight = 1239.8419843320026;
// One hartree in eV (CODATA 2022, uncertainty 3.0e-11).
constexpr double hartree = 27.211386245981;
// One eV for each of a mole in kJ: Avogadro's constant times e, exact as above.
constexpr double faraday = 96.48533212331002;

constexpr double nanometresPerCentimetre = 1e7;
constexpr double nanometresPerAngstrom = 0.1;
constexpr double nanometresPerMicrometre = 1e3;

struct Unit {
    EnergyUnit unit;
    const char *name;
    bool isWavelength;
    double electronVolts; // of one; of a wavelength: times the wavelength
    const char *others;   // names in lower case, without what canonical() leaves out
};

// In the order of EnergyUnit.
constexpr std::array units{
    Unit{EnergyUnit::ElectronVolt, "eV", false, 1,
         "ev electronvolt electronvolts elektronenvolt эв"},
    Unit{EnergyUnit::MilliElectronVolt, "meV", false, 1e-3, "millielectronvolt millielectronvolts"},
    Unit{EnergyUnit::KiloElectronVolt, "keV", false, 1e3, "kev kiloelectronvolt kiloelectronvolts"},
    Unit{EnergyUnit::Nanometre, "nm", true, planckTimesLight,
         "nm nanometer nanometers nanometre nanometres nanometern nanomètres"},
    Unit{EnergyUnit::Angstrom, "A", true, planckTimesLight / nanometresPerAngstrom,
         "å a angstrom angstroms angstroem ångström ångströms ångstrom"},
    Unit{EnergyUnit::Micrometre, "um", true, planckTimesLight / nanometresPerMicrometre,
         "um μm micrometer micrometers micrometre micrometres micron microns mikrometer"},
    Unit{EnergyUnit::WaveNumber, "cm-1", false, planckTimesLight / nanometresPerCentimetre,
         "cm1 1/cm percm reciprocalcm inversecm reciprocalcentimeters reciprocalcentimetres "
         "inversecentimeters inversecentimetres"},
    Unit{EnergyUnit::Hartree, "Hartree", false, hartree, "hartree hartrees eh"},
    Unit{EnergyUnit::KilojoulePerMole, "kJ/mol", false, 1 / faraday, "kj/mol kjmol1 kjpermol"},
};

const Unit &infoOf(EnergyUnit unit)
{
    return units[static_cast<std::size_t>(unit)];
}

// One spelling for "cm⁻¹", "cm<sup>-1</sup>", "cm^{-1}" and "cm-1".
QString canonical(const QByteArray &text)
{
    static const QRegularExpression leftOut(
        QStringLiteral("</?su[bp]>|[\\s{}$\\\\^_.*\\x{b7}\\x{22c5}\\x{2010}-\\x{2013}\\x{2212}-]"));
    return QString::fromUtf8(text)
        .normalized(QString::NormalizationForm_KC)
        .toLower()
        .remove(leftOut);
}

} // namespace

QByteArrayList energyUnitNames()
{
    QByteArrayList names;
    for (const Unit &unit : units)
        names.append(unit.name);
    return names;
}

QByteArray nameOf(EnergyUnit unit)
{
    return infoOf(unit).name;
}

std::optional<EnergyUnit> energyUnitNamed(const QByteArray &text)
{
    // In capitals it could be mega-electronvolts.
    if (text.trimmed() == "meV")
        return EnergyUnit::MilliElectronVolt;
    const QString name = canonical(text);
    for (const Unit &unit : units) {
        if (QString::fromUtf8(unit.others).split(QLatin1Char(' ')).contains(name))
            return unit.unit;
    }
    return std::nullopt;
}

bool isWavelength(EnergyUnit unit)
{
    return infoOf(unit).isWavelength;
}

std::optional<double> inElectronVolts(double x, EnergyUnit unit)
{
    const Unit &info = infoOf(unit);
    if (!info.isWavelength)
        return rounded(x * info.electronVolts);
    return x > 0 ? std::optional(rounded(info.electronVolts / x)) : std::nullopt;
}

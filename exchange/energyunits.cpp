// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/energyunits.h"

#include <array>

namespace
{

// CODATA 2018, exact by the definition of the SI: h c / e in eV nm.
constexpr double planckTimesLight = 1239.8419843320026;

struct EnergyUnitName {
    const char *name;
    EnergyUnit unit;
};

constexpr std::array unitNames{
    EnergyUnitName{"EV", EnergyUnit::ElectronVolt},
    EnergyUnitName{"ELECTRONVOLT", EnergyUnit::ElectronVolt},
    EnergyUnitName{"ELECTRONVOLTS", EnergyUnit::ElectronVolt},
    EnergyUnitName{"KEV", EnergyUnit::KiloElectronVolt},
    EnergyUnitName{"1CM", EnergyUnit::WaveNumber},
    EnergyUnitName{"CM1", EnergyUnit::WaveNumber},
    EnergyUnitName{"CM^1", EnergyUnit::WaveNumber},
    EnergyUnitName{"NANOMETERS", EnergyUnit::Nanometre},
    EnergyUnitName{"NM", EnergyUnit::Nanometre},
    EnergyUnitName{"MICROMETERS", EnergyUnit::Micrometre},
    EnergyUnitName{"UM", EnergyUnit::Micrometre},
};

} // namespace

std::optional<EnergyUnit> energyUnitNamed(const QByteArray &text)
{
    // In capitals it could be a thousand million times as much.
    if (text == "meV")
        return EnergyUnit::MilliElectronVolt;
    QByteArray name = text.toUpper();
    for (const char ignored : {' ', '-', '/', '_'})
        name.replace(ignored, "");
    for (const EnergyUnitName &unit : unitNames) {
        if (name == unit.name)
            return unit.unit;
    }
    return std::nullopt;
}

double inElectronVolts(double x, EnergyUnit unit)
{
    constexpr double nanometresPerCentimetre = 1e7;
    switch (unit) {
    case EnergyUnit::ElectronVolt:
        return x;
    case EnergyUnit::KiloElectronVolt:
        return x * 1000;
    case EnergyUnit::MilliElectronVolt:
        return x / 1000;
    case EnergyUnit::WaveNumber:
        return x * planckTimesLight / nanometresPerCentimetre;
    case EnergyUnit::Nanometre:
        return planckTimesLight / x;
    case EnergyUnit::Micrometre:
        return planckTimesLight / (x * 1000);
    }
    Q_UNREACHABLE();
}

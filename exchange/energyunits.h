// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>

// The units in which other programs write photon energies.
enum class EnergyUnit {
    ElectronVolt,
    KiloElectronVolt,
    MilliElectronVolt,
    WaveNumber, // per centimetre
    Nanometre,
    Micrometre,
};

// The unit of a name such as "1/CM" or "NANOMETERS"; nothing if it is none of these.
[[nodiscard]] std::optional<EnergyUnit> energyUnitNamed(const QByteArray &text);

// The energy in eV; not finite for a wavelength of 0.
[[nodiscard]] double inElectronVolts(double x, EnergyUnit unit);

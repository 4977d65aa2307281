// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <optional>

// The units of photon energies in other programs' files.
enum class EnergyUnit {
    ElectronVolt,
    MilliElectronVolt,
    KiloElectronVolt,
    Nanometre, // of the wavelength in vacuum, like the next two
    Angstrom,
    Micrometre,
    WaveNumber, // per centimetre
    Hartree,
    KilojoulePerMole, // of photons
};

// The usual names of all units, in the order above: "eV", "meV", ...
[[nodiscard]] QByteArrayList energyUnitNames();

[[nodiscard]] QByteArray nameOf(EnergyUnit unit);

// The unit of a name such as "1/CM", "cm⁻¹" or "NANOMETERS"; nothing if it is none of these.
[[nodiscard]] std::optional<EnergyUnit> energyUnitNamed(const QByteArray &text);

[[nodiscard]] bool isWavelength(EnergyUnit unit);

// The energy of one photon in eV, rounded to twelve significant digits; nothing for a wavelength
// that is not positive.
[[nodiscard]] std::optional<double> inElectronVolts(double x, EnergyUnit unit);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/energyunits.h"
#include "exchange/exchanged.h"

#include <QByteArray>
#include <QList>
#include <QPointF>

#include <optional>
#include <variant>

// What a heading, a label or a comment in a file of another program says of the energies: which
// quantity they are and in which unit. Headings in a few languages are understood.

// What the user says of the energies where the file does not, or says otherwise.
struct EnergyChoice {
    std::optional<EnergyUnit> unit;
    bool arePhotonEnergies = false;
};

struct EnergyAxis {
    enum Quantity { Unknown, Energy, Wavelength, WaveNumber, NoPhotonEnergy };
    Quantity quantity = Unknown;
    QByteArray plural;              // what the numbers are, if no photon energies
    std::optional<EnergyUnit> unit; // nothing if none is named, or one that is not known
    QByteArray unitText;            // the units as they are named; empty if there is none
};

// Of the heading of one column, such as "Energy / eV" or "wavelength (nm)".
[[nodiscard]] EnergyAxis energyAxisOfHeading(const QByteArray &heading);

// Of a line that begins with the heading of the energies and goes on with those of other columns.
// Unknown if it does not begin with a quantity.
[[nodiscard]] EnergyAxis energyAxisOfLine(const QByteArray &line);

// Of a sentence that may be about the energies. Shorter names than words do not count there.
[[nodiscard]] EnergyAxis energyAxisInText(const QByteArray &text);

// Whether a sentence speaks of energies in a way that a table without a unit of its own must not be
// read without a word from the user.
[[nodiscard]] bool mayTellOfEnergies(const EnergyAxis &axis, const EnergyChoice &choice);

// Why energies cannot be read without a word from the user.
struct EnergyDoubt {
    QByteArray reason;
    Remedy remedy;
};

// The unit in which to read energies that the text describes so: the chosen one, else the one that
// is named, else nothing.
[[nodiscard]] std::variant<std::optional<EnergyUnit>, EnergyDoubt>
unitToRead(const EnergyAxis &axis, const QByteArray &text, const EnergyChoice &choice);

// Makes energies in eV of those in another unit, and sorts the points by them. Returns the index of
// the first point that has no energy; the points are of no use then.
[[nodiscard]] std::optional<qsizetype> convertEnergies(QList<QPointF> &points, EnergyUnit unit);

// What convertEnergies() has done, for the user.
[[nodiscard]] QByteArray conversionNote(EnergyUnit unit);

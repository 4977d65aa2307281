// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/energyunits.h"
#include "exchange/exchanged.h"

#include <QByteArray>
#include <QList>
#include <QPointF>

#include <optional>
#include <variant>

// Finds out what a heading, a label or a comment of another program says about the energies: their
// quantity and unit. It understands headings in a few languages.

// The user's settings where the file says nothing or something else.
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

// The heading of one column, such as "Energy / eV" or "wavelength (nm)".
[[nodiscard]] EnergyAxis energyAxisOfHeading(const QByteArray &heading);

// A line that begins with the heading of the energies, before those of other columns. Unknown if it
// does not begin with a quantity.
[[nodiscard]] EnergyAxis energyAxisOfLine(const QByteArray &line);

// A sentence that may be about the energies. Short names do not count there.
[[nodiscard]] EnergyAxis energyAxisInText(const QByteArray &text);

// Whether a sentence casts so much doubt on the energies that a table without its own unit may be
// read only after the user has chosen.
[[nodiscard]] bool mayTellOfEnergies(const EnergyAxis &axis, const EnergyChoice &choice);

// Why the user must choose before energies can be read.
struct EnergyDoubt {
    QByteArray reason;
    Remedy remedy;
};

// The unit of energies that the text describes so: the chosen one, otherwise the named one,
// otherwise nothing.
[[nodiscard]] std::variant<std::optional<EnergyUnit>, EnergyDoubt>
unitToRead(const EnergyAxis &axis, const QByteArray &text, const EnergyChoice &choice);

// Converts energies to eV and sorts the points by them. Returns the index of the first point
// without an energy; the points are useless then.
[[nodiscard]] std::optional<qsizetype> convertEnergies(QList<QPointF> &points, EnergyUnit unit);

// Describes a conversion to the user.
[[nodiscard]] QByteArray conversionNote(EnergyUnit unit);

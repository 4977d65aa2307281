// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/energyaxis.h"
#include "exchange/exchanged.h"

#include <QByteArray>
#include <QByteArrayList>

#include <variant>

// How to read a table where the file does not say it.
struct TableReading {
    char decimal = 0;           // '.' or ','; 0 to find it out
    QByteArrayList columns;     // of the energy and the intensity: numbers from 1 or headings
    EnergyChoice energies = {}; // settles what headings and comments say
};

// Reads a table of numbers: comma, semicolon, tab or white space between the columns, decimal
// points or commas. Lines that begin with "#" or "%" are comments; "# Key: value" with the key of a
// spectrum's field is metadata. Above the first point only comments, headings and text without two
// numbers may stand. Energies in a unit from headings or comments become eV. The table is refused
// if it can be read in two ways, if a line is no point, or if the energies are not those of
// photons.
[[nodiscard]] std::variant<ExchangedSpectrum, ExchangeError> readTable(const QByteArray &bytes,
                                                                       const TableReading &reading);

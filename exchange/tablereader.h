// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/exchanged.h"

#include <QByteArray>
#include <QByteArrayList>

#include <variant>

// How to read a table where the file does not say it.
struct TableReading {
    char decimal = 0;       // '.' or ','; 0 to find it out
    QByteArrayList columns; // of the energy and the intensity: numbers from 1 or headings
};

// Reads a table of numbers: comma, semicolon, tab or white space between the columns, decimal
// points or commas. Lines that begin with "#" or "%" are comments; "# Key: value" with the key of a
// spectrum's field is metadata. The last line of text before the numbers holds the headings. A text
// that could be read in two ways is refused, and so is one with a line that is no point.
[[nodiscard]] std::variant<ExchangedSpectrum, ExchangeError> readTable(const QByteArray &bytes,
                                                                       const TableReading &reading);

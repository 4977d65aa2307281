// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/energyaxis.h"
#include "exchange/exchanged.h"
#include "exchange/tablelayout.h"

#include <QByteArrayList>
#include <QList>

#include <optional>
#include <variant>

// What a table says of its energies.
struct TableEnergies {
    std::optional<EnergyUnit> unit; // nothing if neither the file nor the user names one
    qsizetype line = 0;             // the comment or text that says it; 0 if it is none
    bool isHeadingKept = false;     // all that the heading says is its unit
    QByteArrayList warnings;
};

// Looks at the headings of the column of energies (from 0), else at the line next above the
// numbers. Where they name no unit, other lines must not speak of one. An error if the energies
// cannot be read without a word from the user.
[[nodiscard]] std::variant<TableEnergies, ExchangeError>
tableEnergies(const TableLayout &layout, qsizetype column, const QList<TableLine> &comments,
              const EnergyChoice &choice);

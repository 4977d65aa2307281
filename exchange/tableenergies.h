// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/energyaxis.h"
#include "exchange/exchanged.h"
#include "exchange/tablelayout.h"

#include <QByteArrayList>
#include <QList>

#include <optional>
#include <variant>

// What a table says about its energies.
struct TableEnergies {
    std::optional<EnergyUnit> unit; // nothing if neither the file nor the user names one
    qsizetype line = 0;             // the comment or text that says it; 0 if it is none
    bool isHeadingKept = false;     // all that the heading says is its unit
    QByteArrayList warnings;
};

// Checks the headings of the column of energies (from 0), otherwise the line right above the
// numbers. If they name no unit, no other line may name one. An error if the user must choose
// before the energies can be read.
[[nodiscard]] std::variant<TableEnergies, ExchangeError>
tableEnergies(const TableLayout &layout, qsizetype column, const QList<TableLine> &comments,
              const EnergyChoice &choice);

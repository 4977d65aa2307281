// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/exchanged.h"
#include "exchange/tablelines.h"

#include <QByteArray>
#include <QList>

#include <variant>
#include <vector>

// The lines of a table by kind, in one dialect.
struct TableLayout {
    TableDialect dialect;
    QList<TableLine> texts;    // above the numbers, without the headings
    QList<TableLine> headings; // lines right above the numbers with as many fields as these
    QList<TableLine> rows;     // from the first that is one of numbers to the end
    qsizetype width = 0;       // columns of the first row

    // The headings of a column (from 0), joined; empty if there are none.
    [[nodiscard]] QByteArray heading(qsizetype column) const;
};

// The possible layouts of lines without comments and empty ones: those whose rows begin first.
// decimal is '.' or ','; 0 allows both. An error, with its line, if there is no row, or if a line
// above the rows could be a point that no dialect can read.
[[nodiscard]] std::variant<std::vector<TableLayout>, ExchangeError>
possibleLayouts(const QList<TableLine> &lines, char decimal);

// How many words of a text are numbers, with or without a unit.
[[nodiscard]] qsizetype countNumbers(const QByteArray &text);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>

#include <optional>

// The way in which a table writes numbers on a line.
struct TableDialect {
    char separator; // ' ' for any run of white space
    char decimal;   // '.' or ','
};

struct TableLine {
    qsizetype number; // from 1
    QByteArray text;
};

// The lines of a text with any usual encoding and line ends. A guessed encoding sets warning.
[[nodiscard]] QList<TableLine> linesOfText(const QByteArray &bytes, QByteArray &warning);

// A field without surrounding spaces of any kind, and with hyphens for Unicode's minus signs.
[[nodiscard]] QByteArray plainField(const QByteArray &field);

// The texts between the separators, without quotation marks and surrounding blanks. A separator at
// the end of the line starts no field.
[[nodiscard]] QByteArrayList fieldsOf(const QByteArray &line, const TableDialect &dialect);

// The number of a field from plainField(). A decimal comma and a decimal point exclude each other.
[[nodiscard]] std::optional<double> fieldNumber(const QByteArray &text,
                                                const TableDialect &dialect);

// Whether the comma of a number may group thousands: "1,234".
[[nodiscard]] bool looksLikeThousands(const QByteArray &field);

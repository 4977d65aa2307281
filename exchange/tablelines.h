// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>

#include <optional>

// How the numbers of a table stand on a line.
struct TableDialect {
    char separator; // ' ' for any run of white space
    char decimal;   // '.' or ','
};

struct TableLine {
    qsizetype number; // from 1
    QByteArray text;
};

// The lines of a text in any of the usual encodings and with any of the usual line ends. Says in
// warning if the encoding had to be guessed.
[[nodiscard]] QList<TableLine> linesOfText(const QByteArray &bytes, QByteArray &warning);

// A field without spaces of any kind around it, and with a hyphen for each minus of Unicode.
[[nodiscard]] QByteArray plainField(const QByteArray &field);

// What stands between the separators, without quotation marks and blanks around it; an empty field
// at the end of the line, left by a separator there, is none.
[[nodiscard]] QByteArrayList fieldsOf(const QByteArray &line, const TableDialect &dialect);

// The number of one field as plainField() gives it. A decimal comma and a decimal point exclude
// each other.
[[nodiscard]] std::optional<double> fieldNumber(const QByteArray &text,
                                                const TableDialect &dialect);

// Whether a number with a comma could be one of thousands as well: "1,234".
[[nodiscard]] bool looksLikeThousands(const QByteArray &field);

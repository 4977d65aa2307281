// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

// Where a JSON text that is cut off ends. A parser calls the end of such a file a syntax error;
// this lets the finding say that the rest is missing, as after a broken transfer.
struct CutOff {
    qsizetype offset = 0; // of its last character that is no blank
    QString within;       // "an object"
};

// Nothing if more is wrong with the text than its early end. It must be UTF-8, not only blanks, and
// correct up to errorOffset.
[[nodiscard]] std::optional<CutOff> cutOffOf(QByteArrayView text, qsizetype errorOffset);

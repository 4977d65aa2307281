// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

// Where a text that is the beginning of a JSON text ends.
struct CutOff {
    qsizetype offset = 0; // of its last character that is no blank
    QString within;       // "an object"
};

// Nothing if more is wrong with the text than that it ends too early. It has to be UTF-8 and
// something else than blanks; up to errorOffset a parser found nothing wrong with it.
[[nodiscard]] std::optional<CutOff> cutOffOf(QByteArrayView text, qsizetype errorOffset);

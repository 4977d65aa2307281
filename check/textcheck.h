// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <QString>

#include <optional>

// The use of a text field of a record.
enum class TextUse {
    Text,
    Lines,    // one a line
    Energy,   // a number in eV
    Quantity, // begins with a number as a rule: a temperature, a resolution
};

// Checks the markup of a text, and its numbers for decimal commas. Other values are skipped.
void checkText(const JsonValue &value, TextUse use, FindingList &findings);

// The text without tags and surrounding blanks; empty if value is no text.
[[nodiscard]] QString plainText(const JsonValue &value);

// Whether a text is a number with a decimal comma, perhaps with an uncertainty and a unit.
[[nodiscard]] bool hasDecimalComma(const QString &plain);

// The number at the start of an energy's text; nothing if there is none. isAlone says whether only
// the uncertainty of its last digits follows: 9.24(3).
struct EnergyText {
    double value;     // eV
    double tolerance; // eV, by which it may be off: half its last digit, or its uncertainty
    bool isAlone;
};
[[nodiscard]] std::optional<EnergyText> energyOf(const QString &plain);

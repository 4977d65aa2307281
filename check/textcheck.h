// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <QString>

#include <optional>

// What a text field of a record is used for.
enum class TextUse {
    Text,
    Lines,    // one a line
    Energy,   // a number in eV
    Quantity, // begins with a number as a rule: a temperature, a resolution
};

// Checks the markup of a text, and numbers for decimal commas. What is no text is passed over.
void checkText(const JsonValue &value, TextUse use, FindingList &findings);

// The text without tags and without blanks around it; empty if value is no text.
[[nodiscard]] QString plainText(const JsonValue &value);

// Whether a text is a number with a decimal comma, perhaps with an uncertainty and a unit.
[[nodiscard]] bool hasDecimalComma(const QString &plain);

// The number that an energy's text begins with. Nothing if it does not begin with one; isAlone
// tells whether there is anything else in it than the uncertainty of its last digits: 9.24(3).
struct EnergyText {
    double value;     // eV
    double tolerance; // eV, by which it may be off: half its last digit, or its uncertainty
    bool isAlone;
};
[[nodiscard]] std::optional<EnergyText> energyOf(const QString &plain);

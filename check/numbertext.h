// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

#include <optional>

// The form of a number in a JSON text.
struct NumberForm {
    int significantDigits; // without zeros before and behind
    bool isPlain;          // as the editor writes it: no exponent, no zero that could be left out
};
[[nodiscard]] NumberForm formOf(QByteArrayView raw);

// The double nearest to a JSON number; nothing if it is too large or too close to zero.
[[nodiscard]] std::optional<double> valueOf(QByteArrayView raw);

// The weight of the last written digit: 0.01 for 1.25, 100 for 3e2.
[[nodiscard]] double lastDigitOf(QByteArrayView raw);

// Whether loading changes an energy or intensity by more than a rounding error of its computation.
[[nodiscard]] bool losesDigits(QByteArrayView raw, double value);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

// Numbers in other programs' files: in the C locale, whatever the user's is.

// The value of a text that is a finite decimal number, apart from blanks around it.
[[nodiscard]] std::optional<double> numberIn(QByteArrayView text);

// The shortest text that reads as this value.
[[nodiscard]] QByteArray shortestText(double value);

// value rounded to twelve significant digits, which removes the noise of computed energies.
[[nodiscard]] double rounded(double value);

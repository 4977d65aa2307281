// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

// Numbers in files of other programs: C-locale, whatever the user's locale is.

// The value of a text that is a finite decimal number as a whole, blanks around it aside.
[[nodiscard]] std::optional<double> numberIn(QByteArrayView text);

// The shortest text that reads as the same value.
[[nodiscard]] QByteArray shortestText(double value);

// value rounded to twelve significant digits: takes away the noise of computed energies.
[[nodiscard]] double rounded(double value);

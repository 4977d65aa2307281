// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QList>

#include <cmath>
#include <optional>
#include <variant>

// The numbers on the data lines of JCAMP-DX: plain (AFFN), with their sign as the separator (PAC)
// or squeezed into their first digit (SQZ), as differences (DIF), and repeated (DUP).

struct AsdfLine {
    double x = 0;          // the abscissa that the line begins with
    double xPrecision = 0; // half a unit of its last digit
    QList<double> values;  // ordinates, differences added up; NaN for one that is missing ("?")
    // Whether the last one was given as a difference: the next line then repeats it as a check.
    bool endsInDifference = false;
};

struct AsdfError {
    QByteArray reason;
};

[[nodiscard]] std::variant<AsdfLine, AsdfError> readAsdfLine(QByteArrayView line);

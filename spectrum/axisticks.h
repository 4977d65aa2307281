// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>

// The round values of an axis, ascending, and one label for each. A label is exact: read as a
// decimal it gives the same double.
struct AxisTicks {
    QList<double> values;
    QStringList labels;
};

inline constexpr int leastTicks = 3;
inline constexpr int mostTicks = 9;

// The multiples within a range, ends included, of a step that is 1, 2, 2.5 or 5 times a power of
// ten: as many as possible up to most, but at least leastTicks and never more than mostTicks. There
// are fewer where doubles lie too far apart, in ranges narrower than 1e-12 of their numbers. A
// range without width has its one value; one that is not finite has none.
//
// All labels have two decimals, or more if the step needs them. Numbers under a thousandth, or from
// a million on, share a power of ten, as in "2.5×10⁻⁵"; large numbers only if that is shorter.
[[nodiscard]] AxisTicks axisTicks(double min, double max, int most = mostTicks);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QtGlobal>

// The differences of two lists of points. Points are paired by energy; several with the same energy
// are paired in order.
struct PointDifference {
    qsizetype added = 0;
    qsizetype removed = 0;
    qsizetype changed = 0; // same energy, other intensity
    // Of the changed points: the largest difference of intensities, in their unit, and where it is.
    double largest = 0;
    double largestAtEv = 0;
    bool reordered = false; // nothing else differs, but the order does

    [[nodiscard]] bool isNone() const
    {
        return added == 0 && removed == 0 && changed == 0 && !reordered;
    }
};

[[nodiscard]] PointDifference differenceOf(const QList<QPointF> &before,
                                           const QList<QPointF> &after);

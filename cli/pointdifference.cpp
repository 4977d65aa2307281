// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/pointdifference.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

std::vector<QPointF> byEnergy(const QList<QPointF> &points)
{
    std::vector<QPointF> sorted(points.begin(), points.end());
    std::stable_sort(sorted.begin(), sorted.end(), [](const QPointF &left, const QPointF &right) {
        return left.x() < right.x();
    });
    return sorted;
}

// QPointF's comparison is fuzzy.
bool isSame(const QPointF &left, const QPointF &right)
{
    return left.x() == right.x() && left.y() == right.y();
}

} // namespace

PointDifference differenceOf(const QList<QPointF> &before, const QList<QPointF> &after)
{
    const std::vector<QPointF> old = byEnergy(before);
    const std::vector<QPointF> present = byEnergy(after);
    PointDifference result;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < old.size() || j < present.size()) {
        if (j == present.size() || (i < old.size() && old[i].x() < present[j].x())) {
            ++result.removed;
            ++i;
        } else if (i == old.size() || present[j].x() < old[i].x()) {
            ++result.added;
            ++j;
        } else {
            const double difference = std::abs(present[j].y() - old[i].y());
            if (difference > 0)
                ++result.changed;
            if (difference > result.largest) {
                result.largest = difference;
                result.largestAtEv = old[i].x();
            }
            ++i;
            ++j;
        }
    }
    result.reordered =
        result.isNone()
        && !std::equal(before.begin(), before.end(), after.begin(), after.end(), isSame);
    return result;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <vector>

// How many characters (or bytes) of a text have to be put in, left out or changed to make another
// one of it; with swaps also to change places with a neighbour.
enum class Swaps { No, Yes };
template <typename Text>
[[nodiscard]] qsizetype editDistance(const Text &from, const Text &to, Swaps swaps)
{
    const qsizetype width = to.size() + 1;
    std::vector<qsizetype> table(static_cast<std::size_t>((from.size() + 1) * width));
    const auto at = [&](qsizetype i, qsizetype j) -> qsizetype & {
        return table[static_cast<std::size_t>(i * width + j)];
    };
    for (qsizetype i = 0; i <= from.size(); ++i) {
        for (qsizetype j = 0; j <= to.size(); ++j) {
            if (i == 0 || j == 0) {
                at(i, j) = i + j;
                continue;
            }
            const qsizetype change = from[i - 1] == to[j - 1] ? 0 : 1;
            at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + change});
            if (swaps == Swaps::Yes && i > 1 && j > 1 && from[i - 1] == to[j - 2]
                && from[i - 2] == to[j - 1])
                at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    }
    return table.back();
}

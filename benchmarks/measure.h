// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <utility>
#include <vector>

// Measures how many times as long one way of doing something takes as another. Ratios hold on every
// machine, seconds on one only.

// What both ways took, medians in seconds, and the ratio, the median of those of the single rounds.
struct Ratio {
    double subjectSeconds;
    double referenceSeconds;
    double value;
};

// The processor time of a job: other programs' share of the machine does not count.
template <typename Job>
double secondsOf(Job &&job)
{
    const std::clock_t start = std::clock();
    std::forward<Job>(job)();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

inline double medianOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Makes a ratio of two functions that each do their job once and return the seconds that count.
// They take turns, each first in every other round, so that a change of the machine's pace hits
// both; the first round of each does not count.
template <typename Subject, typename Reference>
Ratio measureSeconds(int rounds, Subject &&subject, Reference &&reference)
{
    std::vector<double> subjects;
    std::vector<double> references;
    std::vector<double> ratios;
    for (int round = 0; round <= rounds; ++round) {
        double seconds[2]{};
        for (const int turn : {round % 2, 1 - round % 2})
            seconds[turn] = turn == 0 ? subject() : reference();
        if (round == 0)
            continue;
        subjects.push_back(seconds[0]);
        references.push_back(seconds[1]);
        ratios.push_back(seconds[0] / seconds[1]);
    }
    return {medianOf(subjects), medianOf(references), medianOf(ratios)};
}

// The same for two jobs of which all time counts.
template <typename Subject, typename Reference>
Ratio measureRatio(int rounds, Subject &&subject, Reference &&reference)
{
    return measureSeconds(
        rounds, [&] { return secondsOf(subject); }, [&] { return secondsOf(reference); });
}

// Prints "what: 1.70 times reference (limit 2)". Returns whether the limit is kept.
inline bool report(const char *what, const Ratio &ratio, const char *reference, double limit)
{
    const bool kept = ratio.value <= limit;
    std::printf("%s: %.2f times %s (limit %g%s; %.3g ms against %.3g ms)\n", what, ratio.value,
                reference, limit, kept ? "" : ", MISSED", ratio.subjectSeconds * 1e3,
                ratio.referenceSeconds * 1e3);
    std::fflush(stdout);
    return kept;
}

// Keeps the compiler from leaving out work whose result nobody reads.
template <typename Value>
void keep(const Value &value)
{
    [[maybe_unused]] static volatile unsigned char sink;
    sink = *reinterpret_cast<const volatile unsigned char *>(&value);
}

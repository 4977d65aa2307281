// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>
#include <variant>

// The points of a spectrum as text and as numbers. A point is x, the photon energy in eV, and y,
// the intensity in arbitrary units; its text is one line of two C-locale numbers between runs of
// commas, semicolons and white space.

// The lines of a point text that are not empty; lines of blanks stay.
[[nodiscard]] QStringList splitPointLines(const QString &text);

// The point of one line; nothing if the line is not exactly two numbers.
[[nodiscard]] std::optional<QPointF> parsePoint(QStringView line);

// The points among lines, in their order; lines that are not points are passed over. A million
// lines must not hold up the window: usual short numbers are converted here, longer ones by
// from_chars, and only unusual ones by Qt, which is slower by far.
[[nodiscard]] QList<QPointF> parsePoints(const QStringList &lines);

// The significant digits of energies and intensities that loading keeps.
inline constexpr int keptDigits = 6;

// One line "x; y" with that many significant digits each, as points from a file are shown.
[[nodiscard]] QString loadedPointLine(double energyEv, double intensity);

// The value that this line has for an energy or intensity.
[[nodiscard]] double loadedNumber(double number);

// Lines "x y" with fixed decimals.
[[nodiscard]] QStringList fixedPointLines(const QList<QPointF> &points, int energyDecimals,
                                          int intensityDecimals);

// The points scaled so that the largest intensity (by sign, not by magnitude) is 1000; nothing if
// there is no point or that intensity is 0.
[[nodiscard]] std::optional<QList<QPointF>> normalised(QList<QPointF> points);

enum class ResampleError {
    NoPoints,
    GridTooLarge, // the range is not finite or needs more than 10,000,000 energies
};

// The points interpolated linearly on an even grid of 0.001 eV that starts one step above the first
// energy and ends at most one step below the last. Energies are not sorted and taken as ascending.
// For each grid energy the first segment that ends at or above it counts; without one, the grid
// energy has no point. The result may be empty.
[[nodiscard]] std::variant<QList<QPointF>, ResampleError> resampled(const QList<QPointF> &points);

// The corners of the stick plot of a line spectrum: a stick rises from the baseline to each point
// but the last, to which a slanted line leads from the baseline at the energy before it.
[[nodiscard]] QList<QPointF> stickPlot(const QList<QPointF> &points);

// The points of two finite numbers, in their order: a chart can show no others.
[[nodiscard]] QList<QPointF> finitePoints(const QList<QPointF> &points);

[[nodiscard]] bool isFinite(const QPointF &point);

// The ranges of both coordinates over points.
struct PointRange {
    double minX;
    double maxX;
    double minY;
    double maxY;
};

// The ranges over the points of two finite numbers. Nothing if there is none, or if a span is not
// finite: an axis cannot show that.
[[nodiscard]] std::optional<PointRange> finiteRange(const QList<QPointF> &points);

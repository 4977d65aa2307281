// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "spectrum/points.h"

#include <QChart>
#include <QList>
#include <QPointF>

#include <optional>

// The chart of one spectrum, intensity in arbitrary units over photon energy in eV, as the editor
// and programs without a window show it.

// Gives an empty chart its axes and its one series.
void setUpSpectrumChart(QChart *chart);

// Shows the points of two finite numbers, as a curve or as the sticks of a line spectrum, over
// their whole range. Without such points, or if their range is not finite, the axes stay as they
// are. Does nothing to a chart that has not been set up.
void drawSpectrum(QChart *chart, const QList<QPointF> &points, bool isLineSpectrum);
// The same over another range.
void drawSpectrum(QChart *chart, const QList<QPointF> &points, bool isLineSpectrum,
                  const std::optional<PointRange> &range);

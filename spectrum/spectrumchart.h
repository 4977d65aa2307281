// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "spectrum/points.h"

#include <QChart>
#include <QList>
#include <QPointF>

#include <optional>

// The chart of one spectrum, intensity in arbitrary units over photon energy in eV, for the editor
// and programs without a window.

// Gives an empty chart its axes and its one series.
void setUpSpectrumChart(QChart *chart);

// Shows the points of two finite numbers, as a curve or as the sticks of a line spectrum, over
// their whole range. If there are none, or their range is not finite, the axes do not change. Does
// nothing to a chart that was not set up.
void drawSpectrum(QChart *chart, const QList<QPointF> &points, bool isLineSpectrum);
// The same over another range.
void drawSpectrum(QChart *chart, const QList<QPointF> &points, bool isLineSpectrum,
                  const std::optional<PointRange> &range);

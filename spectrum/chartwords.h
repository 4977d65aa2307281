// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QString>

// Describes the chart of a spectrum in words, translated, for those who do not see it.

// The number of points, the range of their photon energies in eV and the highest point. Points that
// are not finite are not drawn and only counted.
[[nodiscard]] QString pointsInWords(const QList<QPointF> &points);

// The same with the title of the spectrum, which may be empty.
[[nodiscard]] QString spectrumInWords(const QString &title, const QString &points);

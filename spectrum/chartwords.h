// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QString>

// What a chart of a spectrum shows, in words, for those who do not see it. Translated.

// How many points there are, the range of their photon energies in eV and the highest of them.
// Points that are not finite, which are not drawn, count only as points.
[[nodiscard]] QString pointsInWords(const QList<QPointF> &points);

// The same with the title of the spectrum, which may be empty.
[[nodiscard]] QString spectrumInWords(const QString &title, const QString &points);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QPointF>
#include <QSize>
#include <QString>

#include <optional>

struct EnergyRange {
    double fromEv;
    double toEv;
};

struct PlotFormat {
    enum Kind { Png, Svg, Pdf };
    Kind kind = Png;
    QSize size{800, 500};             // in pixels of 96 to the inch
    int dpi = 96;                     // of a PNG: it has size times dpi / 96 pixels
    std::optional<EnergyRange> range; // all of the points, with room around, if there is none
    QString title;                    // above the chart, restricted markup; none if empty
};

// Whether a picture of this format fits into memory.
[[nodiscard]] bool isDrawable(const PlotFormat &format);

// A picture file with the editor's chart of points, whose range must be finite; empty if it cannot
// be made. Needs a QApplication.
[[nodiscard]] QByteArray pictureOf(const QList<QPointF> &points, bool isLineSpectrum,
                                   const PlotFormat &format);

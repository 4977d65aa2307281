// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/chartwords.h"

#include "spectrum/points.h"

#include <QCoreApplication>

#include <algorithm>

namespace
{

QString translated(const char *text)
{
    return QCoreApplication::translate("SpectrumChartView", text);
}

// Written as in the read-out.
QString energyText(double energyEv)
{
    return QString::number(energyEv, 'f', 4);
}

QString intensityText(double intensity)
{
    return QString::number(intensity, 'f', 2);
}

} // namespace

QString pointsInWords(const QList<QPointF> &points)
{
    const QPointF *highest = nullptr;
    double minX = 0;
    double maxX = 0;
    for (const QPointF &point : points) {
        if (!isFinite(point))
            continue;
        minX = highest ? std::min(minX, point.x()) : point.x();
        maxX = highest ? std::max(maxX, point.x()) : point.x();
        if (!highest || point.y() > highest->y())
            highest = &point;
    }
    if (points.isEmpty())
        return translated(QT_TRANSLATE_NOOP("SpectrumChartView", "no points"));
    if (!highest)
        return translated(QT_TRANSLATE_NOOP("SpectrumChartView", "%1 points, none of them finite"))
            .arg(points.size());
    if (points.size() == 1)
        return translated(
                   QT_TRANSLATE_NOOP("SpectrumChartView", "one point at %1 eV, intensity %2"))
            .arg(energyText(highest->x()), intensityText(highest->y()));
    return translated(QT_TRANSLATE_NOOP("SpectrumChartView",
                                        "%1 points from %2 eV to %3 eV, highest at %4 eV, "
                                        "intensity %5"))
        .arg(QString::number(points.size()), energyText(minX), energyText(maxX),
             energyText(highest->x()), intensityText(highest->y()));
}

QString spectrumInWords(const QString &title, const QString &points)
{
    const QString named =
        title.isEmpty()
            ? translated(QT_TRANSLATE_NOOP("SpectrumChartView", "Spectrum without a title"))
            : title;
    return translated(QT_TRANSLATE_NOOP("SpectrumChartView", "%1: %2")).arg(named, points);
}

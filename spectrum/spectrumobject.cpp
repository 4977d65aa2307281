// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumobject.h"

#include <QJsonArray>
#include <QJsonValue>

namespace
{

QList<QPointF> pointsOfObjects(const QJsonArray &array)
{
    QList<QPointF> points;
    points.reserve(array.size());
    for (const auto &element : array) {
        const QJsonObject point = element.toObject();
        points.append(
            {point.value(energiesKey).toDouble(), point.value(intensitiesKey).toDouble()});
    }
    return points;
}

QList<QPointF> pointsOfArrays(const QJsonArray &energies, const QJsonArray &intensities)
{
    QList<QPointF> points;
    if (energies.size() != intensities.size())
        return points;
    points.reserve(energies.size());
    auto intensity = intensities.begin();
    for (const auto &energy : energies)
        points.append({energy.toDouble(), (*intensity++).toDouble()});
    return points;
}

} // namespace

QList<QPointF> storedPoints(const QJsonObject &spectrum)
{
    if (spectrum.contains(pointObjectsKey))
        return pointsOfObjects(spectrum.value(pointObjectsKey).toArray());
    return pointsOfArrays(spectrum.value(energiesKey).toArray(),
                          spectrum.value(intensitiesKey).toArray());
}

void storePoints(QJsonObject &spectrum, const QList<QPointF> &points)
{
    QJsonArray energies;
    QJsonArray intensities;
    for (const QPointF &point : points) {
        energies.append(point.x());
        intensities.append(point.y());
    }
    spectrum.remove(pointObjectsKey);
    spectrum.insert(energiesKey, energies);
    spectrum.insert(intensitiesKey, intensities);
}

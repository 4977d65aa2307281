// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumobject.h"

#include "species/speciesmodel.h"
#include "spectrum/points.h"

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

bool belongsTo(SpectrumKind field, int type)
{
    const SpectrumKind spectrum =
        type == simulationType ? SpectrumKind::Simulation : SpectrumKind::Experiment;
    return field == SpectrumKind::Any || field == spectrum;
}

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

SpectrumRecord SpectrumRecord::fromJson(const QJsonObject &spectrum)
{
    SpectrumRecord record;
    record.type = spectrum.value(spectrumTypeKey).toInt();
    record.isLineSpectrum = spectrum.value(lineSpectrumKey).toBool();
    for (std::size_t i = 0; i < spectrumTextFields.size(); ++i) {
        if (belongsTo(spectrumTextFields[i].kind, record.type))
            record.texts[i] = spectrum.value(spectrumTextFields[i].key).toString();
    }
    const QList<QPointF> points = storedPoints(spectrum);
    record.pointLines.reserve(points.size());
    for (const QPointF &point : points)
        record.pointLines.append(loadedPointLine(point.x(), point.y()));
    return record;
}

QString SpectrumRecord::text(SpectrumColumn column) const
{
    for (std::size_t i = 0; i < spectrumTextFields.size(); ++i) {
        if (spectrumTextFields[i].column == column)
            return texts[i];
    }
    return {};
}

QJsonObject SpectrumRecord::toJson(const QList<QPointF> &points) const
{
    QJsonObject spectrum;
    spectrum.insert(spectrumTypeKey, type);
    spectrum.insert(lineSpectrumKey, isLineSpectrum);
    for (std::size_t i = 0; i < spectrumTextFields.size(); ++i) {
        const SpectrumTextField &field = spectrumTextFields[i];
        // Foreign tags are removed only from the fields that every spectrum has.
        if (field.kind == SpectrumKind::Any)
            spectrum.insert(field.key, cleanHtmlContent(texts[i]));
        else if (belongsTo(field.kind, type))
            spectrum.insert(field.key, texts[i]);
    }
    storePoints(spectrum, points);
    return spectrum;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/assaved.h"

#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/points.h"
#include "spectrum/spectrumfile.h"
#include "spectrum/spectrumobject.h"

#include <QList>

QJsonObject asSavedSpectrum(const QJsonObject &spectrum)
{
    const SpectrumRecord record = SpectrumRecord::fromJson(spectrum);
    return record.toJson(parsePoints(record.pointLines));
}

QJsonObject asSavedSpeciesFile(const QJsonObject &file)
{
    SpeciesModel species(nullptr);
    species.loadFromJson(file.value(speciesKey).toObject());
    QList<QJsonObject> datasets;
    for (const QString &key : datasetKeys(file))
        datasets.append(asSavedSpectrum(file.value(key).toObject()));
    return speciesFileObject(species.toJson(), datasets);
}

QJsonObject asSavedSpectrumFile(const QJsonObject &file)
{
    return spectrumFileObject(asSavedSpectrum(file));
}

std::optional<QJsonObject> asSavedFile(const QJsonObject &file)
{
    if (hasType(file, speciesFileType))
        return asSavedSpeciesFile(file);
    if (hasType(file, spectrumFileType))
        return asSavedSpectrumFile(file);
    return std::nullopt;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/resaved.h"

#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumfile.h"
#include "spectrum/spectrummodel.h"

#include <QList>

namespace
{

QJsonObject resavedSpectrum(const QJsonObject &spectrum)
{
    SpectrumModel model(nullptr, nullptr);
    model.loadFromJson(spectrum);
    return model.toJson();
}

} // namespace

QJsonObject resavedSpeciesFile(const QJsonObject &file)
{
    SpeciesModel species(nullptr);
    species.loadFromJson(file.value(speciesKey).toObject());
    QList<QJsonObject> datasets;
    for (const QString &key : datasetKeys(file))
        datasets.append(resavedSpectrum(file.value(key).toObject()));
    return speciesFileObject(species.toJson(), datasets);
}

QJsonObject resavedSpectrumFile(const QJsonObject &file)
{
    return spectrumFileObject(resavedSpectrum(file));
}

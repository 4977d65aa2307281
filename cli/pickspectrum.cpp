// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/pickspectrum.h"

#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "spectrum/spectrumfile.h"
#include "spectrum/spectrumobject.h"

#include <QJsonArray>
#include <QJsonValue>

#include <algorithm>

namespace
{

constexpr qsizetype prefixLength = sizeof "Dataset" - 1;

QList<NumberedSpectrum> allSpectra(const QJsonObject &file)
{
    if (hasType(file, spectrumFileType))
        return {{1, file}};
    QList<NumberedSpectrum> spectra;
    for (const QString &key : datasetKeys(file))
        spectra.append({key.sliced(prefixLength).toInt(), file.value(key).toObject()});
    return spectra;
}

qsizetype countNoNumbers(const QJsonObject &spectrum)
{
    qsizetype count = 0;
    const auto look = [&](const QJsonValue &value) { count += value.isDouble() ? 0 : 1; };
    if (spectrum.contains(pointObjectsKey)) {
        const QJsonArray points = spectrum.value(pointObjectsKey).toArray();
        for (const auto &point : points) {
            look(point.toObject().value(energiesKey));
            look(point.toObject().value(intensitiesKey));
        }
        return count;
    }
    for (const QLatin1String key : {energiesKey, intensitiesKey}) {
        const QJsonArray values = spectrum.value(key).toArray();
        for (const auto &value : values)
            look(value);
    }
    return count;
}

} // namespace

bool isSpectrumChoice(const QByteArray &text, bool allowAll)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return text.isEmpty() || (isNumber && number >= 0) || (allowAll && text == "all");
}

std::variant<QList<NumberedSpectrum>, QByteArray> pickSpectra(const QJsonObject &file,
                                                              const QByteArray &wanted)
{
    if (!hasType(file, spectrumFileType) && !hasType(file, speciesFileType))
        return QByteArray("neither a species nor a spectrum file");
    QList<NumberedSpectrum> spectra = allSpectra(file);
    if (spectra.isEmpty())
        return QByteArray("there is no spectrum");
    if (wanted == "all")
        return spectra;
    if (wanted.isEmpty()) {
        if (spectra.size() == 1)
            return spectra;
        return "there are " + QByteArray::number(spectra.size())
               + " spectra: say which one by --spectrum";
    }
    const int number = wanted.toInt();
    const auto it = std::find_if(spectra.begin(), spectra.end(),
                                 [&](const NumberedSpectrum &s) { return s.number == number; });
    if (it == spectra.end())
        return "there is no spectrum " + wanted;
    return QList{*it};
}

QByteArray whyPointsAreLost(const QJsonObject &spectrum)
{
    for (const QLatin1String key : {pointObjectsKey, energiesKey, intensitiesKey}) {
        const QJsonValue value = spectrum.value(key);
        if (!value.isUndefined() && !value.isArray())
            return QByteArray(key.data()) + " is no array";
    }
    const qsizetype energies = spectrum.value(energiesKey).toArray().size();
    const qsizetype intensities = spectrum.value(intensitiesKey).toArray().size();
    const bool hasObjects = spectrum.contains(pointObjectsKey);
    if (!hasObjects && energies != intensities)
        return QByteArray::number(energies) + " energies and " + QByteArray::number(intensities)
               + " intensities";
    if (hasObjects && energies + intensities > 0)
        return "the points under E and I, besides those under Spectrum";
    if (const qsizetype count = countNoNumbers(spectrum))
        return QByteArray::number(count) + " values that are no numbers";
    return {};
}

QByteArray whatElsePointsHold(const QJsonObject &spectrum)
{
    qsizetype count = 0;
    const QJsonArray points = spectrum.value(pointObjectsKey).toArray();
    for (const auto &value : points) {
        const QJsonObject point = value.toObject();
        count += point.size() - (point.contains(energiesKey) ? 1 : 0)
                 - (point.contains(intensitiesKey) ? 1 : 0);
    }
    return count == 0 ? QByteArray()
                      : QByteArray::number(count) + " values besides E and I in points";
}

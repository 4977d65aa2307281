// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/entrydifference.h"

#include "cli/spectrumpairs.h"
#include "files/jsonfile.h"
#include "pictures/picture.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumfile.h"
#include "spectrum/spectrumobject.h"

#include <QImage>
#include <QStringList>

namespace
{

QString described(const QImage &picture, const QJsonValue &value)
{
    if (value.toString().isEmpty())
        return QStringLiteral("no picture");
    if (picture.isNull())
        return QStringLiteral("a picture that cannot be decoded");
    return QStringLiteral("a picture of %1 x %2").arg(picture.width()).arg(picture.height());
}

void comparePictures(QList<FieldDifference> &fields, const QJsonValue &before,
                     const QJsonValue &after)
{
    if (before.toString() == after.toString())
        return;
    const auto decoded = [](const QJsonValue &value) {
        return decodePicture(QByteArray::fromBase64(value.toString().toUtf8()));
    };
    const QImage old = decoded(before);
    const QImage present = decoded(after);
    if (old.isNull() || !isSamePicture(old, present))
        fields.append(
            {keyOf(SpeciesColumn::Image), described(old, before), described(present, after), true});
}

QList<FieldDifference> profileDifferences(QJsonObject before, QJsonObject after)
{
    const QLatin1String imageKey = keyOf(SpeciesColumn::Image);
    QList<FieldDifference> fields;
    comparePictures(fields, before.take(imageKey), after.take(imageKey));
    return fields + fieldDifferences(before, after);
}

// A spectrum without its points. Point arrays that the program cannot read stay.
QJsonObject withoutPoints(QJsonObject spectrum)
{
    if (storedPoints(spectrum).isEmpty())
        return spectrum;
    for (const QLatin1String key : {energiesKey, intensitiesKey, pointObjectsKey})
        spectrum.remove(key);
    return spectrum;
}

QList<KeyedSpectrum> spectraIn(const QJsonObject &entry)
{
    if (hasType(entry, spectrumFileType))
        return {{"Spectrum", entry}};
    QList<KeyedSpectrum> spectra;
    for (const QString &key : datasetKeys(entry))
        spectra.append({key.toUtf8(), entry.value(key).toObject()});
    return spectra;
}

QList<SpectrumDifference> spectraDifferences(const QList<KeyedSpectrum> &before,
                                             const QList<KeyedSpectrum> &after)
{
    const SpectrumPairs paired = pairedSpectra(before, after);
    QList<SpectrumDifference> differences;
    for (const auto &[old, present] : paired.pairs) {
        SpectrumDifference difference{old.key, present.key, old.title, 0, {}, {}};
        difference.points = differenceOf(storedPoints(old.object), storedPoints(present.object));
        difference.fields =
            fieldDifferences(withoutPoints(old.object), withoutPoints(present.object));
        if (!difference.points.isNone() || !difference.fields.isEmpty())
            differences.append(difference);
    }
    for (const KeyedSpectrum &old : paired.removed)
        differences.append({old.key, {}, old.title, storedPoints(old.object).size(), {}, {}});
    for (const KeyedSpectrum &present : paired.added)
        differences.append(
            {{}, present.key, present.title, storedPoints(present.object).size(), {}, {}});
    return differences;
}

// The members of an entry besides the profile and the spectra.
QJsonObject remainder(QJsonObject entry)
{
    entry.remove(speciesKey);
    for (const QString &key : datasetKeys(entry))
        entry.remove(key);
    return entry;
}

} // namespace

EntryDifference differenceBetween(const QJsonObject &before, const QJsonObject &after)
{
    EntryDifference difference;
    difference.spectra = spectraDifferences(spectraIn(before), spectraIn(after));
    if (hasType(before, spectrumFileType))
        return difference;
    difference.profile =
        profileDifferences(before.value(speciesKey).toObject(), after.value(speciesKey).toObject());
    difference.rest = fieldDifferences(remainder(before), remainder(after));
    return difference;
}

QList<FieldDifference> fieldDifferences(const QJsonObject &before, const QJsonObject &after)
{
    QStringList keys = before.keys() + after.keys();
    keys.sort();
    keys.removeDuplicates();
    QList<FieldDifference> fields;
    for (const QString &key : std::as_const(keys)) {
        if (before.value(key) != after.value(key))
            fields.append({key, before.value(key), after.value(key)});
    }
    return fields;
}

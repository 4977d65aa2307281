// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/pickspectrum.h"

#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "spectrum/spectrumfile.h"

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

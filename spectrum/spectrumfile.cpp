// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumfile.h"

#include "species/jsonfile.h"

QJsonObject spectrumFileObject(QJsonObject spectrum)
{
    spectrum.insert(typeKey, spectrumFileType);
    return spectrum;
}

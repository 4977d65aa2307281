// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumfile.h"

#include "files/jsonfile.h"

QJsonObject spectrumFileObject(QJsonObject spectrum)
{
    spectrum.insert(typeKey, spectrumFileType);
    return spectrum;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonObject>
#include <QList>
#include <QPointF>

// What a file of another program's format holds of one spectrum.
struct ExchangedSpectrum {
    QJsonObject metadata;    // under the keys of a spectrum object, without points
    QList<QPointF> points;   // photon energy in eV, intensity
    QByteArrayList warnings; // what of the file is not kept, or was read with doubts
};

// Why a file is refused.
struct ExchangeError {
    qsizetype line; // from 1; 0 if it is about the file as a whole
    QByteArray reason;
};

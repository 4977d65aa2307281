// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonObject>
#include <QList>
#include <QPointF>

// One spectrum from a file in another program's format.
struct ExchangedSpectrum {
    QJsonObject metadata;    // under the keys of a spectrum object, without points
    QList<QPointF> points;   // photon energy in eV, intensity
    QByteArrayList warnings; // what of the file is not kept, or was read with doubts
};

// What the user can do to have a refused file read.
enum class Remedy {
    None,
    NameUnit,               // of the energies
    ConfirmPhotons,         // that the energies are those of photons
    NameUnitConfirmPhotons, // one of them, or both
    PassOverChecks,         // read it without comparing check values
};

// Why a file is refused.
struct ExchangeError {
    qsizetype line; // from 1; 0 if it is about the file as a whole
    QByteArray reason;
    Remedy remedy = Remedy::None;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>

#include <utility>

struct KeyedSpectrum {
    KeyedSpectrum(const QByteArray &keyInFile, const QJsonObject &spectrum);

    QByteArray key; // in its file
    QJsonObject object;
    QByteArray title; // without markup
};

struct SpectrumPairs {
    QList<std::pair<KeyedSpectrum, KeyedSpectrum>> pairs; // in the order of the file before
    QList<KeyedSpectrum> removed;
    QList<KeyedSpectrum> added;
};

// Pairs the spectra of two files: equal ones under the same key, then equal ones under different
// keys. The others are paired by title and type first, then any; among these by most points in
// common, then by key, then in order.
[[nodiscard]] SpectrumPairs pairedSpectra(const QList<KeyedSpectrum> &before,
                                          const QList<KeyedSpectrum> &after);

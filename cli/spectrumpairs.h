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

// Which spectra of two files belong together: those that are equal under the same key, then those
// that are equal under different ones. Of the others first those of the same title and type, then
// any; among these, those with the most points in common, then those under the same key, then the
// first ones.
[[nodiscard]] SpectrumPairs pairedSpectra(const QList<KeyedSpectrum> &before,
                                          const QList<KeyedSpectrum> &after);

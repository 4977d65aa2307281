// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>

#include <variant>

struct NumberedSpectrum {
    int number; // that of its key in the species file; 1 in a spectrum file
    QJsonObject object;
};

// The spectra of a species file in the order in which the editor loads them, or the one of a
// spectrum file, that --spectrum names: a number, "all", or nothing, which stands for the only one.
// Else a text that says why there is none.
[[nodiscard]] std::variant<QList<NumberedSpectrum>, QByteArray>
pickSpectra(const QJsonObject &file, const QByteArray &wanted);

// Whether text can be the value of --spectrum.
[[nodiscard]] bool isSpectrumChoice(const QByteArray &text, bool allowAll);

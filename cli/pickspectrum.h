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

// The spectra that --spectrum chooses from a species file, in the editor's order, or from a
// spectrum file: a number, "all", or nothing for the only one. Otherwise a text that says why there
// is none.
[[nodiscard]] std::variant<QList<NumberedSpectrum>, QByteArray>
pickSpectra(const QJsonObject &file, const QByteArray &wanted);

// Whether text is a possible value of --spectrum.
[[nodiscard]] bool isSpectrumChoice(const QByteArray &text, bool allowAll);

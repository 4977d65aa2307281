// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QList>
#include <QPointF>

#include <array>

// The keys of a spectrum object that are no texts, and its points as they stand in the file.

inline constexpr QLatin1String spectrumTypeKey("SpectType"); // index into spectrumTypeNames
inline constexpr QLatin1String lineSpectrumKey("LineSpectrum");
inline constexpr QLatin1String energiesKey("E");            // eV
inline constexpr QLatin1String intensitiesKey("I");         // arbitrary unit
inline constexpr QLatin1String pointObjectsKey("Spectrum"); // one object a point; never written

// The types of spectra, as the form offers them.
inline constexpr std::array spectrumTypeNames{
    QLatin1String("ms-TPES"), QLatin1String("ms-SPES"),       QLatin1String("TPES"),
    QLatin1String("PES"),     QLatin1String("FC simulation"), QLatin1String("PIS"),
};

// Photon energies in eV and intensities with all their digits; the record keeps six. Empty if there
// are not as many intensities as energies; what is not a number is 0.
[[nodiscard]] QList<QPointF> storedPoints(const QJsonObject &spectrum);

// Makes points those of the spectrum object.
void storePoints(QJsonObject &spectrum, const QList<QPointF> &points);

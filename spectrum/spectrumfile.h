// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QLatin1String>

// A spectrum file, and the clipboard's text for a spectrum: the spectrum object with "Type" beside
// its own keys.

inline constexpr QLatin1String spectrumFileType("Spectrum v1");

[[nodiscard]] QJsonObject spectrumFileObject(QJsonObject spectrum);

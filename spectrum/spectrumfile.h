// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QLatin1String>

// The type of a spectrum file and of the clipboard's text for a spectrum: a spectrum object with
// "Type" beside its own keys.

inline constexpr QLatin1String spectrumFileType("Spectrum v1");

[[nodiscard]] QJsonObject spectrumFileObject(QJsonObject spectrum);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>

#include <optional>

// What loading and saving without an edit makes of objects: the records read them and write
// themselves. Any thread may call these functions. Without a QGuiApplication an SVG image is lost.

// The species file's object, with "Type", as the editor writes it after loading file: spectra are
// renumbered in the order of loading, and keys unknown to the records are gone.
[[nodiscard]] QJsonObject asSavedSpeciesFile(const QJsonObject &file);

// The same for the object of a spectrum file.
[[nodiscard]] QJsonObject asSavedSpectrumFile(const QJsonObject &file);

// The same for the object of a file of either type; nothing for other objects.
[[nodiscard]] std::optional<QJsonObject> asSavedFile(const QJsonObject &file);

// The same for a spectrum object within a species file.
[[nodiscard]] QJsonObject asSavedSpectrum(const QJsonObject &spectrum);

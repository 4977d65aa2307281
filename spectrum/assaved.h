// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>

#include <optional>

// What becomes of objects that are loaded and saved again without an edit: the records read them
// and write themselves. Any thread will do. Without a QGuiApplication an SVG image is lost.

// The species file's object, with "Type", as the editor writes it after loading file: spectra are
// numbered anew in the order in which they are loaded, and what the records do not know is gone.
[[nodiscard]] QJsonObject asSavedSpeciesFile(const QJsonObject &file);

// The same for the object of a spectrum file.
[[nodiscard]] QJsonObject asSavedSpectrumFile(const QJsonObject &file);

// The same for the object of a file of either type; nothing for any other.
[[nodiscard]] std::optional<QJsonObject> asSavedFile(const QJsonObject &file);

// The same for a spectrum object within a species file.
[[nodiscard]] QJsonObject asSavedSpectrum(const QJsonObject &spectrum);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

// States the rules for what the editor makes of any JSON a second time, without code of the
// program, so that only a fault made twice goes unseen.

// text without any tag but sub, sup and br in lower case.
[[nodiscard]] QString expectedMarkup(const QString &text);

// The species object that is saved after this one was loaded into a record that never held an
// image. Its image is not changed: compare it with sameImageText().
[[nodiscard]] QJsonObject expectedSpecies(const QJsonObject &loaded);

// The spectrum object that is saved after this one was loaded.
[[nodiscard]] QJsonObject expectedSpectrum(const QJsonObject &loaded);

// The point lines that the editor shows for a spectrum object.
[[nodiscard]] QStringList expectedPointLines(const QJsonObject &loaded);

// The keys of a species file's spectra in the order in which they are loaded.
[[nodiscard]] QStringList expectedDatasetKeys(const QJsonObject &file);

// The species file that is saved after this one was loaded.
[[nodiscard]] QJsonObject expectedSpeciesFile(const QJsonObject &loaded);

// The object without byte order marks at the start of its texts: Qt drops one when it reads a text
// without escapes from a file.
[[nodiscard]] QJsonObject withoutByteOrderMarks(QJsonObject object);

// The species object's image as RGBA, 16 bits a channel, or null where it has none that is shown.
[[nodiscard]] QImage expectedImage(const QJsonObject &species);

// Whether bytes are a species file: correct JSON, an object, with the right "Type".
[[nodiscard]] std::optional<QJsonObject> expectedSpeciesFileIn(const QByteArray &bytes);

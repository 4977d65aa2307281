// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

// What the editor makes of any JSON, worked out here without a line of the program: the rules are
// stated a second time, so that a fault has to be made twice to stay unseen.

// text without any tag but sub, sup and br in lower case.
[[nodiscard]] QString expectedMarkup(const QString &text);

// The species object that is saved after this one was loaded into a record that never held an
// image. Its image is left as it was: compare it with sameImageText().
[[nodiscard]] QJsonObject expectedSpecies(const QJsonObject &loaded);

// The spectrum object that is saved after this one was loaded.
[[nodiscard]] QJsonObject expectedSpectrum(const QJsonObject &loaded);

// The point lines that the editor shows for a spectrum object.
[[nodiscard]] QStringList expectedPointLines(const QJsonObject &loaded);

// The keys of a species file's spectra in the order in which they are loaded.
[[nodiscard]] QStringList expectedDatasetKeys(const QJsonObject &file);

// The species file that is saved after this one was loaded.
[[nodiscard]] QJsonObject expectedSpeciesFile(const QJsonObject &loaded);

// The object without byte order marks at the start of its texts: Qt drops one from a text that it
// reads from a file, unless the text holds an escape.
[[nodiscard]] QJsonObject withoutByteOrderMarks(QJsonObject object);

// The species object's image as RGBA, 16 bits a channel, or null where it has none that is shown.
[[nodiscard]] QImage expectedImage(const QJsonObject &species);

// Whether bytes are a species file: JSON without an error, an object, its "Type" as it has to be.
[[nodiscard]] std::optional<QJsonObject> expectedSpeciesFileIn(const QByteArray &bytes);

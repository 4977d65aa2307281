// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QString>

#include <optional>

// The key under which every JSON format of the collection names itself.
inline constexpr QLatin1String typeKey("Type");

// Larger files, in bytes, are not read: parsing takes many times their size in memory. Nor are they
// written, since they could not be opened again.
inline constexpr qint64 largestJsonFile = qint64{256} * 1024 * 1024;

// Whether the object's "Type" is exactly this string.
[[nodiscard]] bool hasType(const QJsonObject &object, QLatin1String type);

// The top-level object of a JSON file: an empty one if the text is not JSON or not an object,
// nothing if the file cannot be read or is too large.
[[nodiscard]] std::optional<QJsonObject> readJsonObject(const QString &path);

// Writes object as indented JSON, as a whole or not at all. Returns false if the file does not hold
// it, also because it would be too large to be read.
[[nodiscard]] bool writeJsonObject(const QString &path, const QJsonObject &object);

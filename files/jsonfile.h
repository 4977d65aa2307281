// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/filebytes.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>
#include <QString>

#include <optional>

// The key that names the type of every JSON file of the collection.
inline constexpr QLatin1String typeKey("Type");

// The most that a JSON file may hold, in bytes without the blanks and line ends between its values:
// indenting an entry does not change what counts, and what can be read can be written. Parsing
// takes many times as much memory.
inline constexpr qint64 largestJsonFile = largestFile;
// The same with blanks and line ends: indenting makes a database at most ten times as long.
inline constexpr qint64 largestJsonText = 0xffff'ffff;

// Whether the object's "Type" is exactly this string.
[[nodiscard]] bool hasType(const QJsonObject &object, QLatin1String type);

// The top-level object of a JSON file: an empty one if the text is not JSON or not an object,
// nothing if the file cannot be read or is too large.
[[nodiscard]] std::optional<QJsonObject> readJsonObject(const QString &path,
                                                        FileProblem *problem = nullptr);

// The whole text of a JSON file; nothing if it cannot be read or is too large.
[[nodiscard]] std::optional<QByteArray> readJsonText(const QString &path,
                                                     FileProblem *problem = nullptr);

// The value as compact JSON in UTF-8.
[[nodiscard]] QByteArray jsonOnOneLine(const QJsonValue &value);

// Whether a file of this text can be read again, indented by the editor or not.
[[nodiscard]] bool fitsIntoFile(QByteArrayView json);

// Writes object as indented JSON, whole or not at all. False if the file does not hold it, for
// example because it would be too large to read.
[[nodiscard]] bool writeJsonObject(const QString &path, const QJsonObject &object,
                                   FileProblem *problem = nullptr);

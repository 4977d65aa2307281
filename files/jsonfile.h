// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/filebytes.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>
#include <QString>

#include <optional>

// The key under which every JSON format of the collection names itself.
inline constexpr QLatin1String typeKey("Type");

// The most that a JSON file may hold, in bytes without the blanks and line ends between its values:
// an entry counts the same whether it is indented or not, and what can be read can be written.
// Parsing takes many times as much memory.
inline constexpr qint64 largestJsonFile = largestFile;
// The same with blanks and line ends. Indenting makes a database ten times as long at most.
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

// The value as compact JSON, whose texts are Unicode.
[[nodiscard]] QByteArray jsonOnOneLine(const QJsonValue &value);

// Whether a file of this text, indented as the editor does it or not at all, can be read again.
[[nodiscard]] bool fitsIntoFile(QByteArrayView json);

// Writes object as indented JSON, as a whole or not at all. Returns false if the file does not hold
// it, also because it would be too large to be read.
[[nodiscard]] bool writeJsonObject(const QString &path, const QJsonObject &object,
                                   FileProblem *problem = nullptr);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// All bytes of a regular file; nothing if it cannot be opened or read to its end.
[[nodiscard]] std::optional<QByteArray> readFileBytes(const QString &path);

// Makes bytes the contents of the file at path, as a whole or not at all (see ReplacementFile).
// Returns false if the file does not hold them now.
[[nodiscard]] bool replaceFileBytes(const QString &path, const QByteArray &bytes);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// All bytes of a regular file; nothing if it cannot be opened or read to its end.
[[nodiscard]] std::optional<QByteArray> readFileBytes(const QString &path);

// Makes bytes the contents of the file at path, as a whole or not at all: the old file stays until a
// complete new one replaces it. Symbolic links are followed and kept, and so is the file's mode. Where
// the folder cannot take a second file beside it, the file is written in place and, if that fails, its
// old contents are put back. Returns false if the file does not hold bytes now.
[[nodiscard]] bool replaceFileBytes(const QString &path, const QByteArray &bytes);

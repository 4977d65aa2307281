// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>
#include <optional>

// Why a file was not read or written.
enum class FileProblem {
    None,
    Inaccessible, // it is no regular file, or the system refuses or fails
    TooLarge,
};

[[nodiscard]] FileProblem problemOf(bool succeeded, bool fits);

// What keeps a file from being read, for messages.
enum class FileObstacle { BrokenLink, Missing, Folder, Special, TooLarge, Other };
[[nodiscard]] FileObstacle obstacleOf(const QString &path, FileProblem problem);

// Larger files, in bytes, are not read whole.
inline constexpr qint64 largestFile = qint64{256} * 1024 * 1024;

// Passes the bytes of a regular file to take, in pieces of up to a megabyte, until it returns
// false. False if the file cannot be opened or read to its end, or if take returned false.
[[nodiscard]] bool readFilePieces(const QString &path,
                                  const std::function<bool(QByteArrayView)> &take);

// All bytes of a regular file; nothing if it cannot be opened or read to its end, or has more than
// most. The size that the system names does not count: some system files name zero and never end.
[[nodiscard]] std::optional<QByteArray>
readFileBytes(const QString &path, qint64 most = largestFile, FileProblem *problem = nullptr);

// Replaces the contents of the file at path with bytes, whole or not at all (see ReplacementFile).
// False if the file does not hold them now.
[[nodiscard]] bool replaceFileBytes(const QString &path, const QByteArray &bytes);

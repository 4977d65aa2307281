// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/filebytes.h"

#include "files/replacementfile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

FileProblem problemOf(bool succeeded, bool fits)
{
    if (succeeded)
        return FileProblem::None;
    return fits ? FileProblem::Inaccessible : FileProblem::TooLarge;
}

FileObstacle obstacleOf(const QString &path, FileProblem problem)
{
    const QFileInfo file(path);
    if (problem == FileProblem::TooLarge)
        return FileObstacle::TooLarge;
    if (!file.exists())
        return file.isSymLink() ? FileObstacle::BrokenLink : FileObstacle::Missing;
    if (!file.isFile())
        return file.isDir() ? FileObstacle::Folder : FileObstacle::Special;
    return FileObstacle::Other;
}

bool readFilePieces(const QString &path, const std::function<bool(QByteArrayView)> &take)
{
    constexpr qint64 pieceSize = 1 << 20;
    // Opening a pipe would wait for a writer that may never come.
    if (!QFileInfo(path).isFile())
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    QByteArray piece(pieceSize, Qt::Uninitialized);
    qint64 size = 0;
    while ((size = file.read(piece.data(), pieceSize)) > 0) {
        if (!take(QByteArrayView(piece.constData(), size)))
            return false;
    }
    return size == 0 && file.error() == QFileDevice::NoError;
}

std::optional<QByteArray> readFileBytes(const QString &path, qint64 most, FileProblem *problem)
{
    QByteArray bytes;
    bytes.reserve(std::min(QFileInfo(path).size(), most));
    bool fits = true;
    const bool isRead = readFilePieces(path, [&](QByteArrayView piece) {
        fits = piece.size() <= most - bytes.size();
        if (fits)
            bytes.append(piece);
        return fits;
    });
    if (problem)
        *problem = problemOf(isRead, fits);
    return isRead ? std::optional(std::move(bytes)) : std::nullopt;
}

bool replaceFileBytes(const QString &path, const QByteArray &bytes)
{
    ReplacementFile file(path);
    return file.open() && file.write(bytes) && file.commit();
}

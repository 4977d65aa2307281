// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/filebytes.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace
{

bool writeAll(QFileDevice &file, const QByteArray &bytes)
{
    return file.write(bytes) == bytes.size() && file.flush()
        && file.error() == QFileDevice::NoError;
}

enum class Replacement { Done, NoSecondFile, Failed };

Replacement replaceBySecondFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return Replacement::NoSecondFile;
    // commit() on its own reports success after a failed flush or a short write, with the old file gone.
    if (!writeAll(file, bytes)) {
        file.cancelWriting();
        return Replacement::Failed;
    }
    return file.commit() ? Replacement::Done : Replacement::Failed;
}

bool overwrite(QFile &file, const QByteArray &bytes)
{
    return file.seek(0) && writeAll(file, bytes) && file.resize(bytes.size());
}

bool writeInPlace(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    const bool existed = file.exists();
    if (!file.open(existed ? QIODevice::ReadWrite : QIODevice::WriteOnly))
        return false;
    const QByteArray old = existed ? file.readAll() : QByteArray();
    if (overwrite(file, bytes))
        return true;
    if (existed)
        overwrite(file, old);
    else
        file.remove();
    return false;
}

bool writeToDevice(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && writeAll(file, bytes);
}

} // namespace

std::optional<QByteArray> readFileBytes(const QString &path)
{
    // Opening a pipe would wait for a writer that may never come.
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return bytes;
}

bool replaceFileBytes(const QString &path, const QByteArray &bytes)
{
    // A device or a pipe must be written to, never be replaced by a file.
    const QFileInfo target(path);
    if (target.exists() && !target.isFile())
        return writeToDevice(path, bytes);

    switch (replaceBySecondFile(path, bytes)) {
    case Replacement::Done:
        return true;
    case Replacement::NoSecondFile:
        return writeInPlace(path, bytes);
    case Replacement::Failed:
        return false;
    }
    Q_UNREACHABLE();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/filebytes.h"

#include "species/replacementfile.h"

#include <QFile>
#include <QFileInfo>

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
    ReplacementFile file(path);
    return file.open() && file.write(bytes) && file.commit();
}

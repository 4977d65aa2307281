// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/readfile.h"

#include "cli/filenames.h"
#include "species/jsonfile.h"

#include <QFile>
#include <QFileInfo>

QByteArray whyUnreadable(const InputFile &input)
{
    const QFileInfo info(input.path);
    if (!info.exists())
        return info.isSymLink() ? "a link that leads nowhere" : "no such file";
    if (!info.isFile())
        return info.isDir() ? "a folder" : "not a regular file";
    if (info.size() > largestJsonFile)
        return "too large";
    QFile file(input.path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString().toUtf8().toLower();
    return "cannot be read";
}

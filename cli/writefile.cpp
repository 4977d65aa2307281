// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/writefile.h"

#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/interruption.h"
#include "species/filebytes.h"

#include <QFileInfo>
#include <QStorageInfo>

namespace
{

// What those who could not write find out too late to tell; empty if everything looks well.
QByteArray whyUnwritable(const QString &path)
{
    constexpr qint64 little = 1 << 16; // bytes
    const QFileInfo file(path);
    const QFileInfo folder(file.absolutePath());
    if (!folder.exists())
        return "there is no such folder";
    if (!folder.isDir())
        return "it would lie in a file";
    if (file.isDir())
        return "it is a folder";
    if (file.exists() && !file.isFile())
        return "it is no regular file";
    if (file.exists() ? !file.isWritable() : !folder.isWritable())
        return "permission denied";
    const QStorageInfo disk(folder.filePath());
    if (disk.isReadOnly())
        return "the file system is read-only";
    return disk.isValid() && disk.bytesAvailable() < little ? "no space is left on the device" : "";
}

} // namespace

void sayUnwritable(const QByteArray &name, Console &console)
{
    const QByteArray reason = whyUnwritable(libraryPath(name));
    console.error(shownName(name) + ": cannot be written" + (reason.isEmpty() ? "" : ": ")
                  + reason);
}

bool writeFile(const QByteArray &name, const QByteArray &bytes, Console &console)
{
    const InterruptionHold hold;
    OutputFile output(name);
    if (replaceFileBytes(output.path(), bytes) && output.putInPlace())
        return true;
    sayUnwritable(name, console);
    return false;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/writefile.h"

#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/interruption.h"
#include "files/filebytes.h"

#include <QFileInfo>
#include <QStorageInfo>

#include <cerrno>

namespace
{

// The system's message for a lack of room; nothing for other errors.
QByteArray whyNoRoom(int error)
{
    switch (error) {
    case ENOSPC:
        return "no space is left on the device";
    case EFBIG:
        return "it would be larger than a file may be";
#ifdef EDQUOT
    case EDQUOT:
        return "the user's disk quota is used up";
#endif
    default:
        return {};
    }
}

// The reason that can still be seen after a failed write; empty if there is none.
QByteArray whyUnwritable(const QString &path)
{
    constexpr qint64 little = 1 << 16; // bytes
    const QFileInfo file(path);
    const QFileInfo folder(file.path());
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
    // Removing what was written has freed the room again. errno still has the error, as successful
    // calls leave it alone.
    QByteArray reason = whyNoRoom(errno);
    if (reason.isEmpty())
        reason = whyUnwritable(libraryPath(name));
    console.error(shownName(name) + ": cannot be written" + (reason.isEmpty() ? "" : ": ")
                  + reason);
}

bool writeFile(const QByteArray &name, const QByteArray &bytes, Console &console)
{
    const InterruptionHold hold;
    OutputFile output(name);
    errno = 0;
    if (replaceFileBytes(output.path(), bytes) && output.putInPlace())
        return true;
    sayUnwritable(name, console);
    return false;
}

// SPDX-License-Identifier: GPL-3.0-or-later
// Uses QSaveFile where there is nothing better: it ignores a disk that fails at the last moment and
// leaves groups and access lists to the system.
#include "files/atomicfile.h"

#include <QFileInfo>
#include <QSaveFile>

class AtomicFile::Private
{
public:
    std::unique_ptr<QSaveFile> file;
};

AtomicFile::AtomicFile() : d(std::make_unique<Private>()) {}

AtomicFile::~AtomicFile() = default;

AtomicFile::Opened AtomicFile::open(const std::filesystem::path &target)
{
    d->file = std::make_unique<QSaveFile>(QFileInfo(target).filePath());
    if (d->file->open(QIODevice::WriteOnly))
        return Opened::Yes;
    const bool refused = d->file->error() == QFileDevice::WriteError
                         || d->file->error() == QFileDevice::OpenError
                         || d->file->error() == QFileDevice::PermissionsError;
    return refused ? Opened::RefusedByFolder : Opened::No;
}

bool AtomicFile::write(const QByteArray &bytes)
{
    return d->file->write(bytes) == bytes.size();
}

bool AtomicFile::takePlace()
{
    // QSaveFile::commit() reports success after a failed flush or a short write, with the old file
    // gone.
    if (!d->file->flush() || d->file->error() != QFileDevice::NoError) {
        d->file->cancelWriting();
        return false;
    }
    return d->file->commit();
}

bool reachesDisk(QFileDevice &file)
{
    return file.flush() && file.error() == QFileDevice::NoError;
}

bool reserveRoom(QFileDevice &, qint64)
{
    return true;
}

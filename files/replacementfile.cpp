// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/replacementfile.h"

#include "files/atomicfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <filesystem>
#include <system_error>

namespace
{

// Systems refuse to create a file where somebody else's might be, even if it exists already.
constexpr QIODevice::OpenMode inPlace = QIODevice::ReadWrite | QIODevice::ExistingOnly;

bool copyBytes(QIODevice &from, QFile &to)
{
    constexpr qint64 pieceSize = 1 << 20;
    if (!from.seek(0) || !to.seek(0))
        return false;
    while (!from.atEnd()) {
        const QByteArray piece = from.read(pieceSize);
        if (piece.isEmpty() || to.write(piece) != piece.size())
            return false;
    }
    return to.flush() && to.error() == QFileDevice::NoError && to.resize(from.size())
           && reachesDisk(to);
}

// A path for the standard library, which would throw on half a surrogate pair. No file name on Unix
// can hold one: it becomes what Qt makes of it.
std::filesystem::path standardPath(const QString &path)
{
#ifdef Q_OS_UNIX
    return QFile::encodeName(path).toStdString();
#else
    return QFileInfo(path).filesystemFilePath();
#endif
}

// A pipe would wait for a reader that may never come, and a circle of symbolic links leads nowhere.
bool waitsOrLoops(const QString &path)
{
    std::error_code error;
    const auto status = std::filesystem::status(standardPath(path), error);
    return error == std::errc::too_many_symbolic_link_levels || std::filesystem::is_fifo(status);
}

// The file that a path leads to, whether it exists or not.
std::filesystem::path behindLinks(const QString &path)
{
    constexpr int longestChain = 40; // the system follows no more either
    std::filesystem::path file = standardPath(path);
    std::error_code error;
    for (int i = 0; i < longestChain && std::filesystem::is_symlink(file, error); ++i)
        file = file.parent_path() / std::filesystem::read_symlink(file, error);
    return file;
}

// Overwrites the file at path with contents; restores its old bytes if that fails.
bool writeInPlace(const QString &path, QIODevice &contents)
{
    QFile file(path);
    // The copy has a name, so that it can be found if the process ends meanwhile, but not that of
    // an entry: the file itself may be in the temporary folder.
    QTemporaryFile old(QDir::tempPath() + QStringLiteral("/zoravel-before-XXXXXX.old"));
    if (!file.open(inPlace | QIODevice::Unbuffered) || !old.open() || !copyBytes(file, old)
        || old.fileName().isEmpty() || !reserveRoom(file, contents.size()))
        return false;
    if (copyBytes(contents, file))
        return true;
    file.unsetError();
    // If even that fails, the file is a mixture, and this copy is the only one.
    if (!copyBytes(old, file))
        old.setAutoRemove(false);
    return false;
}

} // namespace

ReplacementFile::ReplacementFile(const QString &path) : m_path(path) {}

ReplacementFile::~ReplacementFile() = default;

bool ReplacementFile::open()
{
    // The system would end the name at a null character.
    if (m_path.contains(QChar::Null))
        return false;
    // A device or a pipe is written to and never replaced by a file.
    const QFileInfo target(m_path);
    if (waitsOrLoops(m_path))
        return false;
    if (target.exists() && !target.isFile()) {
        m_file = std::make_unique<QFile>(m_path);
        return m_file->open(QIODevice::WriteOnly);
    }
    if (target.exists() && !target.isWritable())
        return false;
    m_second = std::make_unique<AtomicFile>();
    const AtomicFile::Opened opened = m_second->open(behindLinks(m_path));
    if (opened != AtomicFile::Opened::RefusedByFolder)
        return opened == AtomicFile::Opened::Yes;

    // The file itself must be writable.
    m_second.reset();
    if (!target.exists() || !QFile(m_path).open(inPlace))
        return false;
    m_file = std::make_unique<QTemporaryFile>();
    return m_file->open(QIODevice::ReadWrite);
}

bool ReplacementFile::write(const QByteArray &bytes)
{
    if (!m_failed)
        m_failed = m_second ? !m_second->write(bytes) : m_file->write(bytes) != bytes.size();
    return !m_failed;
}

bool ReplacementFile::commit()
{
    if (m_failed)
        return false;
    if (m_second)
        return m_second->takePlace();
    if (!m_file->flush() || m_file->error() != QFileDevice::NoError)
        return false;
    auto *waiting = qobject_cast<QTemporaryFile *>(m_file.get());
    return !waiting || writeInPlace(m_path, *waiting);
}

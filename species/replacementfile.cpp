// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/replacementfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

#include <filesystem>
#include <system_error>

namespace
{

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
    return to.flush() && to.error() == QFileDevice::NoError && to.resize(from.size());
}

// A pipe would wait for a reader that may never come; symbolic links in a circle lead nowhere.
bool waitsOrLoops(const QFileInfo &target)
{
    std::error_code error;
    const auto status = std::filesystem::status(target.filesystemFilePath(), error);
    return error == std::errc::too_many_symbolic_link_levels || std::filesystem::is_fifo(status);
}

// Whether a second file beside it can have the file's name and a suffix. That is found out too late
// otherwise: the second file has no name until it replaces the first.
bool canBeLengthened(const QFileInfo &target)
{
    constexpr qsizetype longestName = 255; // bytes, on the usual file systems
    constexpr qsizetype suffix = sizeof ".XXXXXX" - 1;
    const QString final = target.exists() ? target.canonicalFilePath() : target.filePath();
    return QFile::encodeName(QFileInfo(final).fileName()).size() + suffix <= longestName;
}

// Overwrites the file at path with what contents holds; puts its old bytes back if that fails.
bool writeInPlace(const QString &path, QIODevice &contents)
{
    QFile file(path);
    if (!file.exists()) {
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return false;
        const bool complete = copyBytes(contents, file);
        if (!complete)
            file.remove();
        return complete;
    }

    QTemporaryFile old;
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered) || !old.open()
        || !copyBytes(file, old))
        return false;
    if (copyBytes(contents, file))
        return true;
    file.unsetError();
    copyBytes(old, file);
    return false;
}

} // namespace

ReplacementFile::ReplacementFile(const QString &path) : m_path(path) {}

ReplacementFile::~ReplacementFile() = default;

bool ReplacementFile::open()
{
    // A device or a pipe must be written to, never be replaced by a file.
    const QFileInfo target(m_path);
    if (waitsOrLoops(target))
        return false;
    if (target.exists() && !target.isFile()) {
        m_file = std::make_unique<QFile>(m_path);
        return m_file->open(QIODevice::WriteOnly);
    }
    if (target.exists() && !target.isWritable())
        return false;
    m_file = std::make_unique<QSaveFile>(m_path);
    if (canBeLengthened(target) && m_file->open(QIODevice::WriteOnly))
        return true;

    // No second file beside it: the folder may be read-only, or the name too long. Find out now
    // whether the file itself can be written.
    const bool existed = target.exists();
    QFile file(m_path);
    if (!file.open(existed ? QIODevice::ReadWrite : QIODevice::WriteOnly))
        return false;
    if (!existed)
        file.remove();
    m_file = std::make_unique<QTemporaryFile>();
    return m_file->open(QIODevice::ReadWrite);
}

bool ReplacementFile::write(const QByteArray &bytes)
{
    m_failed = m_failed || m_file->write(bytes) != bytes.size();
    return !m_failed;
}

bool ReplacementFile::flushed() const
{
    return m_file->flush() && m_file->error() == QFileDevice::NoError;
}

bool ReplacementFile::commit()
{
    const bool complete = !m_failed && flushed();
    if (auto *second = qobject_cast<QSaveFile *>(m_file.get())) {
        // Its commit() reports success after a failed flush or a short write, with the old file
        // gone.
        if (!complete)
            second->cancelWriting();
        return complete && second->commit();
    }
    if (auto *waiting = qobject_cast<QTemporaryFile *>(m_file.get()))
        return complete && writeInPlace(m_path, *waiting);
    return complete;
}

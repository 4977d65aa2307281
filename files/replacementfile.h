// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QFileDevice;
class AtomicFile;

// A file that is written piece by piece and replaces the one at its path on commit(), whole or not
// at all: until then, and after any failure, the old file does not change. Symbolic links are
// followed and kept; another name of the same file (a hard link) keeps the old contents. AtomicFile
// says what else is kept. If the folder does not accept a second file, a writable file is written
// in place from the temporary folder; if that fails, its old contents are restored. A device is
// written to directly; a pipe is refused.
class ReplacementFile
{
    Q_DISABLE_COPY_MOVE(ReplacementFile)

public:
    explicit ReplacementFile(const QString &path);
    ~ReplacementFile();

    // False if the file cannot be written. Call it once, first.
    [[nodiscard]] bool open();
    // False if the bytes were not written; commit() fails then too.
    bool write(const QByteArray &bytes);
    // Puts the new contents in place. False if the file does not hold exactly them.
    [[nodiscard]] bool commit();

private:
    QString m_path;
    std::unique_ptr<AtomicFile> m_second; // nothing where the file is written itself
    std::unique_ptr<QFileDevice> m_file;  // the device, or what waits to be written in place
    bool m_failed = false;
};

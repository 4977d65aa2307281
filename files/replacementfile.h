// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QFileDevice;
class AtomicFile;

// A file that is written piece by piece and replaces the one at its path as a whole on commit(), or
// not at all: until then, and after any failure, the old file is as it was. Symbolic links are
// followed and kept; another name of the same file (a hard link) keeps the old contents. What else
// is kept, see AtomicFile. A file that may be written in a folder that does not take a second one
// is written in place, from the temporary folder; if that fails, its old contents are put back. A
// device is written to directly; a pipe is refused.
class ReplacementFile
{
    Q_DISABLE_COPY_MOVE(ReplacementFile)

public:
    explicit ReplacementFile(const QString &path);
    ~ReplacementFile();

    // False if no bytes can be taken. Call it once, first.
    [[nodiscard]] bool open();
    // False if the bytes were not taken; commit() fails then too.
    bool write(const QByteArray &bytes);
    // Puts the new contents in place. False if the file does not hold exactly them now.
    [[nodiscard]] bool commit();

private:
    QString m_path;
    std::unique_ptr<AtomicFile> m_second; // nothing where the file is written itself
    std::unique_ptr<QFileDevice> m_file;  // the device, or what waits to be written in place
    bool m_failed = false;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <filesystem>
#include <memory>

class QFileDevice;

// A file that is written out of sight beside another and then replaces it in one step, or takes a
// new name. Until then, and for good if that fails, the old file does not change, and the
// destructor leaves nothing of the new one. Where the system allows files without a name it is
// named only for the step itself, so that even the end of the process leaves nothing; elsewhere it
// has a hidden name without the target's suffix.
class AtomicFile
{
    Q_DISABLE_COPY_MOVE(AtomicFile)

public:
    enum class Opened {
        Yes,
        RefusedByFolder, // it takes no new file, or does not let the old one go
        No,
    };

    AtomicFile();
    ~AtomicFile();

    // The target must not be a symbolic link. Call it once, first.
    [[nodiscard]] Opened open(const std::filesystem::path &target);
    // False if not all bytes were written; do not call takePlace() then.
    [[nodiscard]] bool write(const QByteArray &bytes);
    // Writes everything to the disk and replaces the old file. The mode of the old file is kept,
    // and so are its group, its access list and, if the user may set it, its owner. False if the
    // old file is still there. Call it once, last.
    [[nodiscard]] bool takePlace();

private:
    class Private;
    std::unique_ptr<Private> d;
};

// Waits until everything written to an open file is on its disk; false if that fails.
[[nodiscard]] bool reachesDisk(QFileDevice &file);

// Reserves room on the disk for the first size bytes of an open file, whose content does not
// change. False if there is no room; true if the file system cannot say.
[[nodiscard]] bool reserveRoom(QFileDevice &file, qint64 size);

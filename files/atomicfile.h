// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <filesystem>
#include <memory>

class QFileDevice;

// A file that grows out of sight in the folder of another one and then takes its place in one step,
// or that of nothing. Until then, and for ever if that fails, the old file is as it was and nothing
// of this one is left when it goes. Where the system lets files be without a name it has one only
// for the step itself, so that even the end of the process leaves nothing; elsewhere its name is
// hidden and does not end in that of the target.
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

    // target is no symbolic link. Call it once, first.
    [[nodiscard]] Opened open(const std::filesystem::path &target);
    // False if the bytes are not taken as a whole; do not take the place then.
    [[nodiscard]] bool write(const QByteArray &bytes);
    // Writes everything to the disk, and exchanges the files. The mode of the old file is kept, and
    // so are its group, its access list and its owner where the user may give them. False if the
    // old file is still there. Call it once, last.
    [[nodiscard]] bool takePlace();

private:
    class Private;
    std::unique_ptr<Private> d;
};

// Waits until what was written to an open file is on its disk; false if it does not get there.
[[nodiscard]] bool reachesDisk(QFileDevice &file);

// Keeps room on the disk for the first size bytes of an open file, which stays as it is. False if
// there is no room; true, too, where the file system cannot say.
[[nodiscard]] bool reserveRoom(QFileDevice &file, qint64 size);

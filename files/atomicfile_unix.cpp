// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/atomicfile.h"

#include "files/fileattributes_unix.h"
#include "files/hiddenfiles_unix.h"

#include <QFileDevice>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace
{

// Repeats a call that a signal has interrupted.
template <typename Call>
auto withoutInterrupts(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// Small pieces up to this size are collected, so that each does not cost a call.
constexpr qsizetype heldBack = 1 << 15;

bool writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written = withoutInterrupts(
            [&] { return ::write(descriptor, bytes.data() + done, bytes.size() - done); });
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

bool sync(int descriptor)
{
    if (withoutInterrupts([&] { return ::fsync(descriptor); }) == 0)
        return true;
    // Some file systems have nothing to sync and say so.
    return errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
}

// Syncs the entry of a new name. A failure does not count: the new file is there.
void syncFolder(const fs::path &folder)
{
    const int descriptor = withoutInterrupts(
        [&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (descriptor < 0)
        return;
    static_cast<void>(sync(descriptor));
    ::close(descriptor);
}

// Tries hidden names in a folder as long as taken(path) fails because the name exists.
template <typename Taken>
bool underHiddenName(const fs::path &folder, fs::path &path, Taken taken)
{
    constexpr int tries = 100;
    for (int i = 0; i < tries; ++i) {
        path = folder / hiddenName();
        if (taken(path))
            return true;
        if (errno != EEXIST)
            break;
    }
    path.clear();
    return false;
}

// Opens a file without a name; -1 with errno EOPNOTSUPP if it could not be named later.
int openNameless([[maybe_unused]] const fs::path &folder, [[maybe_unused]] mode_t mode)
{
#ifdef O_TMPFILE
    if (::access("/proc/self/fd", X_OK) == 0) {
        const int descriptor = withoutInterrupts(
            [&] { return ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode); });
        // These are the errors of systems and file systems without such files.
        if (descriptor >= 0 || (errno != EISDIR && errno != EINVAL && errno != ENOENT))
            return descriptor;
    }
#endif
    errno = EOPNOTSUPP;
    return -1;
}

// Whether a sticky folder keeps this user from replacing the file. The owners of the file and of
// the folder may replace it, and so may the administrator.
bool keepsForOwner(const fs::path &folder, const struct stat &file)
{
    struct stat status = {};
    const uid_t user = ::geteuid();
    return ::stat(folder.c_str(), &status) == 0 && (status.st_mode & S_ISVTX) != 0 && user != 0
           && user != file.st_uid && user != status.st_uid;
}

// Whether path is that of an open file.
bool leadsTo(const fs::path &path, int descriptor)
{
    struct stat there = {};
    struct stat file = {};
    return ::lstat(path.c_str(), &there) == 0 && ::fstat(descriptor, &file) == 0
           && there.st_dev == file.st_dev && there.st_ino == file.st_ino;
}

// Copies everything in an open file.
bool copyAll(int from, int to)
{
    QByteArray piece(1 << 16, Qt::Uninitialized);
    off_t place = 0;
    for (;;) {
        const ssize_t size = withoutInterrupts([&] {
            return ::pread(from, piece.data(), static_cast<std::size_t>(piece.size()), place);
        });
        if (size <= 0)
            return size == 0;
        if (!writeAll(to, QByteArray::fromRawData(piece.constData(), size)))
            return false;
        place += size;
    }
}

// A network file system may report a failure although the name was given.
bool giveName(int nameless, const fs::path &path)
{
    const std::string itself = "/proc/self/fd/" + std::to_string(nameless);
    if (::linkat(AT_FDCWD, itself.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0)
        return true;
    const int error = errno;
    const bool isDone = leadsTo(path, nameless);
    errno = error;
    return isDone;
}

bool moveOver(int descriptor, const fs::path &from, const fs::path &to)
{
    return ::rename(from.c_str(), to.c_str()) == 0 || leadsTo(to, descriptor);
}

} // namespace

class AtomicFile::Private
{
public:
    Opened open(const fs::path &path);
    bool takePlace();
    bool flush();
    void remove();

    QByteArray buffer;
    int descriptor = -1;

private:
    bool openHidden();
    bool complete();
    bool nameAndRename();
    bool giveHiddenName();
    bool copyToHidden();

    [[nodiscard]] mode_t mode() const;

    fs::path m_target;
    fs::path m_folder;
    fs::path m_hidden; // its own path while it has a hidden name
    bool m_replaces = false;
    struct stat m_old = {};
};

AtomicFile::Opened AtomicFile::Private::open(const fs::path &path)
{
    m_target = path;
    m_folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    m_replaces = ::stat(m_target.c_str(), &m_old) == 0;
    // The attributes to keep of the old file must be known.
    if (!m_replaces && errno != ENOENT)
        return Opened::No;
    if (m_replaces && keepsForOwner(m_folder, m_old))
        return Opened::RefusedByFolder;
    // The file is locked from the start, before others look for leftovers.
    descriptor = openNameless(m_folder, mode());
    if (descriptor >= 0)
        lockHidden(descriptor);
    if (descriptor >= 0 || (errno == EOPNOTSUPP && openHidden())) {
        removeHiddenLeftovers(m_folder);
        return Opened::Yes;
    }
    const bool refused = errno == EACCES || errno == EPERM || errno == EROFS;
    return refused ? Opened::RefusedByFolder : Opened::No;
}

// Nobody else may open it before it has the old file's mode; a new file gets the usual mode.
mode_t AtomicFile::Private::mode() const
{
    return m_replaces ? 0600 : 0666;
}

bool AtomicFile::Private::openHidden()
{
    return underHiddenName(m_folder, m_hidden, [&](const fs::path &path) {
        constexpr int flags = O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC;
        descriptor = withoutInterrupts([&] { return ::open(path.c_str(), flags, mode()); });
        if (descriptor < 0)
            return false;
        lockHidden(descriptor);
        if (::access(path.c_str(), F_OK) == 0 || errno != ENOENT)
            return true;
        // Another process removed it before it was locked.
        ::close(std::exchange(descriptor, -1));
        errno = EEXIST;
        return false;
    });
}

bool AtomicFile::Private::flush()
{
    const bool written = writeAll(descriptor, buffer);
    buffer.clear();
    return written;
}

// Everything is on the disk after this, so errors of close() do not matter.
bool AtomicFile::Private::complete()
{
    return (!m_replaces || copyAttributes(m_target, m_old, descriptor)) && sync(descriptor);
}

bool AtomicFile::Private::takePlace()
{
    if (!flush() || !complete() || !nameAndRename())
        return false;
    syncFolder(m_folder);
    return true;
}

bool AtomicFile::Private::nameAndRename()
{
    // A new file gets its final name at once, unless another process takes it first.
    if (m_hidden.empty() && !m_replaces && giveName(descriptor, m_target))
        return true;
    if (m_hidden.empty() && !giveHiddenName() && !copyToHidden())
        return false;
    if (!moveOver(descriptor, m_hidden, m_target))
        return false;
    m_hidden.clear();
    return true;
}

bool AtomicFile::Private::giveHiddenName()
{
    return underHiddenName(m_folder, m_hidden,
                           [&](const fs::path &path) { return giveName(descriptor, path); });
}

// Some systems make files without a name but cannot name them.
bool AtomicFile::Private::copyToHidden()
{
    const int nameless = std::exchange(descriptor, -1);
    const bool copied = openHidden() && copyAll(nameless, descriptor) && complete();
    ::close(nameless);
    return copied;
}

void AtomicFile::Private::remove()
{
    if (!m_hidden.empty())
        ::unlink(m_hidden.c_str());
    if (descriptor >= 0)
        ::close(descriptor);
}

AtomicFile::AtomicFile() : d(std::make_unique<Private>()) {}

AtomicFile::~AtomicFile()
{
    d->remove();
}

AtomicFile::Opened AtomicFile::open(const fs::path &target)
{
    return d->open(target);
}

bool AtomicFile::write(const QByteArray &bytes)
{
    if (d->buffer.size() + bytes.size() <= heldBack) {
        d->buffer += bytes;
        return true;
    }
    return d->flush() && writeAll(d->descriptor, bytes);
}

bool AtomicFile::takePlace()
{
    return d->takePlace();
}

bool reachesDisk(QFileDevice &file)
{
    return file.flush() && file.error() == QFileDevice::NoError && sync(file.handle());
}

bool reserveRoom([[maybe_unused]] QFileDevice &file, [[maybe_unused]] qint64 size)
{
#ifdef Q_OS_LINUX
    if (size > 0 && ::fallocate(file.handle(), FALLOC_FL_KEEP_SIZE, 0, size) != 0)
        return errno != ENOSPC && errno != EDQUOT && errno != EFBIG;
#endif
    return true;
}

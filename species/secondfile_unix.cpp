// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/secondfile.h"

#include <QFileDevice>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#ifdef Q_OS_LINUX
#include <sys/xattr.h>
#endif

namespace fs = std::filesystem;

namespace
{

// Calls again what a signal has interrupted.
template <typename Call>
auto withoutInterrupts(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// Bytes that are held back so that small pieces do not cost a call each.
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
    // Some file systems have nothing to wait for and say so.
    return errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
}

// The entry of a new name is on the disk after this. That it might not be is no reason to say that
// the new file is not there: it is.
void syncFolder(const fs::path &folder)
{
    const int descriptor = withoutInterrupts(
        [&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (descriptor < 0)
        return;
    static_cast<void>(sync(descriptor));
    ::close(descriptor);
}

fs::path hiddenName()
{
    char name[32];
    std::snprintf(name, sizeof name, ".zoravel-%016llx",
                  static_cast<unsigned long long>(QRandomGenerator::system()->generate64()));
    return name;
}

// Tries hidden names in a folder until taken(path) does not fail because there is such a file.
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

// A file without a name; -1 with errno EOPNOTSUPP where it could not be given one later.
int openNameless([[maybe_unused]] const fs::path &folder, [[maybe_unused]] mode_t mode)
{
#ifdef O_TMPFILE
    if (::access("/proc/self/fd", X_OK) == 0) {
        const int descriptor = withoutInterrupts(
            [&] { return ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode); });
        // What systems and file systems say that do not know of such files.
        if (descriptor >= 0 || (errno != EISDIR && errno != EINVAL && errno != ENOENT))
            return descriptor;
    }
#endif
    errno = EOPNOTSUPP;
    return -1;
}

bool giveName(int nameless, const fs::path &path)
{
    const std::string itself = "/proc/self/fd/" + std::to_string(nameless);
    return ::linkat(AT_FDCWD, itself.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// Whether a folder keeps a file from everybody but its owner, the folder's, and the administrator.
bool keepsForOwner(const fs::path &folder, const struct stat &file)
{
    struct stat status = {};
    const uid_t user = ::geteuid();
    return ::stat(folder.c_str(), &status) == 0 && (status.st_mode & S_ISVTX) != 0 && user != 0
           && user != file.st_uid && user != status.st_uid;
}

// Access lists among them. What cannot be copied stays behind.
void copyExtendedAttributes([[maybe_unused]] const fs::path &from, [[maybe_unused]] int to)
{
#ifdef Q_OS_LINUX
    std::vector<char> names(1 << 16);
    std::vector<char> value(1 << 16);
    const ssize_t size = ::listxattr(from.c_str(), names.data(), names.size());
    for (ssize_t at = 0; at < size;) {
        const std::string name = &names[at];
        const ssize_t length = ::getxattr(from.c_str(), name.c_str(), value.data(), value.size());
        if (length >= 0)
            static_cast<void>(::fsetxattr(to, name.c_str(), value.data(), length, 0));
        at += static_cast<ssize_t>(name.size()) + 1;
    }
#endif
}

} // namespace

class SecondFile::Private
{
public:
    Opened open(const fs::path &path);
    bool takePlace();
    bool flush();
    void remove();

    QByteArray buffer;
    int descriptor = -1;

private:
    bool openHidden(mode_t mode);
    void copyAttributes() const;
    bool nameAndRename();

    fs::path m_target;
    fs::path m_folder;
    fs::path m_hidden; // its own path while it has one
    bool m_replaces = false;
    struct stat m_old = {};
};

SecondFile::Opened SecondFile::Private::open(const fs::path &path)
{
    m_target = path;
    m_folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    m_replaces = ::stat(m_target.c_str(), &m_old) == 0;
    if (m_replaces && keepsForOwner(m_folder, m_old))
        return Opened::RefusedByFolder;
    // Nobody else looks in before it has the old file's mode; a new file has the user's usual one.
    const mode_t mode = m_replaces ? 0600 : 0666;
    descriptor = openNameless(m_folder, mode);
    if (descriptor >= 0 || (errno == EOPNOTSUPP && openHidden(mode)))
        return Opened::Yes;
    const bool refused = errno == EACCES || errno == EPERM || errno == EROFS;
    return refused ? Opened::RefusedByFolder : Opened::No;
}

bool SecondFile::Private::openHidden(mode_t mode)
{
    return underHiddenName(m_folder, m_hidden, [&](const fs::path &path) {
        constexpr int flags = O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC;
        descriptor = withoutInterrupts([&] { return ::open(path.c_str(), flags, mode); });
        return descriptor >= 0;
    });
}

bool SecondFile::Private::flush()
{
    const bool written = writeAll(descriptor, buffer);
    buffer.clear();
    return written;
}

void SecondFile::Private::copyAttributes() const
{
    // The administrator may give files away, others give them to their groups.
    const bool sameGroup = ::fchown(descriptor, m_old.st_uid, m_old.st_gid) == 0
                           || ::fchown(descriptor, static_cast<uid_t>(-1), m_old.st_gid) == 0;
    mode_t mode = m_old.st_mode & 0777;
    // What one group was allowed to do another is not.
    if (!sameGroup)
        mode = (mode & 0707) | ((mode & 0007) << 3);
    static_cast<void>(::fchmod(descriptor, mode));
    if (sameGroup)
        copyExtendedAttributes(m_target, descriptor);
}

bool SecondFile::Private::takePlace()
{
    if (!flush())
        return false;
    if (m_replaces)
        copyAttributes();
    // No error of close() matters after this one: everything is on the disk, or nothing happens.
    if (!sync(descriptor) || !nameAndRename())
        return false;
    syncFolder(m_folder);
    return true;
}

bool SecondFile::Private::nameAndRename()
{
    if (m_hidden.empty()) {
        // Where nothing is to be replaced it never has another name, unless somebody comes first.
        if (!m_replaces && giveName(descriptor, m_target))
            return true;
        if (!m_replaces && errno != EEXIST)
            return false;
        const auto give = [&](const fs::path &path) { return giveName(descriptor, path); };
        if (!underHiddenName(m_folder, m_hidden, give))
            return false;
    }
    if (::rename(m_hidden.c_str(), m_target.c_str()) != 0)
        return false;
    m_hidden.clear();
    return true;
}

void SecondFile::Private::remove()
{
    if (descriptor >= 0)
        ::close(descriptor);
    if (!m_hidden.empty())
        ::unlink(m_hidden.c_str());
}

SecondFile::SecondFile() : d(std::make_unique<Private>()) {}

SecondFile::~SecondFile()
{
    d->remove();
}

SecondFile::Opened SecondFile::open(const fs::path &target)
{
    return d->open(target);
}

bool SecondFile::write(const QByteArray &bytes)
{
    if (d->buffer.size() + bytes.size() <= heldBack) {
        d->buffer += bytes;
        return true;
    }
    return d->flush() && writeAll(d->descriptor, bytes);
}

bool SecondFile::takePlace()
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

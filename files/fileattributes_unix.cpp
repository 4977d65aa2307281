// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/fileattributes_unix.h"

#include <QtGlobal>

#include <cerrno>
#include <string>
#include <unistd.h>
#include <vector>

#ifdef Q_OS_LINUX
#include <sys/xattr.h>
#endif

namespace
{

// The errors of systems that forbid giving a file away, and of file systems without owners, groups
// or attributes. Any other error is a failure.
bool isRefusal(int error)
{
    return error == EPERM || error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

enum class Given { Yes, Refused, Failed };

Given giveTo(int descriptor, uid_t owner, gid_t group)
{
    if (::fchown(descriptor, owner, group) == 0)
        return Given::Yes;
    return isRefusal(errno) ? Given::Refused : Given::Failed;
}

// Only the group decides the result; the owner is optional.
Given giveOwnerAndGroup(int descriptor, const struct stat &present, const struct stat &old)
{
    const bool sameGroup = present.st_gid == old.st_gid;
    if (sameGroup && present.st_uid == old.st_uid)
        return Given::Yes;
    // The administrator may give files away; others may give them to their own groups.
    const Given both = giveTo(descriptor, old.st_uid, old.st_gid);
    if (both != Given::Refused || sameGroup)
        return both == Given::Failed ? both : Given::Yes;
    return giveTo(descriptor, static_cast<uid_t>(-1), old.st_gid);
}

// Access lists are extended attributes too.
bool copyExtendedAttributes([[maybe_unused]] const std::filesystem::path &from,
                            [[maybe_unused]] int to)
{
#ifdef Q_OS_LINUX
    std::vector<char> names(1 << 16);
    std::vector<char> value(1 << 16);
    const ssize_t size = ::listxattr(from.c_str(), names.data(), names.size());
    for (ssize_t at = 0; at < size;) {
        const std::string name = &names[at];
        const ssize_t length = ::getxattr(from.c_str(), name.c_str(), value.data(), value.size());
        if (length >= 0 && ::fsetxattr(to, name.c_str(), value.data(), length, 0) != 0
            && !isRefusal(errno))
            return false;
        at += static_cast<ssize_t>(name.size()) + 1;
    }
#endif
    return true;
}

} // namespace

bool copyAttributes(const std::filesystem::path &from, const struct stat &old, int descriptor)
{
    struct stat present = {};
    if (::fstat(descriptor, &present) != 0)
        return false;
    const Given given = giveOwnerAndGroup(descriptor, present, old);
    if (given == Given::Failed)
        return false;
    mode_t mode = old.st_mode & 0777;
    // The rights of the old group must not pass to another group.
    if (given == Given::Refused)
        mode = (mode & 0707) | ((mode & 0007) << 3);
    if ((present.st_mode & 0777) != mode && ::fchmod(descriptor, mode) != 0)
        return false;
    return given == Given::Refused || copyExtendedAttributes(from, descriptor);
}

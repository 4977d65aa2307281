// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/hiddenfiles_unix.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{

constexpr std::string_view prefix = ".zoravel-";
constexpr std::string_view hexadecimalDigits = "0123456789abcdef";
constexpr std::size_t digits = 16;

bool isHiddenName(std::string_view name)
{
    return name.size() == prefix.size() + digits && name.starts_with(prefix)
           && name.find_first_not_of(hexadecimalDigits, prefix.size()) == std::string_view::npos;
}

// A file that cannot be opened or locked belongs to somebody else or may be in use.
void removeUnlessHeld(const fs::path &path)
{
    const int descriptor = ::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return;
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
        && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        ::unlink(path.c_str());
    ::close(descriptor);
}

// The large folder that was read last: a program that writes thousands of files into it must not
// list it each time.
struct LargeFolder {
    fs::path path;
    std::chrono::steady_clock::time_point read;
};

} // namespace

fs::path hiddenName()
{
    char number[digits + 1];
    std::snprintf(number, sizeof number, "%016llx",
                  static_cast<unsigned long long>(QRandomGenerator::system()->generate64()));
    return std::string(prefix) + number;
}

void lockHidden(int descriptor)
{
    while (::flock(descriptor, LOCK_EX) != 0 && errno == EINTR)
        continue;
}

void removeHiddenLeftovers(const fs::path &folder)
{
    constexpr int many = 1'000;
    constexpr std::chrono::seconds pause{5};
    static thread_local LargeFolder large;
    const auto now = std::chrono::steady_clock::now();
    if (folder == large.path && now - large.read < pause)
        return;
    int count = 0;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        ++count;
        if (isHiddenName(entry->path().filename().native()))
            removeUnlessHeld(entry->path());
    }
    if (count > many)
        large = {folder, now};
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

#include <sys/stat.h>

// Gives an open file the mode, the group, the access list and the other extended attributes of the
// old file at from, and its owner where the user may: what may not be given, by rights or by the
// kind of file system, stays behind. If the group does, what it was allowed to do shrinks to what
// everybody is. False if the system failed at it, and the file may be open to the wrong people.
[[nodiscard]] bool copyAttributes(const std::filesystem::path &from, const struct stat &old,
                                  int descriptor);

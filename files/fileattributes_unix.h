// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

#include <sys/stat.h>

// Gives an open file the mode, group, access list and other extended attributes of the old file at
// from, and its owner if the user may set it. What rights or the file system forbid is left out. If
// that is the group, the group's rights shrink to those of everybody. False if the system failed:
// the file may be open to the wrong people then.
[[nodiscard]] bool copyAttributes(const std::filesystem::path &from, const struct stat &old,
                                  int descriptor);

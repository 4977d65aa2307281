// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

// The hidden files ".zoravel-" and sixteen hexadecimal digits hold new contents beside the file
// that they are to replace. Their writer holds a lock on them until its process ends, so that
// others know which ones are left over.

// A random name, which no file is likely to have.
[[nodiscard]] std::filesystem::path hiddenName();

// Locks an open file until it is closed, if the file system can.
void lockHidden(int descriptor);

// Removes the hidden files in folder that no process holds. A folder of very many files is listed
// once in some seconds only.
void removeHiddenLeftovers(const std::filesystem::path &folder);

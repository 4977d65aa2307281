// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

// The hidden files ".zoravel-" and sixteen hexadecimal digits, in which new contents wait beside
// the file that they are to replace. Whoever writes one holds a lock on it, which ends with the
// process: so another process knows what nobody will take away any more.

// A name that no file has, most likely.
[[nodiscard]] std::filesystem::path hiddenName();

// Locks an open file for as long as it is open, on file systems that can.
void lockHidden(int descriptor);

// Removes the hidden files in folder that no process holds any more. Of a folder of very many files
// it reads the names once in some seconds only.
void removeHiddenLeftovers(const std::filesystem::path &folder);

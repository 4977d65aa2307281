// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/collectioncheck.h"

#include <vector>

class Arguments;
class Console;

// The inputs of a run of checks.
struct CheckInputs {
    std::vector<CheckInput> files;
    bool failed = false; // a folder, a list of files or standard input could not be read
};

// The files that operands and --files-from name, each once, in order. Reports unreadable ones on
// standard error.
[[nodiscard]] CheckInputs checkInputs(const Arguments &arguments, Console &console);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/collectioncheck.h"

#include <vector>

class Arguments;
class Console;

// What a run of checks is about.
struct CheckInputs {
    std::vector<CheckInput> files;
    bool failed = false; // a folder, a list of files or standard input could not be read
};

// The files that operands and --files-from name, each once, in their order. Says on standard error
// what cannot be read.
[[nodiscard]] CheckInputs checkInputs(const Arguments &arguments, Console &console);

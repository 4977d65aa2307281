// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/arguments.h"
#include "cli/exitstatus.h"

#include <QByteArray>
#include <QByteArrayList>

#include <span>

class Console;

// One command of the program. program.cpp has the table; each command has a file of its name.
struct Command {
    const char *name;
    const char *operands; // as the help shows them
    const char *summary;  // one line
    const char *details;  // what the help says behind the options; lines of up to 80 characters
    std::span<const Option> options;
    int (*run)(const Arguments &arguments, Console &console); // returns an ExitStatus
    bool draws = false; // pictures or widgets: needs fonts, if no display
};

const Command &checkCommand();
const Command &compileCommand();
const Command &convertCommand();
const Command &diffCommand();
const Command &explainCommand();
const Command &formatCommand();
const Command &listCommand();
const Command &plotCommand();

// The ids of all checks.
[[nodiscard]] QByteArrayList checkIds();

// Says on standard error what is wrong with the command line and where the help is. Returns the
// exit status.
int usageError(Console &console, const Command &command, const UsageError &error);

// The same for a word that is none of the possible values.
int usageError(Console &console, const Command &command, const QByteArray &what,
               const QByteArray &word, const QByteArrayList &possible);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>

struct Command;
class Console;

// The command that the command line asks for; null if it names none. words excludes the program's
// name.
[[nodiscard]] const Command *findCommand(const QByteArrayList &words);

// Runs the command line: a command, the help or the version. Returns the exit status.
[[nodiscard]] int runProgram(const QByteArrayList &words, Console &console);

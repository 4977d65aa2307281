// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>

struct Command;
class Console;

// The command that words, the command line without the program's name, ask for; null if that is
// none.
[[nodiscard]] const Command *findCommand(const QByteArrayList &words);

// Runs the command line: a command, the help or the version. Returns the status to end with.
[[nodiscard]] int runProgram(const QByteArrayList &words, Console &console);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// What the words after the program's name ask for.
struct CommandLine {
    enum class Request { Window, Help, Version, Refusal };

    Request request = Request::Window;
    QString file;    // to open in the window; a null text if none is named
    QString problem; // what is wrong, in one line, for a Refusal
    int toolkitArguments =
        0; // how many leading ones, the program's name included, are the toolkit's
};

// Reads the arguments as they came to main, before there is an application, so that help, version
// and refusals need no display. Options of the toolkit are let through with their values. After
// "--" comes no option, of the toolkit either: the file may begin with a dash there.
[[nodiscard]] CommandLine readCommandLine(int argc, const char *const *argv);

// Answers a request that needs no window, on the standard output or, for a refusal, on the standard
// error. Returns the exit status: 0, 1 if the answer could not be written, 2 for a refusal.
[[nodiscard]] int answerOnTerminal(const CommandLine &commandLine);

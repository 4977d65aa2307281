// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// What the arguments ask for.
struct CommandLine {
    enum class Request { Window, Help, Version, Refusal };

    Request request = Request::Window;
    QString file;        // to open in the window; a null text if none is named
    QString problem;     // what is wrong, in one line, for a Refusal
    int qtArguments = 0; // how many leading arguments are Qt's, the program's name included
};

// Reads main's arguments before there is an application, so that help, version and refusals need no
// display. Qt's options pass with their values. No option, of Qt either, comes after "--": the file
// may begin with a dash there. Qt's options are listed here because Qt names them nowhere: it takes
// them out of the arguments when the application is made, which needs a display.
[[nodiscard]] CommandLine readCommandLine(int argc, const char *const *argv);

// Answers a request that needs no window, on the standard output or, for a refusal, on the standard
// error. Returns the exit status: 0, 1 if the answer could not be written, 2 for a refusal.
[[nodiscard]] int answerOnTerminal(const CommandLine &commandLine);

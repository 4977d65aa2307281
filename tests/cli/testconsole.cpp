// SPDX-License-Identifier: GPL-3.0-or-later
#include "testconsole.h"

#include "cli/program.h"

int TestConsole::run(const QByteArrayList &words)
{
    output.clear();
    errors.clear();
    return runProgram(words, *this);
}

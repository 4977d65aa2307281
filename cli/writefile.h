// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

class Console;

// Makes bytes the contents of the file of this name, as a whole or not at all; an interruption
// waits until that is done. If it cannot be done, says so on standard error and returns false.
[[nodiscard]] bool writeFile(const QByteArray &name, const QByteArray &bytes, Console &console);

// Says on standard error that the file cannot be written, and the reason where one is found. Call
// it right behind what has failed.
void sayUnwritable(const QByteArray &name, Console &console);

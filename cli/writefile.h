// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

class Console;

// Replaces the contents of the file with bytes, whole or not at all; an interruption waits for the
// end. A failure is reported on standard error and returns false.
[[nodiscard]] bool writeFile(const QByteArray &name, const QByteArray &bytes, Console &console);

// Reports on standard error that the file cannot be written, and why if that is known. Call it
// right after the failure.
void sayUnwritable(const QByteArray &name, Console &console);

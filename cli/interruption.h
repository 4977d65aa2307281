// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

// Catches SIGINT (Ctrl+C), SIGTERM and SIGHUP. They end the process at once with their own status,
// or at the end of an InterruptionHold if there is one. Without POSIX signals nothing is caught.
void catchInterruptions();

// Delays an interruption during work that must not stop in the middle, such as writing a file.
// Holds may be nested; the end of the last one lets a waiting interruption end the process.
class InterruptionHold
{
    Q_DISABLE_COPY_MOVE(InterruptionHold)

public:
    InterruptionHold();
    ~InterruptionHold();

    // Whether an interruption waits: clean up and give up soon.
    [[nodiscard]] static bool isRequested();
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

// Ctrl+C and the other polite requests to end: SIGINT, SIGTERM and SIGHUP. They end the process at
// once and with their own status, but not while an InterruptionHold exists: then they wait for its
// end. On systems without POSIX signals nothing is caught.
void catchInterruptions();

// Keeps an interruption out of a stretch of work that must not stop in the middle, such as the
// writing of a file. Holds may be nested; the last to go lets a waiting interruption end the
// process.
class InterruptionHold
{
    Q_DISABLE_COPY_MOVE(InterruptionHold)

public:
    InterruptionHold();
    ~InterruptionHold();

    // Whether an interruption waits: give up soon, and tidily.
    [[nodiscard]] static bool isRequested();
};

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/interruption.h"

#include <atomic>
#include <csignal>

#ifndef Q_OS_WIN

namespace
{

std::atomic<int> holds = 0;
std::atomic<int> requested = 0; // the signal's number
static_assert(std::atomic<int>::is_always_lock_free, "only then may a signal handler use it");

// The signal ends the process, so that the parent sees it in the status and a shell stops its
// script.
void endBy(int signal)
{
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    std::raise(signal);
    // The signal is blocked while its own handler runs.
    sigprocmask(SIG_UNBLOCK, &only, nullptr);
}

void onSignal(int signal)
{
    if (holds > 0)
        requested = signal;
    else
        endBy(signal);
}

} // namespace

void catchInterruptions()
{
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        // A signal that the parent ignores, as nohup does, stays ignored.
        struct sigaction present = {};
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
    // A write beyond the user's limit of file sizes fails like any other write.
    std::signal(SIGXFSZ, SIG_IGN);
}

InterruptionHold::InterruptionHold()
{
    ++holds;
}

InterruptionHold::~InterruptionHold()
{
    if (--holds == 0 && requested != 0)
        endBy(requested);
}

bool InterruptionHold::isRequested()
{
    return requested != 0;
}

#else

void catchInterruptions() {}
InterruptionHold::InterruptionHold() = default;
InterruptionHold::~InterruptionHold() = default;
bool InterruptionHold::isRequested()
{
    return false;
}

#endif

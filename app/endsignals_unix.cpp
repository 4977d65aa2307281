// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/endsignals.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr std::array endSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler may do little more than write to a pipe, which the event loop reads.
std::atomic<int> readEnd = -1;
std::atomic<int> writeEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free, "only then may a signal handler use it");

void onSignal(int /*signal*/)
{
    const int error = errno;
    const char byte = 0;
    // If the pipe is full, the event loop is about to read it anyway.
    [[maybe_unused]] const ssize_t written = write(writeEnd, &byte, 1);
    errno = error;
}

bool openPipe()
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        return false;
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    readEnd = ends[0];
    writeEnd = ends[1];
    return true;
}

void emptyPipe()
{
    std::array<char, 64> bytes{};
    while (read(readEnd, bytes.data(), bytes.size()) > 0) {
    }
}

using Handler = void (*)(int);

Handler handlerOf(int signal)
{
    struct sigaction present = {};
    sigaction(signal, nullptr, &present);
    return present.sa_handler;
}

} // namespace

EndSignals::EndSignals()
{
    if (!openPipe())
        return; // they end the process, as if nobody listened
    auto *notifier = new QSocketNotifier(readEnd, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        emptyPipe();
        emit received();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : endSignals) {
        if (handlerOf(signal) != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

EndSignals::~EndSignals()
{
    for (const int signal : endSignals) {
        if (handlerOf(signal) == onSignal)
            std::signal(signal, SIG_DFL);
    }
    for (std::atomic<int> *end : {&readEnd, &writeEnd})
        close(end->exchange(-1));
}

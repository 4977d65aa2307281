// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/console.h"

#include <cerrno>
#include <cstring>
#include <utility>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace
{

constexpr int inputFd = 0;
constexpr int outputFd = 1;
constexpr int errorFd = 2;

#ifdef Q_OS_WIN
constexpr auto isTerminal = _isatty;
constexpr unsigned largestPiece = 1u << 20;
int readSome(int fd, char *to, qsizetype size)
{
    return _read(fd, to, unsigned(qMin<qsizetype>(size, largestPiece)));
}
int writeSome(int fd, const char *from, qsizetype size)
{
    return _write(fd, from, unsigned(qMin<qsizetype>(size, largestPiece)));
}
#else
constexpr auto isTerminal = isatty;
qsizetype readSome(int fd, char *to, qsizetype size)
{
    return ::read(fd, to, size);
}
qsizetype writeSome(int fd, const char *from, qsizetype size)
{
    return ::write(fd, from, size);
}
#endif

// Returns 0 or the error's number.
int writeAll(int fd, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const qsizetype written = writeSome(fd, bytes.constData() + done, bytes.size() - done);
        if (written < 0 && errno != EINTR)
            return errno;
        done += qMax<qsizetype>(written, 0);
    }
    return 0;
}

} // namespace

void Console::error(const QByteArray &what)
{
    err("zoravel: " + what + '\n');
}

ProcessConsole::ProcessConsole()
    : m_outIsTerminal(isTerminal(outputFd) != 0), m_errIsTerminal(isTerminal(errorFd) != 0)
{
#ifdef Q_OS_WIN
    // The streams pass bytes unchanged, without added carriage returns.
    for (const int fd : {inputFd, outputFd})
        _setmode(fd, _O_BINARY);
#endif
}

ProcessConsole::~ProcessConsole() = default;

void ProcessConsole::out(const QByteArray &bytes)
{
    constexpr qsizetype largestPending = 1 << 16;
    if (m_failed)
        return;
    m_pending += bytes;
    if (m_pending.size() >= largestPending || m_outIsTerminal)
        flush();
}

void ProcessConsole::err(const QByteArray &bytes)
{
    // flush() reports a failure of standard output itself, and calls this.
    if (!m_pending.isEmpty())
        flush();
    writeAll(errorFd, bytes);
}

std::optional<QByteArray> ProcessConsole::readInput()
{
    constexpr qsizetype pieceSize = 1 << 16;
    QByteArray bytes;
    for (;;) {
        const qsizetype before = bytes.size();
        bytes.resize(before + pieceSize);
        const qsizetype got = readSome(inputFd, bytes.data() + before, pieceSize);
        const int reason = errno;
        bytes.resize(before + qMax<qsizetype>(got, 0));
        if (got == 0)
            return bytes;
        if (got < 0 && reason != EINTR)
            return std::nullopt;
    }
}

bool ProcessConsole::flush()
{
    const QByteArray bytes = std::exchange(m_pending, {});
    const int reason = m_failed ? 0 : writeAll(outputFd, bytes);
    if (reason == 0)
        return !m_failed;
    m_failed = true;
    if (reason != EPIPE)
        error(QByteArray("standard output: ") + std::strerror(reason));
    return false;
}

Progress::Progress(Console &console, const QByteArray &what, qsizetype total)
    : m_console(console), m_what(what), m_total(total)
{
    m_elapsed.start();
}

Progress::~Progress()
{
    clear();
}

void Progress::advance(qsizetype done)
{
    constexpr qint64 patience = 1000; // ms
    constexpr qint64 interval = 100;  // ms, faster than anybody reads
    if (!m_console.isErrTerminal())
        return;
    const qint64 now = m_elapsed.elapsed();
    if (now < patience || (m_visible && now - m_lastShown < interval))
        return;
    m_lastShown = now;
    m_visible = true;
    m_console.err('\r' + m_what + ' ' + QByteArray::number(done) + " of "
                  + QByteArray::number(m_total) + "\x1b[K");
}

void Progress::clear()
{
    if (m_visible)
        m_console.err("\r\x1b[K");
    m_visible = false;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <optional>

// The streams of the program, as bytes. Tests put their own in its place.
class Console
{
    Q_DISABLE_COPY_MOVE(Console)

public:
    Console() = default;
    virtual ~Console() = default;

    // Appends to standard output, which is buffered.
    virtual void out(const QByteArray &bytes) = 0;
    // Writes to standard error, behind what standard output has got so far.
    virtual void err(const QByteArray &bytes) = 0;
    // All of standard input; nothing if it cannot be read to its end.
    virtual std::optional<QByteArray> readInput() = 0;
    // False if standard output has not taken everything. Says so on standard error, but for a
    // reader who has gone: that is no one's fault.
    virtual bool flush() = 0;
    // Whether nobody reads standard output any more, so that work for it alone can end.
    [[nodiscard]] virtual bool isOutputClosed() const = 0;

    [[nodiscard]] virtual bool isOutTerminal() const = 0;
    [[nodiscard]] virtual bool isErrTerminal() const = 0;

    // "zoravel: what", a line on standard error.
    void error(const QByteArray &what);
};

// The process's own streams.
class ProcessConsole final : public Console
{
public:
    ProcessConsole();
    ~ProcessConsole() override;

    void out(const QByteArray &bytes) override;
    void err(const QByteArray &bytes) override;
    std::optional<QByteArray> readInput() override;
    bool flush() override;
    bool isOutputClosed() const override { return m_failed; }
    bool isOutTerminal() const override { return m_outIsTerminal; }
    bool isErrTerminal() const override { return m_errIsTerminal; }

private:
    QByteArray m_pending;
    bool m_failed = false;
    bool m_outIsTerminal;
    bool m_errIsTerminal;
};

// One line on standard error that says how far a long work is: only on a terminal, and only once
// the work has taken a second. Gone when the object is.
class Progress
{
    Q_DISABLE_COPY_MOVE(Progress)

public:
    // total counts what advance() counts; what is said before the numbers, such as "Compiling".
    Progress(Console &console, const QByteArray &what, qsizetype total);
    ~Progress();

    void advance(qsizetype done);
    // Takes the line away, before something else is written to the terminal.
    void clear();

private:
    Console &m_console;
    QByteArray m_what;
    qsizetype m_total;
    QElapsedTimer m_elapsed;
    qint64 m_lastShown = 0; // ms since the start
    bool m_visible = false;
};

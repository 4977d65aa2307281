// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <optional>

// The program's streams, as bytes. Tests replace them.
class Console
{
    Q_DISABLE_COPY_MOVE(Console)

public:
    Console() = default;
    virtual ~Console() = default;

    // Appends to standard output, which is buffered.
    virtual void out(const QByteArray &bytes) = 0;
    // Writes to standard error, after the pending standard output.
    virtual void err(const QByteArray &bytes) = 0;
    // All of standard input; nothing if it cannot be read to its end.
    virtual std::optional<QByteArray> readInput() = 0;
    // False if standard output did not take everything. Reports that on standard error, unless the
    // reader has gone, which is nobody's fault.
    virtual bool flush() = 0;
    // Whether nobody reads standard output any more, so that work for it can end.
    [[nodiscard]] virtual bool isOutputClosed() const = 0;

    [[nodiscard]] virtual bool isOutTerminal() const = 0;
    [[nodiscard]] virtual bool isErrTerminal() const = 0;

    // Writes "zoravel: what" as a line on standard error.
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

// A line on standard error that shows the progress of long work, only on a terminal and after a
// second. It disappears with the object.
class Progress
{
    Q_DISABLE_COPY_MOVE(Progress)

public:
    // total is the last count of advance(); what comes before the numbers, such as "Compiling".
    Progress(Console &console, const QByteArray &what, qsizetype total);
    ~Progress();

    void advance(qsizetype done);
    // Removes the line before something else is written to the terminal.
    void clear();

private:
    Console &m_console;
    QByteArray m_what;
    qsizetype m_total;
    QElapsedTimer m_elapsed;
    qint64 m_lastShown = 0; // ms since the start
    bool m_visible = false;
};

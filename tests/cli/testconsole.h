// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/console.h"

#include <QByteArrayList>

// The streams of a command that runs within the test.
class TestConsole final : public Console
{
public:
    void out(const QByteArray &bytes) override { output += bytes; }
    void err(const QByteArray &bytes) override { errors += bytes; }
    std::optional<QByteArray> readInput() override { return input; }
    bool flush() override { return true; }
    bool isOutputClosed() const override { return outputClosed; }
    bool isOutTerminal() const override { return false; }
    bool isErrTerminal() const override { return terminal; }

    // Runs the program with these words and returns its status. Earlier output is dropped.
    int run(const QByteArrayList &words);

    std::optional<QByteArray> input; // nothing: closed
    QByteArray output;
    QByteArray errors;
    bool outputClosed = false;
    bool terminal = false;
};

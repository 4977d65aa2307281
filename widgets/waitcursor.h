// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCursor>
#include <QGuiApplication>

// Shows the wait cursor over the whole application for as long as it lives.
class WaitCursor
{
    Q_DISABLE_COPY_MOVE(WaitCursor)

public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
};

// Returns what function returns, with the wait cursor shown while it works.
template <typename Function>
[[nodiscard]] auto behindWaitCursor(Function function)
{
    const WaitCursor waitCursor;
    return function();
}

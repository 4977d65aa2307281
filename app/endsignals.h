// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

// Receives the signals by which a system asks a process to end: SIGTERM, SIGINT (Ctrl+C on the
// terminal) and SIGHUP (the terminal is closed). A signal that is ignored at construction, as under
// nohup, stays ignored. Only one object may exist. On systems without such signals it does nothing.
class EndSignals final : public QObject
{
    Q_OBJECT

public:
    EndSignals();
    ~EndSignals() override;

signals:
    // Emitted from the event loop; several signals before its turn count as one.
    void received();
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

// Hears the signals by which a system asks a process to end, from its construction to its
// destruction: SIGTERM, SIGINT (Ctrl+C on the terminal) and SIGHUP (the terminal is closed). One
// that is ignored at construction, as under nohup, stays ignored. No more than one may exist. On
// systems without such signals it hears nothing.
class EndSignals final : public QObject
{
    Q_OBJECT

public:
    EndSignals();
    ~EndSignals() override;

signals:
    // From the event loop; several that came before it was its turn count as one.
    void received();
};

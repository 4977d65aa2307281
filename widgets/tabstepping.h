// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QTabBar;

// Keeps the focus on a tab bar when Left or Right chooses a tab, although the sub-window that comes
// up takes it: the arrows step through all tabs. An event filter for the bar, which owns it.
class TabStepping : public QObject
{
    Q_OBJECT

public:
    explicit TabStepping(QTabBar *tabs);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

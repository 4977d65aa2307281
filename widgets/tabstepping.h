// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QTabBar;

// Lets a tab bar keep the keyboard when Left or Right chooses another tab, whatever the window that
// comes up does with it: so one arrow after the other goes through all tabs. An event filter for
// the bar, which owns it.
class TabStepping : public QObject
{
    Q_OBJECT

public:
    explicit TabStepping(QTabBar *tabs);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

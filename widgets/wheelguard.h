// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

// Lets the wheel change a widget's value only while it has the focus, which the wheel does not give
// it. Otherwise the wheel goes to the parent: scrolling a form past the widget must not change it.
// An event filter for the widget, which owns it.
class WheelGuard : public QObject
{
    Q_OBJECT

public:
    explicit WheelGuard(QWidget *widget);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

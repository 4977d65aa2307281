// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

// Lets the wheel change the value of a widget only while it has the keyboard, which the wheel does
// not give it. Otherwise the wheel goes to what is around the widget: who scrolls a form past it
// must not change it without noticing. An event filter for the widget, which owns it.
class WheelGuard : public QObject
{
    Q_OBJECT

public:
    explicit WheelGuard(QWidget *widget);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

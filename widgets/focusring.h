// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QWidget;

// Draws a ring around the widget that has the keyboard, in every window of the program, if it is
// one that many styles leave unmarked (text editors, views, labels) or whose style sheet does. One
// object serves the whole program.
class FocusRing : public QObject
{
    Q_OBJECT

public:
    explicit FocusRing(QObject *parent);
    ~FocusRing() override;

private:
    void follow(QWidget *focused);

    QPointer<QFocusFrame> m_frame; // belongs to the parent of the widget that it is around
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QWidget;

// Draws a ring around the focused widget, in every window of the program, if many styles leave it
// unmarked (text editors, views, labels) or its style sheet does. One object serves the whole
// program.
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

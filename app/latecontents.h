// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

class QSize;
class QWidget;

// Keeps the parts of a widget in a sub-window hidden until the sub-window comes up. Hidden parts
// hold their values but are neither styled nor laid out, which is most of what a form costs.
class LateContents : public QObject
{
    Q_OBJECT

public:
    // The widget has a layout and is not in its area yet. It owns this object.
    explicit LateContents(QWidget *widget);

    // Shows the parts in a widget of this size.
    void showParts(const QSize &size);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followSubWindow();

    QWidget *m_widget;
    QList<QWidget *> m_hidden;
};

// Shows the parts of a sub-window's widget now if they are still hidden.
void showContents(const QWidget *widget);

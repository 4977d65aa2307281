// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

class QSize;
class QWidget;

// Keeps the parts of a widget that becomes a sub-window hidden until that comes up. Hidden parts
// hold what they always do, but are neither styled nor laid out, which is most of what a form
// costs.
class LateContents : public QObject
{
    Q_OBJECT

public:
    // Of a widget with a layout that has not been added to its area yet. Belongs to the widget.
    explicit LateContents(QWidget *widget);

    // Shows the parts, as they stand in a widget of this size.
    void showParts(const QSize &size);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followSubWindow();

    QWidget *m_widget;
    QList<QWidget *> m_hidden;
};

// Shows the parts of such a sub-window's widget now, if they are not shown yet.
void showContents(const QWidget *widget);

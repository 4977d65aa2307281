// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

class QPlainTextEdit;
class QWidget;

// Passes the undo and redo keys to a text editor while a button that changes its text has the
// focus. A click leaves the focus there, and Ctrl+Z would do nothing.
class UndoKeys : public QObject
{
    Q_OBJECT

public:
    // The editor owns this; it outlives the buttons or is destroyed with them.
    UndoKeys(QPlainTextEdit *editor, const QList<QWidget *> &buttons);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPlainTextEdit *m_editor;
};

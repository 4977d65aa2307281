// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

class QPlainTextEdit;
class QWidget;

// Hands the keys for undo and redo on to a text editor while the keyboard is on one of the buttons
// that change its text: there it stays after a click.
class UndoKeys : public QObject
{
    Q_OBJECT

public:
    // Belongs to the editor, which outlives the buttons or dies with them.
    UndoKeys(QPlainTextEdit *editor, const QList<QWidget *> &buttons);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPlainTextEdit *m_editor;
};

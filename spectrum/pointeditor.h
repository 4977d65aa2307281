// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

// The editor of a spectrum's points: text of up to millions of lines. Shows the wait cursor while
// it pastes, undoes, or removes much at once, by key or by menu, whose entries Qt connects past
// this class. It refuses a paste with a line too long to lay out, and a tool tip says so. Code that
// asks for its class sees a QPlainTextEdit.
class PointEditor : public QPlainTextEdit
{
public:
    explicit PointEditor(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;
    void resizeEvent(QResizeEvent *event) override;
};

// Wraps the lines of an editor that is to hold so many, unless that takes too much time and memory.
// A PointEditor does so itself.
void wrapLinesUnlessMany(QPlainTextEdit *editor, qsizetype lines);

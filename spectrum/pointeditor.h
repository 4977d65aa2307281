// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

// The editor of a spectrum's points: text of up to millions of lines. Shows the wait cursor while
// it takes in what is pasted, undoes, or removes much at once, however it is asked to. What is
// pasted with a line too long to be laid out is refused as a whole, which a tool tip says. To
// whoever asks for its class it is a QPlainTextEdit.
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
// A PointEditor itself follows what it holds.
void wrapLinesUnlessMany(QPlainTextEdit *editor, qsizetype lines);

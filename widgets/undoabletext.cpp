// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/undoabletext.h"

#include <QPlainTextEdit>
#include <QTextCursor>

void replaceTextUndoably(QPlainTextEdit *editor, const QString &text)
{
    QTextCursor cursor(editor->document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    editor->moveCursor(QTextCursor::Start);
}

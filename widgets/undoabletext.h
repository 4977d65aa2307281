// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QPlainTextEdit;
class QString;

// Replaces the whole text of editor as one step of its undo history, where the editor's own way of
// setting a text would end that history. The cursor goes to the start.
void replaceTextUndoably(QPlainTextEdit *editor, const QString &text);

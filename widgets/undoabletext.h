// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QPlainTextEdit;
class QString;

// Replaces the whole text of editor as one undo step; setPlainText() would end the undo history.
// The cursor goes to the start.
void replaceTextUndoably(QPlainTextEdit *editor, const QString &text);

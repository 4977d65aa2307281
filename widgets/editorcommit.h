// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QDataWidgetMapper;
class QTextEdit;
class QWidget;

// Writes what editor, which mapper must map, holds into the model. The editor itself stays as it
// is: text, cursor, selection, undo.
void commitEditor(QDataWidgetMapper *mapper, QTextEdit *editor);

// A data mapper commits an editor when it loses the focus only: a shortcut, a tool button or the
// window's close button would see the value from before the typing. This writes the one editor of
// mapper that has the focus in its window into the model, if the user has changed it since it was
// last filled, and nothing else. The editor itself stays as it is: text, focus, cursor, selection,
// undo. form is any widget of the window that holds the mapper's editors.
void commitFocusedEditor(QDataWidgetMapper *mapper, const QWidget *form);

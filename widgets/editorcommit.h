// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class CleanTextEdit;
class QDataWidgetMapper;
class QWidget;

// Writes what editor, which mapper must map, holds into the model. The editor itself stays as it
// is: text, cursor, selection, undo.
void commitEditor(QDataWidgetMapper *mapper, CleanTextEdit *editor);

// Whether editor, which mapper must map, shows just what filling it from its text in the model
// gives. To commit it all the same would lose markup that cannot be shown, such as a raw "<" or
// repeated blanks. Never so for a number, which committing makes a text.
[[nodiscard]] bool showsItsModelText(const QDataWidgetMapper *mapper, CleanTextEdit *editor);

// A data mapper commits an editor when it loses the focus only: a shortcut, a tool button or the
// window's close button would see the value from before the typing, and what was changed in an
// editor without the focus would never be seen. This commits each editor of mapper that was changed
// since it was last filled or committed and does not show its model's text again; of the others
// nothing is written. An input method that is at work in one of them is made to finish.
void commitEdits(QDataWidgetMapper *mapper);

// Commits each editor of mapper that does not show its model's text, whoever changed it. Unlike
// QDataWidgetMapper::submit() it leaves those alone that show less than the model holds.
void submitEditors(QDataWidgetMapper *mapper);

// Makes an editor of mapper within form that is changed while it does not have the focus, as by
// dictation or a screen reader, be committed soon, as others are when they lose it. For editors
// that exist already.
void commitEditsWithoutFocus(QDataWidgetMapper *mapper, const QWidget *form);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;
class QTextDocument;
class QWidget;

// html as the tool tip of field. A style sheet of the field that fixes its background does so for
// its tool tip, whose text would be white on white in a dark theme.
[[nodiscard]] QString fieldTip(const QWidget *field, const QString &html);

// The text of a document, with its sub- and superscripts, as html for a tool tip. Long words can be
// broken; of a text that would fill the screen it is the beginning.
[[nodiscard]] QString wholeTextTip(const QTextDocument *document);

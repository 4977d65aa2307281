// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;
class QTextDocument;
class QWidget;

// html as the tool tip of field. If the field's style sheet fixes its background, the tool tip's
// text is made dark too: it would be white on white in a dark theme.
[[nodiscard]] QString fieldTip(const QWidget *field, const QString &html);

// The text of a document, with its sub- and superscripts, as html for a tool tip. Long words can
// break; a text that would fill the screen is cut.
[[nodiscard]] QString wholeTextTip(const QTextDocument *document);

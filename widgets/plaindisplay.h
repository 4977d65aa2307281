// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QStringView>

class QKeyEvent;
class QTextCursor;
class QTextDocument;
class QTextEdit;
class QTextFragment;

// Handles texts whose layout would take too long or crash, such as a name of megabytes in a
// stranger's file. A field shows the beginning of such a text as it is written, tags included. A
// grey mark, one object at the end, stands for the rest and says how long it is. Copying, cutting,
// deleting or undoing the mark does the same to the text that it stands for.

// Whether markup can be laid out in time with its formatting: up to a million characters, of which
// 60,000 may be beyond the Latin letters, or 20,000 tags or controls, or a mix.
[[nodiscard]] bool isShownFormatted(QStringView markup);

// The first line of text that would take too long to lay out; empty if there is none.
[[nodiscard]] QStringView endlessLine(QStringView text);

// Whether text can be laid out in time once it replaces what cursor has selected in document.
[[nodiscard]] bool hasRoomFor(const QTextDocument *document, const QTextCursor &cursor,
                              QStringView text);

// Whether a word is so long that finding its line break takes the square of its length.
[[nodiscard]] bool hasEndlessWord(QStringView text);

// The first most characters of text, or one less to keep a surrogate pair together.
[[nodiscard]] QString beginningOf(const QString &text, qsizetype most);

// Replaces the selection of cursor with the beginning of text, as it is written, and a mark for the
// rest. If there is no room, the mark stands for all of it.
void insertPlainly(QTextCursor cursor, const QString &text);

// The text that a fragment of marks stands for; null for any other fragment.
[[nodiscard]] QString hiddenText(const QTextFragment &fragment);

// Whether the selection of cursor contains marks.
[[nodiscard]] bool selectsHiddenText(const QTextCursor &cursor);

// Resets the format behind a mark, so that what is inserted next does not become part of it.
void leaveMark(QTextEdit *field);

// Lets a field show marks and name their text in its tool tip; a key that would delete a mark
// selects it first. An event filter for the field, which owns it.
class HiddenTextMarks : public QObject
{
    Q_OBJECT

public:
    explicit HiddenTextMarks(QTextEdit *field);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] bool selectInsteadOf(const QKeyEvent *event);
    [[nodiscard]] QString tip() const;

    QTextEdit *m_field;
};

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

// Texts whose layout would take too long or crash, such as a name of megabytes in a stranger's
// file. A field shows them as they are written, tags and all, and of that only the beginning. The
// rest stands behind one object at the end of it, a grey mark that says how much it is. Whatever is
// done to the mark is done to that text: it is copied, cut and deleted with it, and undone.

// Whether markup is laid out in time with its formatting: up to a million characters, of which
// 60,000 may be letters beyond the Latin ones, or 20,000 tags or controls, or some of each.
[[nodiscard]] bool isShownFormatted(QStringView markup);

// The first line of text that would take too long to lay out; an empty one if there is none.
[[nodiscard]] QStringView endlessLine(QStringView text);

// Whether document, without what cursor has selected, has room for text to be laid out in time.
[[nodiscard]] bool hasRoomFor(const QTextDocument *document, const QTextCursor &cursor,
                              QStringView text);

// Whether a word is so long that looking for the place to break it takes the square of its length.
[[nodiscard]] bool hasEndlessWord(QStringView text);

// The first most characters of text, or one less to keep a pair of surrogates together.
[[nodiscard]] QString beginningOf(const QString &text, qsizetype most);

// Puts the beginning of text in the place of what the cursor has selected, as it is written, and
// the mark for the rest of it. If there is no room, all of it goes behind the mark.
void insertPlainly(QTextCursor cursor, const QString &text);

// The text behind a fragment of objects; a null text if it is none.
[[nodiscard]] QString hiddenText(const QTextFragment &fragment);

// Whether the cursor has selected objects that text stands behind.
[[nodiscard]] bool selectsHiddenText(const QTextCursor &cursor);

// Behind a mark, has what is put in next not take its format, which would make it a part of it.
void leaveMark(QTextEdit *field);

// Lets a field show such marks, says in its tool tip what stands behind them, and has a key that
// would delete one select it first. An event filter for the field, which owns it.
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

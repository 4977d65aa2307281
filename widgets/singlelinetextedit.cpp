// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/singlelinetextedit.h"

#include "widgets/typedalignment.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextCursor>
#include <QTextDocument>

SingleLineTextEdit::SingleLineTextEdit(QWidget *parent) : CleanTextEdit(parent)
{
    // Rich text is taken so that the clipboard's text form is offered whatever it holds; only that
    // text is inserted.
    setAcceptRichText(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFrameStyle(QFrame::NoFrame);
    setLineWrapMode(QTextEdit::NoWrap);
    setStyleSheet(QStringLiteral("background-color: white; border: 1px solid gray; padding: 2px;"));
    connect(findChild<TypedAlignment *>(), &TypedAlignment::typedInPlaceOfEditor, this,
            &SingleLineTextEdit::adjustHeight);
    adjustHeight();
}

void SingleLineTextEdit::adjustHeight()
{
    constexpr int heightMargin = 5;
    constexpr int longText = 2000; // characters
    // Each layout of a long line takes its time, and this makes up to four. Lines are not wrapped,
    // so the height is the same without.
    if (document()->characterCount() < longText)
        document()->adjustSize();
    setFixedHeight(static_cast<int>(document()->size().height()) + heightMargin);
}

// The style sheet paints the editor, and the part of it that shows the text is transparent. The
// style has a background painted there all the same, of which nothing can be seen, and for which it
// keeps a record by the part's address that it never frees.
bool SingleLineTextEdit::event(QEvent *event)
{
    const bool done = CleanTextEdit::event(event);
    if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange)
        viewport()->setAttribute(Qt::WA_StyledBackground, false);
    return done;
}

void SingleLineTextEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->ignore();
        return;
    }
    CleanTextEdit::keyPressEvent(event);
    adjustHeight();
}

void SingleLineTextEdit::insertFromMimeData(const QMimeData *source)
{
    QString text = source->text();
    if (text.isEmpty())
        return; // a picture, say, which must not take the place of what is selected
    text = text.simplified();
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    text.replace(QLatin1Char('\r'), QLatin1Char(' '));
    textCursor().insertText(text);
    adjustHeight();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/singlelinetextedit.h"

#include "widgets/fieldtip.h"
#include "widgets/typedalignment.h"

#include <QEvent>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolTip>

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
    // Whatever moves the view: typing, a new text, size or font, the wheel.
    for (const QScrollBar *bar : {horizontalScrollBar(), verticalScrollBar()}) {
        connect(bar, &QScrollBar::valueChanged, this, &SingleLineTextEdit::showBeginning);
        connect(bar, &QScrollBar::rangeChanged, this, &SingleLineTextEdit::showBeginning);
    }
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

bool SingleLineTextEdit::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const QString tip = wholeTip();
        if (!tip.isEmpty()) {
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), tip, this);
            return true;
        }
    }
    const bool done = CleanTextEdit::event(event);
    switch (event->type()) {
    case QEvent::Polish:
    case QEvent::StyleChange:
        // The style sheet paints the editor, and the part of it that shows the text is transparent.
        // The style has a background painted there all the same, of which nothing can be seen, and
        // for which it keeps a record by the part's address that it never frees.
        viewport()->setAttribute(Qt::WA_StyledBackground, false);
        break;
    case QEvent::FocusIn:
        showCursor(static_cast<QFocusEvent *>(event)->reason());
        break;
    case QEvent::FocusOut:
    case QEvent::LayoutDirectionChange:
        showBeginning();
        break;
    default:
        break;
    }
    return done;
}

// Its end alone would read as another number.
void SingleLineTextEdit::showBeginning()
{
    if (hasFocus())
        return;
    const bool startsAtTheRight = document()->firstBlock().textDirection() == Qt::RightToLeft;
    QScrollBar *bar = horizontalScrollBar();
    // Its values count from the side at which the form begins.
    bar->setValue(startsAtTheRight == isRightToLeft() ? bar->minimum() : bar->maximum());
    verticalScrollBar()->setValue(verticalScrollBar()->minimum());
}

// Not where a click may follow, which must hit the character that was seen.
void SingleLineTextEdit::showCursor(Qt::FocusReason reason)
{
    if (reason != Qt::MouseFocusReason && reason != Qt::ActiveWindowFocusReason)
        ensureCursorVisible();
}

bool SingleLineTextEdit::showsAll() const
{
    return horizontalScrollBar()->maximum() <= document()->documentMargin()
           && verticalScrollBar()->maximum() < fontMetrics().lineSpacing() / 2;
}

QString SingleLineTextEdit::wholeTip() const
{
    QString said = toolTip();
    if (showsAll())
        return said;
    if (!Qt::mightBeRichText(said))
        said = said.toHtmlEscaped();
    const QString gap = said.isEmpty() ? QString() : QStringLiteral("<br>");
    return said + gap + fieldTip(this, wholeTextTip(document()));
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
    if (!insertedPlainly(text))
        textCursor().insertText(text);
    adjustHeight();
}

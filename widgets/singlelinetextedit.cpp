// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/singlelinetextedit.h"

#include "widgets/fieldtip.h"
#include "widgets/typedalignment.h"

#include <QEvent>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QStyle>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolTip>

namespace
{

// A scroll bar that is never shown.
class UnseenBar final : public QScrollBar
{
public:
    using QScrollBar::QScrollBar;

    [[nodiscard]] QSize sizeHint() const override { return {0, 0}; }
};

} // namespace

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
    setSheetForLater(
        QStringLiteral("background-color: white; border: 1px solid gray; padding: 2px;"));
    connect(findChild<TypedAlignment *>(), &TypedAlignment::typedInPlaceOfEditor, this,
            &SingleLineTextEdit::adjustHeight);
    // Whatever moves the view: typing, a new text, size or font, the wheel.
    for (const QScrollBar *bar : {horizontalScrollBar(), verticalScrollBar()}) {
        // The editor would look in the next turn of the event loop whether to show the bar.
        disconnect(bar, &QScrollBar::rangeChanged, this, nullptr);
        connect(bar, &QScrollBar::valueChanged, this, &SingleLineTextEdit::showBeginning);
        connect(bar, &QScrollBar::rangeChanged, this, &SingleLineTextEdit::showBeginning);
    }
    adjustHeight();
}

// A style sheet makes a style for the field, tells all of its parts, and keeps what it makes of the
// rules, which takes more memory than the rest of a field that is never shown. Fields that wait to
// be shown share one such style, which their parts do not have, and keep only the rules' text.
void SingleLineTextEdit::setSheetForLater(const QString &sheet)
{
    static QPointer<QStyle> shared;
    if (!shared) {
        setStyleSheet(sheet);
        shared = style();
        return;
    }
    // Qt's were styled when it asked for their size, and a part that is styled already has the
    // whole field styled at once.
    verticalScrollBar()->hide();
    horizontalScrollBar()->hide();
    setVerticalScrollBar(new UnseenBar(this));
    setHorizontalScrollBar(new UnseenBar(this));
    setStyle(shared);
    setStyleSheet(sheet);
}

// Before the field is first shown it gets the style of its own.
void SingleLineTextEdit::styleParts()
{
    if (testAttribute(Qt::WA_SetStyle))
        setStyle(nullptr); // which makes another from the sheet
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
    if (event->type() == QEvent::Polish)
        styleParts();
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

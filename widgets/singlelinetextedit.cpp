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
    // Rich text is accepted so that the clipboard's text form is always offered; only that is
    // inserted.
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
    // Anything may move the view: typing, a new text, size or font, the wheel.
    for (const QScrollBar *bar : {horizontalScrollBar(), verticalScrollBar()}) {
        // The editor would check in the next turn of the event loop whether to show the bar.
        disconnect(bar, &QScrollBar::rangeChanged, this, nullptr);
        connect(bar, &QScrollBar::valueChanged, this, &SingleLineTextEdit::showBeginning);
        connect(bar, &QScrollBar::rangeChanged, this, &SingleLineTextEdit::showBeginning);
    }
    adjustHeight();
}

// A style sheet makes a style for the field, notifies all of its parts and keeps its parsed rules,
// which takes more memory than the rest of a field that is never shown. Fields that wait to be
// shown share one such style without their parts, and keep only the text of the rules.
void SingleLineTextEdit::setSheetForLater(const QString &sheet)
{
    static QPointer<QStyle> shared;
    if (!shared) {
        setStyleSheet(sheet);
        shared = style();
        return;
    }
    // Qt's own bars are styled when the editor asks for their size, and a styled part has the whole
    // field styled at once.
    verticalScrollBar()->hide();
    horizontalScrollBar()->hide();
    setVerticalScrollBar(new UnseenBar(this));
    setHorizontalScrollBar(new UnseenBar(this));
    setStyle(shared);
    setStyleSheet(sheet);
}

// The field gets its own style before it is first shown.
void SingleLineTextEdit::styleParts()
{
    if (testAttribute(Qt::WA_SetStyle))
        setStyle(nullptr); // which makes another from the sheet
}

void SingleLineTextEdit::adjustHeight()
{
    constexpr int heightMargin = 5;
    constexpr int longText = 2000; // characters
    // A long line is slow to lay out, and adjustSize() does so up to four times. Lines do not wrap,
    // so the height is the same without it.
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
        // The style sheet paints the editor, and the viewport is transparent. The style still
        // paints a background there that nobody sees, and never frees the record that it keeps for
        // the viewport's address.
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

// The end of a number alone would read as another number.
void SingleLineTextEdit::showBeginning()
{
    if (hasFocus())
        return;
    const bool startsAtTheRight = document()->firstBlock().textDirection() == Qt::RightToLeft;
    QScrollBar *bar = horizontalScrollBar();
    // The bar's values count from the side at which the form begins.
    bar->setValue(startsAtTheRight == isRightToLeft() ? bar->minimum() : bar->maximum());
    verticalScrollBar()->setValue(verticalScrollBar()->minimum());
}

// A click must hit the character that the user saw, so the view does not move before it.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/pointeditor.h"

#include "widgets/contrast.h"
#include "widgets/plaindisplay.h"
#include "widgets/waitcursor.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QResizeEvent>
#include <QTextBlock>
#include <QTextCursor>
#include <QToolTip>

#include <optional>

namespace
{

// Undoing a change of a large text takes as long as the change, and so does any key over a large
// selection.
bool mayTakeLong(const QKeyEvent *event, const QTextCursor &cursor)
{
    constexpr int muchText = 100'000; // characters
    return event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo)
           || cursor.selectionEnd() - cursor.selectionStart() > muchText;
}

} // namespace

PointEditor::PointEditor(QWidget *parent) : QPlainTextEdit(parent)
{
    keepTextDark(this);
    connect(this, &QPlainTextEdit::textChanged, this,
            [this] { wrapLinesUnlessMany(this, blockCount()); });
}

void PointEditor::keyPressEvent(QKeyEvent *event)
{
    std::optional<WaitCursor> waitCursor;
    if (mayTakeLong(event, textCursor()))
        waitCursor.emplace();
    QPlainTextEdit::keyPressEvent(event);
}

// The entries of Qt's menu act on the text control, past this class: they get the wait cursor here,
// as undoing on a million points takes seconds.
void PointEditor::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto replace = [this, menu](const QString &name, auto run) {
        auto *action = menu->findChild<QAction *>(name);
        if (!action)
            return;
        action->disconnect(SIGNAL(triggered(bool)));
        connect(action, &QAction::triggered, this, [run] { behindWaitCursor(run); });
    };
    replace(QStringLiteral("edit-undo"), [this] { undo(); });
    replace(QStringLiteral("edit-redo"), [this] { redo(); });
    replace(QStringLiteral("edit-cut"), [this] { cut(); });
    replace(QStringLiteral("edit-delete"), [this] { textCursor().removeSelectedText(); });
    menu->popup(event->globalPos());
}

void PointEditor::insertFromMimeData(const QMimeData *source)
{
    const WaitCursor waitCursor;
    const QString text = source->text();
    const QTextCursor cursor = textCursor();
    const QTextBlock first = document()->findBlock(cursor.selectionStart());
    const QTextBlock last = document()->findBlock(cursor.selectionEnd());
    const QString lines = first.text().first(cursor.selectionStart() - first.position()) + text
                          + last.text().sliced(cursor.selectionEnd() - last.position());
    const QStringView endless = endlessLine(lines);
    if (!endless.isEmpty()) {
        QToolTip::showText(
            mapToGlobal(cursorRect().bottomLeft()),
            QCoreApplication::translate(
                "PointEditor",
                "Nothing is pasted: a line of %1 characters is too long for a point.")
                .arg(QLocale().toString(endless.size())),
            this);
        return;
    }
    if (hasEndlessWord(lines))
        setWordWrapMode(QTextOption::WrapAnywhere);
    QPlainTextEdit::insertFromMimeData(source);
}

// Lines that do not wrap do not depend on the width, but Qt would lay them all out again.
void PointEditor::resizeEvent(QResizeEvent *event)
{
    QSize before = event->oldSize();
    if (lineWrapMode() == NoWrap)
        before.setWidth(event->size().width());
    QResizeEvent change(event->size(), before);
    QPlainTextEdit::resizeEvent(&change);
}

// Wrapping makes Qt keep a layout of 300 bytes for each line, visible or not.
void wrapLinesUnlessMany(QPlainTextEdit *editor, qsizetype lines)
{
    constexpr qsizetype mostWrapped = 100'000;
    editor->setLineWrapMode(lines > mostWrapped ? QPlainTextEdit::NoWrap
                                                : QPlainTextEdit::WidgetWidth);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/pointeditor.h"

#include "widgets/contrast.h"
#include "widgets/waitcursor.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QTextCursor>

#include <optional>

namespace
{

// Undoing what rewrote a large text takes as long as that, and so does any key over a large
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
}

void PointEditor::keyPressEvent(QKeyEvent *event)
{
    std::optional<WaitCursor> waitCursor;
    if (mayTakeLong(event, textCursor()))
        waitCursor.emplace();
    QPlainTextEdit::keyPressEvent(event);
}

// The entries of the toolkit's menu go to the text directly.
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
    QPlainTextEdit::insertFromMimeData(source);
}

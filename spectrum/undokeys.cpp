// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/undokeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>

namespace
{

bool isUndoOrRedo(QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    return key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo);
}

} // namespace

UndoKeys::UndoKeys(QPlainTextEdit *editor, const QList<QWidget *> &buttons)
    : QObject(editor), m_editor(editor)
{
    for (QWidget *button : buttons)
        button->installEventFilter(this);
}

bool UndoKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (!isUndoOrRedo(event))
        return QObject::eventFilter(watched, event);
    QCoreApplication::sendEvent(m_editor, event);
    return true;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/typedalignment.h"

#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextFragment>
#include <QTextLayout>

#include <algorithm>
#include <utility>

namespace
{

using Alignment = QTextCharFormat::VerticalAlignment;

// Whether a key press inserts its text.
bool isTyping(const QKeyEvent *event)
{
    const QString text = event->text();
    if (text.isEmpty())
        return false;
    const QChar first = text.front();
    if (first.category() == QChar::Other_Format)
        return true;
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::ControlModifier || modifiers == (Qt::ControlModifier | Qt::ShiftModifier))
        return false;
    return first.isPrint() || first.category() == QChar::Other_PrivateUse
           || first.isHighSurrogate();
}

// A cursor whose format comes from the text only.
QTextCursor plainCursor(const QTextCursor &cursor, int position)
{
    QTextCursor plain(cursor.document());
    plain.setPosition(position);
    return plain;
}

Alignment alignmentBehind(const QTextCursor &cursor)
{
    if (cursor.atBlockEnd())
        return QTextCharFormat::AlignNormal;
    return plainCursor(cursor, cursor.position() + 1).charFormat().verticalAlignment();
}

// The alignment that all characters of a selection have, or normal.
Alignment alignmentOfSelection(const QTextCursor &cursor)
{
    const int start = cursor.selectionStart();
    const int end = cursor.selectionEnd();
    std::optional<Alignment> all;
    QTextBlock block = cursor.document()->findBlock(start);
    for (; block.isValid() && block.position() < end; block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment part = it.fragment();
            if (part.position() >= end || part.position() + part.length() <= start)
                continue;
            const Alignment alignment = part.charFormat().verticalAlignment();
            if (all.value_or(alignment) != alignment)
                return QTextCharFormat::AlignNormal;
            all = alignment;
        }
    }
    return all.value_or(QTextCharFormat::AlignNormal);
}

// An input method goes on while a menu is open.
bool isForMenu(Qt::FocusReason reason)
{
    return reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
}

} // namespace

TypedAlignment::TypedAlignment(QTextEdit *editor) : QObject(editor), m_editor(editor)
{
    editor->installEventFilter(this);
    connect(editor, &QTextEdit::cursorPositionChanged, this, &TypedAlignment::followCursor);
}

bool TypedAlignment::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        m_goesOnAt = m_awaitedAt = -1;
        if (!isForMenu(static_cast<QFocusEvent *>(event)->reason()))
            m_composed.reset();
    }
    // A field that is being destroyed loses its focus, and is no QTextEdit any more then.
    const bool isText = event->type() == QEvent::KeyPress || event->type() == QEvent::InputMethod;
    bool taken = false;
    if (isText && !m_editor->isReadOnly()) {
        taken = event->type() == QEvent::KeyPress
                    ? takeKey(static_cast<QKeyEvent *>(event))
                    : takeComposition(static_cast<QInputMethodEvent *>(event));
    }
    return taken || QObject::eventFilter(watched, event);
}

Alignment TypedAlignment::wanted() const
{
    const QTextCursor cursor = m_editor->textCursor();
    if (cursor.hasSelection())
        return alignmentOfSelection(cursor);
    const Alignment next = cursor.charFormat().verticalAlignment();
    const QTextCursor plain = plainCursor(cursor, cursor.position());
    const bool isChosen = next != plain.charFormat().verticalAlignment();
    if (isChosen)
        return next;
    if (goesOn(cursor))
        return m_alignment;
    return next == alignmentBehind(plain) ? next : QTextCharFormat::AlignNormal;
}

bool TypedAlignment::goesOn(const QTextCursor &cursor) const
{
    return !cursor.hasSelection() && cursor.position() == m_goesOnAt && m_goesOnAt >= m_from;
}

bool TypedAlignment::takeKey(QKeyEvent *event)
{
    const QTextCursor cursor = m_editor->textCursor();
    m_awaitedAt = -1;
    // A correction of the last text, or a new line, continues it.
    if (goesOn(cursor) && event->key() == Qt::Key_Backspace)
        m_awaitedAt = cursor.position() - 1;
    if (goesOn(cursor) && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        m_awaitedAt = cursor.position() + 1;
    if (!isTyping(event))
        return false;
    const Alignment alignment = wanted();
    expect(cursor, alignment, event->text().size());
    if (cursor.charFormat().verticalAlignment() == alignment)
        return false;
    if (!cursor.hasSelection()) {
        QTextCharFormat format;
        format.setVerticalAlignment(alignment);
        m_editor->mergeCurrentCharFormat(format);
        return false;
    }
    // The editor takes no format for text that replaces a selection.
    insert(cursor, event->text(), alignment);
    m_editor->ensureCursorVisible();
    event->accept();
    emit typedInPlaceOfEditor();
    return true;
}

bool TypedAlignment::takeComposition(QInputMethodEvent *event)
{
    const bool isEmpty = event->commitString().isEmpty() && event->preeditString().isEmpty();
    if (isEmpty) {
        m_composed.reset();
        return false;
    }
    // Composing removes the selection, so the alignment is taken when it begins.
    if (!m_composed)
        m_composed = wanted();
    if (event->commitString().isEmpty())
        return false;
    const Alignment alignment = *std::exchange(m_composed, std::nullopt);

    QTextCursor cursor = m_editor->textCursor();
    const int start = std::max(0, cursor.selectionStart() + event->replacementStart());
    const QTextCursor plain = plainCursor(cursor, start);
    expect(plain, alignment, event->commitString().size());
    if (!cursor.hasSelection() && plain.charFormat().verticalAlignment() == alignment)
        return false;
    // The line would keep showing the composed text if the committed text ends the line.
    cursor.block().layout()->setPreeditArea(-1, QString());
    // The editor would take the format of the text before the cursor.
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    cursor.setPosition(start);
    cursor.setPosition(start + event->replacementLength(), QTextCursor::KeepAnchor);
    insert(cursor, event->commitString(), alignment);
    cursor.endEditBlock();
    QInputMethodEvent rest(event->preeditString(), event->attributes());
    QObject *const editor = m_editor; // whose handler of events is open to others
    editor->event(&rest);
    event->setAccepted(rest.isAccepted());
    return true;
}

// One step for undo, which later typing joins.
void TypedAlignment::insert(QTextCursor cursor, const QString &text, Alignment alignment)
{
    QTextCharFormat format = cursor.charFormat();
    format.clearProperty(QTextFormat::ObjectType);
    format.setVerticalAlignment(alignment);
    cursor.insertText(text, format);
    m_editor->setTextCursor(cursor);
}

// Notes that text of this length replaces the selection.
void TypedAlignment::expect(const QTextCursor &cursor, Alignment alignment, qsizetype length)
{
    if (!goesOn(cursor))
        m_from = cursor.selectionStart();
    m_alignment = alignment;
    m_awaitedAt = cursor.selectionStart() + static_cast<int>(length);
}

void TypedAlignment::followCursor()
{
    const int position = m_editor->textCursor().position();
    if (position == m_awaitedAt) {
        m_goesOnAt = position;
    } else if (position != m_goesOnAt) {
        m_goesOnAt = -1;
        m_awaitedAt = -1;
    }
}

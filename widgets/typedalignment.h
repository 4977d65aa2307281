// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTextCharFormat>

#include <optional>

class QInputMethodEvent;
class QKeyEvent;
class QTextEdit;

// Decides whether text that is typed, by keys or an input method, becomes subscript, superscript or
// normal. Without it, QTextEdit goes on with a formula's last subscript in whatever is typed behind
// it. Within a run of one alignment text takes that of the run; behind a run it is normal, unless
// it continues what was just typed; over a selection it takes the alignment that all of it has, or
// is normal. Pasted text and an alignment chosen for the next character are left to the editor. An
// event filter for the editor, which owns it.
class TypedAlignment : public QObject
{
    Q_OBJECT

public:
    explicit TypedAlignment(QTextEdit *editor);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    // A key was handled here instead of in the editor.
    void typedInPlaceOfEditor();

private:
    using Alignment = QTextCharFormat::VerticalAlignment;

    [[nodiscard]] Alignment wanted() const;
    [[nodiscard]] bool goesOn(const QTextCursor &cursor) const;
    [[nodiscard]] bool takeKey(QKeyEvent *event);
    [[nodiscard]] bool takeComposition(QInputMethodEvent *event);
    void insert(QTextCursor cursor, const QString &text, Alignment alignment);
    void expect(const QTextCursor &cursor, Alignment alignment, qsizetype length);
    void followCursor();

    QTextEdit *m_editor;
    // The last typed text: its start, its alignment, the cursor's position behind it (-1 once it
    // has moved) and that position after the current key.
    int m_from = 0;
    Alignment m_alignment = QTextCharFormat::AlignNormal;
    int m_goesOnAt = -1;
    int m_awaitedAt = -1;
    std::optional<Alignment> m_composed; // of the text that an input method is composing
};

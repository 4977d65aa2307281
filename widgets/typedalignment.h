// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTextCharFormat>

#include <optional>

class QInputMethodEvent;
class QKeyEvent;
class QTextEdit;

// Decides whether what is typed into an editor, by keys or an input method, becomes subscript,
// superscript or normal text. Within a run of one alignment it takes that of the run; behind the
// end of a run it is normal, unless it goes on with what was typed just before; over a selection it
// takes the alignment that all of the selection has, or is normal. What is pasted is left to the
// editor, and so is an alignment that was chosen for the next character. An event filter for the
// editor, which owns it.
class TypedAlignment : public QObject
{
    Q_OBJECT

public:
    explicit TypedAlignment(QTextEdit *editor);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    // A key was taken from the editor and its text put in.
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
    // What was typed last: where it began, its alignment, where the cursor is behind it (-1 when it
    // has moved since) and where it will be when the editor has taken the present key.
    int m_from = 0;
    Alignment m_alignment = QTextCharFormat::AlignNormal;
    int m_goesOnAt = -1;
    int m_awaitedAt = -1;
    std::optional<Alignment> m_composed; // of the text that an input method is composing
};

// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/editorcommit.h"

#include <QAbstractItemModel>
#include <QDataWidgetMapper>
#include <QGuiApplication>
#include <QInputMethod>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

#include <algorithm>

namespace
{

// Puts cursor, selection and scroll position back: after a write to the model the mapper fills the
// editor afresh, with the cursor at its start.
class ViewKeeper
{
    Q_DISABLE_COPY_MOVE(ViewKeeper)

public:
    explicit ViewKeeper(QTextEdit *editor)
        : m_editor(editor), m_anchor(editor->textCursor().anchor()),
          m_position(editor->textCursor().position()),
          m_horizontal(editor->horizontalScrollBar()->value()),
          m_vertical(editor->verticalScrollBar()->value())
    {
    }

    ~ViewKeeper()
    {
        const int last = m_editor->document()->characterCount() - 1;
        QTextCursor cursor = m_editor->textCursor();
        cursor.setPosition(std::min(m_anchor, last));
        cursor.setPosition(std::min(m_position, last), QTextCursor::KeepAnchor);
        m_editor->setTextCursor(cursor);
        m_editor->horizontalScrollBar()->setValue(m_horizontal);
        m_editor->verticalScrollBar()->setValue(m_vertical);
    }

private:
    QTextEdit *m_editor;
    int m_anchor;
    int m_position;
    int m_horizontal;
    int m_vertical;
};

} // namespace

void commitFocusedEditor(QDataWidgetMapper *mapper, const QWidget *form)
{
    auto *editor = qobject_cast<QTextEdit *>(form->window()->focusWidget());
    const int column = editor ? mapper->mappedSection(editor) : -1;
    if (column < 0)
        return;
    if (editor->hasFocus())
        QGuiApplication::inputMethod()->commit();
    if (!editor->document()->isModified())
        return;

    const ViewKeeper keeper(editor);
    QAbstractItemModel *model = mapper->model();
    const QModelIndex index = model->index(mapper->currentIndex(), column, mapper->rootIndex());
    model->setData(index, editor->property(mapper->mappedPropertyName(editor).constData()),
                   Qt::EditRole);
}

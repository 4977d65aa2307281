// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/editorcommit.h"

#include <QAbstractItemModel>
#include <QDataWidgetMapper>
#include <QGuiApplication>
#include <QInputMethod>
#include <QTextDocument>
#include <QTextEdit>

void commitEditor(QDataWidgetMapper *mapper, QTextEdit *editor)
{
    const int column = mapper->mappedSection(editor);
    QAbstractItemModel *model = mapper->model();
    const QModelIndex index = model->index(mapper->currentIndex(), column, mapper->rootIndex());
    const QByteArray property = mapper->mappedPropertyName(editor);
    // Unmapped meanwhile, so that the mapper does not fill the editor afresh: that would move the
    // cursor, end the undo history and, in the middle of typing, drop blanks and what looks like
    // markup so far.
    mapper->removeMapping(editor);
    model->setData(index, editor->property(property.constData()), Qt::EditRole);
    mapper->addMapping(editor, column, property);
    editor->document()->setModified(false);
}

void commitFocusedEditor(QDataWidgetMapper *mapper, const QWidget *form)
{
    auto *editor = qobject_cast<QTextEdit *>(form->window()->focusWidget());
    if (!editor || mapper->mappedSection(editor) < 0)
        return;
    if (editor->hasFocus())
        QGuiApplication::inputMethod()->commit();
    if (editor->document()->isModified())
        commitEditor(mapper, editor);
}

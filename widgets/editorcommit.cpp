// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/editorcommit.h"

#include "widgets/cleantextedit.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QDataWidgetMapper>
#include <QInputMethod>
#include <QPointer>
#include <QTextDocument>

namespace
{

QModelIndex indexOf(const QDataWidgetMapper *mapper, QWidget *editor)
{
    return mapper->model()->index(mapper->currentIndex(), mapper->mappedSection(editor),
                                  mapper->rootIndex());
}

bool isMapped(const QDataWidgetMapper *mapper, QWidget *editor)
{
    return mapper->mappedSection(editor) >= 0;
}

QList<CleanTextEdit *> editorsOf(const QDataWidgetMapper *mapper)
{
    QList<CleanTextEdit *> editors;
    for (int column = 0; column < mapper->model()->columnCount(); ++column) {
        if (auto *editor = qobject_cast<CleanTextEdit *>(mapper->mappedWidgetAt(column)))
            editors.append(editor);
    }
    return editors;
}

void submitEditor(QDataWidgetMapper *mapper, CleanTextEdit *editor)
{
    if (!showsItsModelText(mapper, editor))
        commitEditor(mapper, editor);
}

void commitIfEdited(QDataWidgetMapper *mapper, CleanTextEdit *editor)
{
    if (editor->document()->isModified())
        submitEditor(mapper, editor);
}

} // namespace

void commitEditor(QDataWidgetMapper *mapper, CleanTextEdit *editor)
{
    const int column = mapper->mappedSection(editor);
    const QModelIndex index = indexOf(mapper, editor);
    const QByteArray property = mapper->mappedPropertyName(editor);
    // Unmapped meanwhile, so that the mapper does not fill the editor afresh: that would move the
    // cursor, end the undo history and, in the middle of typing, drop blanks and what looks like
    // markup so far.
    mapper->removeMapping(editor);
    mapper->model()->setData(index, editor->property(property.constData()), Qt::EditRole);
    mapper->addMapping(editor, column, property);
    editor->document()->setModified(false);
}

bool showsItsModelText(const QDataWidgetMapper *mapper, CleanTextEdit *editor)
{
    const QVariant value = indexOf(mapper, editor).data(Qt::EditRole);
    if (value.typeId() != QMetaType::QString)
        return false;
    CleanTextEdit shown;
    shown.setCleanedHtml(value.toString());
    return shown.cleanedHtml() == editor->cleanedHtml();
}

void commitEdits(QDataWidgetMapper *mapper)
{
    QWidget *const focused = QApplication::focusWidget();
    if (focused && isMapped(mapper, focused))
        QGuiApplication::inputMethod()->commit();
    for (CleanTextEdit *editor : editorsOf(mapper))
        commitIfEdited(mapper, editor);
}

void submitEditors(QDataWidgetMapper *mapper)
{
    for (CleanTextEdit *editor : editorsOf(mapper))
        submitEditor(mapper, editor);
}

void commitEditsWithoutFocus(QDataWidgetMapper *mapper, const QWidget *form)
{
    const QList<CleanTextEdit *> editors = form->findChildren<CleanTextEdit *>();
    for (CleanTextEdit *editor : editors) {
        QObject::connect(editor, &QTextEdit::textChanged, mapper, [mapper, editor] {
            if (editor->hasFocus())
                return;
            // Not at once: the change may be the first of several, or the mapper's own.
            const auto commit = [mapper, changed = QPointer<CleanTextEdit>(editor)] {
                if (changed && isMapped(mapper, changed))
                    commitIfEdited(mapper, changed);
            };
            QMetaObject::invokeMethod(mapper, commit, Qt::QueuedConnection);
        });
    }
}

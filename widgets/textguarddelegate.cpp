// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/textguarddelegate.h"

#include "widgets/cleantextedit.h"
#include "widgets/editorcommit.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QDataWidgetMapper>
#include <QEvent>

TextGuardDelegate::TextGuardDelegate(QDataWidgetMapper *mapper)
    : QStyledItemDelegate(mapper), m_mapper(mapper)
{
}

bool TextGuardDelegate::eventFilter(QObject *object, QEvent *event)
{
    auto *editor = qobject_cast<CleanTextEdit *>(object);
    if (event->type() != QEvent::FocusOut || !editor || m_mapper->mappedSection(editor) < 0)
        return QStyledItemDelegate::eventFilter(object, event);
    // A menu of the editor's own takes the focus only seemingly.
    const bool hasLeft = !editor->isActiveWindow() || QApplication::focusWidget() != editor;
    if (hasLeft && !showsItsModelText(editor))
        commitEditor(m_mapper, editor);
    return false; // clazy:exclude=base-class-event
}

bool TextGuardDelegate::showsItsModelText(CleanTextEdit *editor) const
{
    const int column = m_mapper->mappedSection(editor);
    const QModelIndex index = m_mapper->model()->index(m_mapper->currentIndex(), column);
    const QVariant value = index.data(Qt::EditRole);
    // A number becomes the field's text even by a visit.
    if (value.typeId() != QMetaType::QString)
        return false;
    CleanTextEdit shown;
    shown.setCleanedHtml(value.toString());
    return shown.cleanedHtml() == editor->cleanedHtml();
}

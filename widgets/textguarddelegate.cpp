// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/textguarddelegate.h"

#include "widgets/cleantextedit.h"

#include <QAbstractItemModel>
#include <QDataWidgetMapper>
#include <QEvent>

TextGuardDelegate::TextGuardDelegate(QDataWidgetMapper *mapper)
    : QStyledItemDelegate(mapper), m_mapper(mapper)
{
}

bool TextGuardDelegate::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && showsItsModelText(object))
        return false;
    return QStyledItemDelegate::eventFilter(object, event);
}

bool TextGuardDelegate::showsItsModelText(QObject *object) const
{
    const auto *editor = qobject_cast<CleanTextEdit *>(object);
    const int column = editor ? m_mapper->mappedSection(const_cast<CleanTextEdit *>(editor)) : -1;
    if (column < 0)
        return false;
    const QModelIndex index = m_mapper->model()->index(m_mapper->currentIndex(), column);
    const QVariant value = index.data(Qt::EditRole);
    // A number becomes the field's text even by a visit.
    if (value.typeId() != QMetaType::QString)
        return false;
    CleanTextEdit shown;
    shown.setCleanedHtml(value.toString());
    return shown.cleanedHtml() == editor->cleanedHtml();
}

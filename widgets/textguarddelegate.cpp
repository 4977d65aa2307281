// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/textguarddelegate.h"

#include "widgets/cleantextedit.h"
#include "widgets/editorcommit.h"

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
    if (hasLeft && !showsItsModelText(m_mapper, editor))
        commitEditor(m_mapper, editor);
    return false; // clazy:exclude=base-class-event
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/fieldbinding.h"

#include "widgets/cleantextedit.h"
#include "widgets/plaindisplay.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QDataWidgetMapper>
#include <QEvent>
#include <QInputMethod>
#include <QLabel>
#include <QTextDocument>

FieldBinding::FieldBinding(QDataWidgetMapper *mapper, QAbstractItemModel *model,
                           const QWidget *form)
    : QStyledItemDelegate(mapper), m_mapper(mapper)
{
    // The order matters: the mapper must fill its fields before they are remembered here.
    mapper->setModel(model);
    mapper->setItemDelegate(this);
    connect(mapper, &QDataWidgetMapper::currentIndexChanged, this, &FieldBinding::rememberAll);
    connect(model, &QAbstractItemModel::dataChanged, this, &FieldBinding::rememberChanged);
    connect(this, &QAbstractItemDelegate::closeEditor, this, [this](QWidget *editor) {
        if (auto *field = qobject_cast<CleanTextEdit *>(editor)) // Escape has filled it afresh
            remember(field);
    });
    for (const CleanTextEdit *field : form->findChildren<CleanTextEdit *>())
        connect(field, &QTextEdit::textChanged, this, &FieldBinding::commitSoonWithoutFocus);
}

void FieldBinding::commitEdits()
{
    QWidget *const focused = QApplication::focusWidget();
    if (focused && m_mapper->mappedSection(focused) >= 0)
        QGuiApplication::inputMethod()->commit();
    for (CleanTextEdit *field : fields())
        commitIfTyped(field);
}

void FieldBinding::submit()
{
    for (CleanTextEdit *field : fields()) {
        if (isEdited(field))
            commit(field);
    }
}

void FieldBinding::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *label = qobject_cast<QLabel *>(editor);
    if (!label) {
        QStyledItemDelegate::setEditorData(editor, index);
        return;
    }
    constexpr qsizetype longest = 1'000; // characters
    const QString text = index.data(Qt::EditRole).toString();
    const QString ellipsis = text.size() > longest ? QString(QChar(0x2026)) : QString();
    label->setText(beginningOf(text, longest) + ellipsis);
}

bool FieldBinding::eventFilter(QObject *object, QEvent *event)
{
    auto *field = qobject_cast<CleanTextEdit *>(object);
    if (event->type() != QEvent::FocusOut || !field || m_mapper->mappedSection(field) < 0)
        return QStyledItemDelegate::eventFilter(object, event);
    // A field keeps the focus in effect while its own menu is open.
    const bool hasLeft = !field->isActiveWindow() || QApplication::focusWidget() != field;
    const QVariant value = indexOf(field).data(Qt::EditRole);
    const bool isNumber = value.isValid() && value.typeId() != QMetaType::QString;
    if (hasLeft && (isNumber || isEdited(field))) // a number becomes a text
        commit(field);
    return false; // clazy:exclude=base-class-event
}

QModelIndex FieldBinding::indexOf(QWidget *field) const
{
    return m_mapper->model()->index(m_mapper->currentIndex(), m_mapper->mappedSection(field),
                                    m_mapper->rootIndex());
}

QList<CleanTextEdit *> FieldBinding::fields() const
{
    QList<CleanTextEdit *> mapped;
    for (int column = 0; column < m_mapper->model()->columnCount(); ++column) {
        if (auto *field = qobject_cast<CleanTextEdit *>(m_mapper->mappedWidgetAt(column)))
            mapped.append(field);
    }
    return mapped;
}

bool FieldBinding::isEdited(const CleanTextEdit *field) const
{
    return field->cleanedHtml() != m_held.value(field);
}

void FieldBinding::commitIfTyped(CleanTextEdit *field)
{
    if (field->document()->isModified() && isEdited(field))
        commit(field);
}

void FieldBinding::commit(CleanTextEdit *field)
{
    const int column = m_mapper->mappedSection(field);
    const QModelIndex index = indexOf(field);
    const QByteArray property = m_mapper->mappedPropertyName(field);
    // The mapping is removed meanwhile, or the mapper would fill the field again: that would move
    // the cursor, end the undo history and, during typing, drop blanks and unfinished markup.
    m_mapper->removeMapping(field);
    m_mapper->model()->setData(index, field->property(property.constData()), Qt::EditRole);
    m_mapper->addMapping(field, column, property);
    field->document()->setModified(false);
    remember(field);
}

// The commit is queued: the change may be the first of several, or the mapper's own.
void FieldBinding::commitSoonWithoutFocus()
{
    if (m_willCommit)
        return;
    m_willCommit = true;
    QMetaObject::invokeMethod(this, &FieldBinding::commitWithoutFocus, Qt::QueuedConnection);
}

void FieldBinding::commitWithoutFocus()
{
    m_willCommit = false;
    for (CleanTextEdit *field : fields()) {
        if (!field->hasFocus())
            commitIfTyped(field);
    }
}

void FieldBinding::remember(CleanTextEdit *field)
{
    const QString held = field->cleanedHtml();
    const QString stored = indexOf(field).data(Qt::EditRole).toString();
    m_held[field] = held == stored ? stored : held; // one copy in memory, if it can be
}

void FieldBinding::rememberAll()
{
    for (CleanTextEdit *field : fields())
        remember(field);
}

void FieldBinding::rememberChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight)
{
    const int row = m_mapper->currentIndex();
    if (row < topLeft.row() || row > bottomRight.row())
        return;
    for (int column = topLeft.column(); column <= bottomRight.column(); ++column) {
        if (auto *field = qobject_cast<CleanTextEdit *>(m_mapper->mappedWidgetAt(column)))
            remember(field);
    }
}

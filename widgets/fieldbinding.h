// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QStyledItemDelegate>

class CleanTextEdit;
class QAbstractItemModel;
class QDataWidgetMapper;

// Commits what is typed into the CleanTextEdit fields of a data mapper to its model, as the
// mapper's delegate. A field is committed when it loses the focus, by commitEdits(), and soon after
// a change without focus (dictation, a screen reader). It is committed only if it holds something
// else than at its last fill or commit: a mere visit must not lose text that cannot be shown, such
// as a raw "<" or repeated blanks, and each correction must count. A commit keeps the field's text,
// cursor, selection and undo history.
class FieldBinding final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // Belongs to mapper, which works on model from now on. The fields to be mapped must be in form
    // already.
    FieldBinding(QDataWidgetMapper *mapper, QAbstractItemModel *model, const QWidget *form);

    // Commits each field that was typed into. An input method at work in a field has to finish.
    void commitEdits();
    // Commits each field that was changed, by the program too. QDataWidgetMapper::submit() would
    // also rewrite fields that show less than the model holds.
    void submit();

    // Fills a label that is mapped without a property; a text too long for a line is cut and gets
    // an ellipsis.
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    [[nodiscard]] QModelIndex indexOf(QWidget *field) const;
    [[nodiscard]] QList<CleanTextEdit *> fields() const;
    [[nodiscard]] bool isEdited(const CleanTextEdit *field) const;
    void commitIfTyped(CleanTextEdit *field);
    void commit(CleanTextEdit *field);
    void commitSoonWithoutFocus();
    void commitWithoutFocus();
    void remember(CleanTextEdit *field);
    void rememberAll();
    void rememberChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight);

    QDataWidgetMapper *m_mapper;
    QHash<const CleanTextEdit *, QString> m_held; // at the last fill or commit
    bool m_willCommit = false;
};

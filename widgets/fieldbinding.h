// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QStyledItemDelegate>

class CleanTextEdit;
class QAbstractItemModel;
class QDataWidgetMapper;

// Writes what is typed into the CleanTextEdit fields of a data mapper into its model, as the
// mapper's delegate. A field is committed when it loses the focus, soon after it was changed
// without having it (by dictation or a screen reader), and by commitEdits(). What decides is
// whether it holds something else than at its last fill or commit: a mere visit must not lose text
// that cannot be shown, such as a raw "<" or repeated blanks, and a correction must not get lost
// for looking like it. A field stays as it is when it is committed: text, cursor, selection, undo.
class FieldBinding final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // Belongs to mapper, which works on model from now on. The fields that it is going to map are
    // in form already.
    FieldBinding(QDataWidgetMapper *mapper, QAbstractItemModel *model, const QWidget *form);

    // Commits each field that was typed into. An input method that is at work in one of them is
    // made to finish.
    void commitEdits();
    // Commits each field that was changed, by the program too. Unlike QDataWidgetMapper::submit()
    // it leaves those alone that show less than the model holds.
    void submit();

    // Fills a label that is mapped without a property; of a text that is too long for a line it
    // shows the beginning, with an ellipsis.
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

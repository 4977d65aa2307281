// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

class CleanTextEdit;
class QDataWidgetMapper;

// The delegate of a data mapper over CleanTextEdit fields. A field that loses the focus is
// committed as usual, but not if it shows just what filling it from its text in the model gives:
// markup that cannot be shown, such as a raw "<" or repeated blanks, would be lost by a mere visit,
// or by the focus that a window takes when it is shown.
class TextGuardDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // For this mapper, which owns it.
    explicit TextGuardDelegate(QDataWidgetMapper *mapper);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    [[nodiscard]] bool showsItsModelText(CleanTextEdit *editor) const;

    QDataWidgetMapper *m_mapper;
};

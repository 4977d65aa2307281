// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

class QDataWidgetMapper;

// The delegate of a data mapper over CleanTextEdit fields. A field that loses the focus is
// committed as usual, but not if it shows its text in the model: a mere visit, or the focus that a
// window takes when it is shown, must not lose markup that cannot be shown.
class TextGuardDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // For this mapper, which owns it.
    explicit TextGuardDelegate(QDataWidgetMapper *mapper);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QDataWidgetMapper *m_mapper;
};

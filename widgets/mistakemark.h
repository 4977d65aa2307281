// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTextCharFormat>

#include <functional>

class CleanTextEdit;
class QColor;

// The wave under text that is a mistake, to be seen on this background.
[[nodiscard]] QTextCharFormat mistakeFormat(const QColor &background);

// Underlines the text of a field whenever what it holds is a mistake, and says which in the field's
// tool tip and to assistive technology. Text, undo history and modified state stay as they are.
class MistakeMark : public QObject
{
    Q_OBJECT

public:
    // What is wrong with the markup that a field holds, or an empty text.
    using Judge = std::function<QString(const QString &markup)>;

    // Belongs to the field.
    MistakeMark(CleanTextEdit *field, Judge judge);

private:
    void look();

    CleanTextEdit *m_field;
    Judge m_judge;
};

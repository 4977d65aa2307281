// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTextCharFormat>

#include <functional>

class CleanTextEdit;
class QColor;

// The wave under a mistake, visible on this background.
[[nodiscard]] QTextCharFormat mistakeFormat(const QColor &background);

// Underlines the text of a field while it holds a mistake, which it names in the field's tool tip
// and to assistive technology. Text, undo history and modified state do not change.
class MistakeMark : public QObject
{
    Q_OBJECT

public:
    // Says what is wrong with the markup of a field; empty if nothing is.
    using Judge = std::function<QString(const QString &markup)>;

    // Belongs to the field.
    MistakeMark(CleanTextEdit *field, Judge judge);

private:
    void look();

    CleanTextEdit *m_field;
    Judge m_judge;
};

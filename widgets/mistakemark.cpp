// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/mistakemark.h"

#include "widgets/cleantextedit.h"
#include "widgets/fieldtip.h"

#include <QColor>
#include <QPalette>
#include <QTextCursor>

#include <utility>

QTextCharFormat mistakeFormat(const QColor &background)
{
    const bool isDark = background.lightness() < 128;
    QTextCharFormat format;
    format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    format.setUnderlineColor(isDark ? QColor(0xff, 0x70, 0x70) : QColor(0xd0, 0x00, 0x00));
    return format;
}

MistakeMark::MistakeMark(CleanTextEdit *field, Judge judge)
    : QObject(field), m_field(field), m_judge(std::move(judge))
{
    connect(field, &CleanTextEdit::cleanedHtmlChanged, this, &MistakeMark::look);
    look();
}

void MistakeMark::look()
{
    const QString said = m_judge(m_field->cleanedHtml());
    QList<QTextEdit::ExtraSelection> marks;
    if (!said.isEmpty()) {
        QTextCursor cursor(m_field->document());
        cursor.select(QTextCursor::Document);
        marks.append({cursor, mistakeFormat(m_field->palette().color(QPalette::Base))});
    }
    m_field->setExtraSelections(marks);
    m_field->setToolTip(said.isEmpty() ? QString() : fieldTip(m_field, said.toHtmlEscaped()));
    m_field->setAccessibleDescription(said);
}

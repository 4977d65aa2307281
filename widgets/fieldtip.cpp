// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/fieldtip.h"

#include <QPalette>
#include <QString>
#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QWidget>

namespace
{

// Adds places for line breaks to a word such as an InChI that has none for too long.
QString breakable(QString word)
{
    constexpr qsizetype longWord = 40; // characters
    constexpr QChar zeroWidthSpace(0x200b);
    if (word.size() <= longWord)
        return word;
    for (qsizetype at = word.size() - 1; at > 0; --at) {
        if (QStringView(u"-/,;()+").contains(word[at - 1]))
            word.insert(at, zeroWidthSpace);
    }
    return word;
}

QString tipOf(const QTextFragment &fragment, qsizetype mostCharacters)
{
    QString text = fragment.text().left(mostCharacters);
    text.remove(QChar::ObjectReplacementCharacter);
    QStringList words = text.split(QLatin1Char(' '));
    for (QString &word : words)
        word = breakable(word).toHtmlEscaped();
    QString html =
        words.join(QLatin1Char(' ')).replace(QChar::LineSeparator, QLatin1String("<br>"));
    switch (fragment.charFormat().verticalAlignment()) {
    case QTextCharFormat::AlignSuperScript:
        return QLatin1String("<sup>") + html + QLatin1String("</sup>");
    case QTextCharFormat::AlignSubScript:
        return QLatin1String("<sub>") + html + QLatin1String("</sub>");
    default:
        return html;
    }
}

} // namespace

QString fieldTip(const QWidget *field, const QString &html)
{
    return QStringLiteral("<span style=\"color: %1\">%2</span>")
        .arg(field->palette().color(QPalette::Text).name(), html);
}

QString wholeTextTip(const QTextDocument *document)
{
    constexpr qsizetype mostCharacters = 5'000;
    qsizetype left = mostCharacters;
    QString html;
    for (QTextBlock block = document->firstBlock(); block.isValid(); block = block.next()) {
        if (block != document->firstBlock())
            html += QLatin1String("<br>");
        for (auto it = block.begin(); !it.atEnd() && left > 0; ++it) {
            html += tipOf(it.fragment(), left);
            left -= it.fragment().length();
        }
        if (--left < 0)
            return html + QChar(0x2026); // an ellipsis
    }
    return html;
}

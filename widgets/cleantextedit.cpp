// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/cleantextedit.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QUrl>
#include <QVariant>

namespace
{

constexpr QLatin1String lineBreakTag("<br>");

QString wrapped(const QString &part, int alignment)
{
    switch (alignment) {
    case QTextCharFormat::AlignSuperScript:
        return QLatin1String("<sup>") + part + QLatin1String("</sup>");
    case QTextCharFormat::AlignSubScript:
        return QLatin1String("<sub>") + part + QLatin1String("</sub>");
    default:
        return part;
    }
}

QString markupOf(const QTextFragment &fragment)
{
    const int alignment = fragment.charFormat().intProperty(QTextFormat::TextVerticalAlignment);
    QString text = fragment.text();
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    QStringList parts = text.split(QLatin1Char('\n'));
    for (QString &part : parts)
        part = wrapped(part, alignment);
    return parts.join(lineBreakTag);
}

} // namespace

CleanTextEdit::CleanTextEdit(QWidget *parent) : QTextEdit(parent)
{
    setTabChangesFocus(true);
    setAcceptRichText(false);
    connect(this, &QTextEdit::textChanged, this, &CleanTextEdit::onTextChanged);
}

QString CleanTextEdit::cleanedHtml() const
{
    return extractAllowedHtmlFromDocument(document());
}

void CleanTextEdit::setCleanedHtml(const QString &html)
{
    setHtml(html);
}

QString CleanTextEdit::extractAllowedHtmlFromDocument(QTextDocument *document) const
{
    QString result;
    QTextBlock block = document->firstBlock();
    while (block.isValid()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (it.fragment().isValid())
                result += markupOf(it.fragment());
        }
        block = block.next();
        if (block.isValid())
            result += lineBreakTag;
    }
    return result;
}

QSize CleanTextEdit::minimumSizeHint() const
{
    const int margins = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
    return {QTextEdit::minimumSizeHint().width(), 2 * fontMetrics().lineSpacing() + margins};
}

QVariant CleanTextEdit::loadResource(int /*type*/, const QUrl & /*name*/)
{
    return {};
}

void CleanTextEdit::onTextChanged()
{
    emit cleanedHtmlChanged();
}

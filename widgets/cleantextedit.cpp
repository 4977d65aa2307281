// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/cleantextedit.h"

#include "widgets/contrast.h"
#include "widgets/plaindisplay.h"
#include "widgets/typedalignment.h"

#include <QImage>
#include <QMimeData>
#include <QSet>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextFragment>
#include <QUrl>
#include <QVariant>

#include <algorithm>

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
    const QString hidden = hiddenText(fragment);
    if (!hidden.isNull())
        return wrapped(text.replace(QChar::ObjectReplacementCharacter, hidden), alignment);
    text.remove(QChar::ObjectReplacementCharacter); // stands for a picture
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    QStringList parts = text.split(QLatin1Char('\n'));
    for (QString &part : parts)
        part = wrapped(part, alignment);
    return parts.join(lineBreakTag);
}

// The name of the tag at the start of text, in lower case; a closing tag begins with "/".
QString tagName(QStringView tag)
{
    const bool closes = tag.sliced(1).startsWith(QLatin1Char('/'));
    const auto end = std::find_if_not(tag.begin() + (closes ? 2 : 1), tag.end(),
                                      [](QChar c) { return c.isLetterOrNumber(); });
    return QStringView(tag.begin() + 1, end).toString().toLower();
}

// Whether tags are nested so deeply that their layout would take very long or overflow the stack:
// Qt's time doubles with each nested table and grows with the square of other nesting.
bool isTooDeep(const QString &html)
{
    constexpr int mostTables = 4;
    constexpr int mostTags = 200;
    static const QSet<QString> neverClosed{
        QStringLiteral("br"), QStringLiteral("p"),   QStringLiteral("li"),  QStringLiteral("dt"),
        QStringLiteral("dd"), QStringLiteral("tr"),  QStringLiteral("td"),  QStringLiteral("th"),
        QStringLiteral("hr"), QStringLiteral("img"), QStringLiteral("meta")};
    int tables = 0;
    int tags = 0;
    for (qsizetype at = html.indexOf(QLatin1Char('<')); at >= 0;) {
        const qsizetype end = html.indexOf(QLatin1Char('>'), at);
        if (end < 0)
            break;
        const QString name = tagName(QStringView(html).sliced(at, end - at));
        const bool closes = name.startsWith(QLatin1Char('/'));
        const int change = closes ? -1 : 1;
        if (name.endsWith(QLatin1String("table")))
            tables = std::max(0, tables + change);
        if (!neverClosed.contains(closes ? name.sliced(1) : name))
            tags = std::max(0, tags + change);
        if (tables > mostTables || tags > mostTags)
            return true;
        at = html.indexOf(QLatin1Char('<'), end);
    }
    return false;
}

QString withoutSlash(const QString &name)
{
    return name.startsWith(QLatin1Char('/')) ? name.sliced(1) : name;
}

// Whether tags other than own ones, or attributes, would take long: a font or a picture of its own
// takes milliseconds, a cell that spans columns and a style sheet as long as they like.
bool isTooForeign(const QString &html, const QSet<QString> &own)
{
    constexpr int most = 500;
    constexpr int withAttributes = 25;
    int cost = 0;
    for (qsizetype at = html.indexOf(QLatin1Char('<')); at >= 0 && cost <= most;) {
        const qsizetype end = html.indexOf(QLatin1Char('>'), at);
        if (end < 0)
            break;
        const QStringView tag = QStringView(html).sliced(at, end - at);
        const QString name = tagName(tag);
        const bool spans = tag.contains(QLatin1String("colspan"), Qt::CaseInsensitive)
                           || tag.contains(QLatin1String("rowspan"), Qt::CaseInsensitive);
        if (spans || name == QLatin1String("style"))
            cost += most + 1;
        else if (tag.contains(QLatin1Char('=')))
            cost += withAttributes;
        else if (!own.contains(withoutSlash(name)))
            ++cost;
        at = html.indexOf(QLatin1Char('<'), end);
    }
    return cost > most;
}

// The markup without other tags than these, without attributes and without style sheets. By hand:
// an expression does not match in a text with half a surrogate pair.
QString withOnly(const QSet<QString> &own, const QString &html)
{
    QString result;
    qsizetype kept = 0;
    for (qsizetype at = html.indexOf(QLatin1Char('<')); at >= 0;) {
        const qsizetype end = html.indexOf(QLatin1Char('>'), at);
        if (end < 0)
            break;
        result += QStringView(html).sliced(kept, at - kept);
        const QString name = tagName(QStringView(html).sliced(at, end - at));
        if (own.contains(withoutSlash(name)))
            result += QLatin1Char('<') + name + QLatin1Char('>');
        at = html.indexOf(QLatin1Char('<'), end);
        const qsizetype next = at < 0 ? html.size() : at;
        kept = name == QLatin1String("style") ? next : end + 1;
    }
    return result + QStringView(html).sliced(kept);
}

// The markup itself; without foreign tags if they would take too long, and without any but line
// breaks if they are nested too deeply.
QString tamed(const QString &html)
{
    static const QSet<QString> own{QStringLiteral("sub"), QStringLiteral("sup"),
                                   QStringLiteral("br")};
    static const QSet<QString> lineBreak{QStringLiteral("br")};
    const QString known = isTooForeign(html, own) ? withOnly(own, html) : html;
    return isTooDeep(known) ? withOnly(lineBreak, known) : known;
}

} // namespace

CleanTextEdit::CleanTextEdit(QWidget *parent) : QTextEdit(parent)
{
    setTabChangesFocus(true);
    setAcceptRichText(false);
    new TypedAlignment(this);
    new HiddenTextMarks(this);
    keepTextDark(this);
    connect(this, &QTextEdit::textChanged, this, &CleanTextEdit::onTextChanged);
}

QString CleanTextEdit::cleanedHtml() const
{
    return extractAllowedHtmlFromDocument(document());
}

void CleanTextEdit::setCleanedHtml(const QString &html)
{
    // Loading a file sets each text twice, and laying out a long one is slow.
    constexpr qsizetype longText = 100'000; // characters
    if (!m_longText.isEmpty() && html == m_longText) {
        moveCursor(QTextCursor::Start);
        document()->clearUndoRedoStacks();
        document()->setModified(false);
        return;
    }
    const bool isFormatted = isShownFormatted(html);
    wrapAnywhere(!isFormatted || hasEndlessWord(html));
    if (isFormatted)
        setHtml(tamed(html));
    else
        setPlainly(html);
    if (html.size() > longText)
        m_longText = html;
}

void CleanTextEdit::setPlainly(const QString &text)
{
    clear();
    // Leaving out the rest is no undo step.
    document()->setUndoRedoEnabled(false);
    QTextCursor cursor(document());
    cursor.setCharFormat({});
    insertPlainly(cursor, text);
    moveCursor(QTextCursor::Start);
    setCurrentCharFormat({});
    document()->setUndoRedoEnabled(true);
    document()->setModified(false);
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

QSize CleanTextEdit::sizeHint() const
{
    return {QTextEdit::sizeHint().width(), CleanTextEdit::minimumSizeHint().height()};
}

QVariant CleanTextEdit::loadResource(int type, const QUrl & /*name*/)
{
    // A null result would make the document load the resource itself.
    if (type != QTextDocument::ImageResource)
        return QString(QLatin1String(""));
    QImage transparent(1, 1, QImage::Format_ARGB32);
    transparent.fill(Qt::transparent);
    return transparent;
}

QMimeData *CleanTextEdit::createMimeDataFromSelection() const
{
    if (!selectsHiddenText(textCursor()))
        return QTextEdit::createMimeDataFromSelection();
    QTextDocument selected;
    QTextCursor(&selected).insertFragment(textCursor().selection());
    auto *whole = new QMimeData;
    whole->setText(extractAllowedHtmlFromDocument(&selected));
    return whole;
}

void CleanTextEdit::insertFromMimeData(const QMimeData *source)
{
    if (source->hasText() && insertedPlainly(source->text()))
        return;
    leaveMark(this);
    QTextEdit::insertFromMimeData(source);
}

bool CleanTextEdit::insertedPlainly(const QString &text)
{
    if (hasRoomFor(document(), textCursor(), text)) {
        if (hasEndlessWord(text))
            wrapAnywhere(true);
        return false;
    }
    wrapAnywhere(true);
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), lineBreakTag);
    for (const QChar end : {QChar(u'\n'), QChar(u'\r'), QChar(QChar::LineSeparator),
                            QChar(QChar::ParagraphSeparator)})
        lines.replace(end, lineBreakTag);
    insertPlainly(textCursor(), lines);
    ensureCursorVisible();
    return true;
}

// Finding the line breaks of a long word costs too much unless it may break anywhere.
void CleanTextEdit::wrapAnywhere(bool anywhere)
{
    const auto mode =
        anywhere ? QTextOption::WrapAnywhere : QTextOption::WrapAtWordBoundaryOrAnywhere;
    if (wordWrapMode() != mode)
        setWordWrapMode(mode);
}

void CleanTextEdit::onTextChanged()
{
    m_longText.clear();
    emit cleanedHtmlChanged();
}

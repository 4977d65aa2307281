// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/plaindisplay.h"

#include "widgets/fieldtip.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextFragment>
#include <QTextObjectInterface>
#include <QToolTip>

#include <algorithm>

namespace
{

constexpr int objectType = QTextFormat::UserObject + 1;
constexpr int hiddenProperty = QTextFormat::UserProperty + 1;

// The most that a field lays out: characters, and their slowness. A slowness of 60,000 takes some
// 0.2 seconds, and up to 21 fields are visible at once.
struct Limit {
    qsizetype characters;
    qsizetype slowness;
};
constexpr Limit formattedLimit{1'000'000, 60'000};
constexpr Limit plainLimit{200'000, 20'000};

// Subtracts the layout cost of characters from a limit.
class Budget
{
public:
    explicit Budget(Limit limit) : m_left(limit) {}

    // Returns whether enough was left.
    bool take(QChar c)
    {
        --m_left.characters;
        m_left.slowness -= slowness(c);
        return m_left.characters >= 0 && m_left.slowness >= 0;
    }
    void takeChangeOfFormat() { m_left.slowness -= slowRun; }
    [[nodiscard]] bool isExceeded() const { return m_left.characters < 0 || m_left.slowness < 0; }
    // How many leading characters of text the budget covers.
    [[nodiscard]] qsizetype take(QStringView text)
    {
        if (isExceeded())
            return 0;
        return std::find_if(text.begin(), text.end(), [this](QChar c) { return !take(c); })
               - text.begin();
    }
    void restrictTo(Limit limit)
    {
        m_left.characters = std::min(m_left.characters, limit.characters);
        m_left.slowness = std::min(m_left.slowness, limit.slowness);
    }

private:
    // One unit takes up to 3 microseconds: a letter takes one, a run with its own format, script or
    // line three, a mark on top of other marks ten. A Latin letter takes 0.6 microseconds.
    static constexpr qsizetype slowLetter = 1;
    static constexpr qsizetype slowRun = 3;
    static constexpr qsizetype slowMark = 10;

    qsizetype slowness(QChar c)
    {
        const char16_t code = c.unicode();
        const bool isControl = code < u' ' || (code >= u'\u007f' && code < u'\u00a0');
        const bool isLineEnd = code == QChar::LineSeparator || code == QChar::ParagraphSeparator
                               || code == u'\ufdd0' || code == u'\ufdd1'; // of a frame
        if (isControl || isLineEnd || code == u'>' || code == u'\u00ad')
            return slowRun;
        const bool wasMark = m_isMark;
        m_isMark = code >= u'\u0300' && c.isMark();
        if (m_isMark)
            return wasMark ? slowMark : slowLetter;
        const bool isBeyondLatin = code >= u'\u0300';
        const bool startsRun = isBeyondLatin != m_isBeyondLatin && (isBeyondLatin || c.isLetter());
        if (isBeyondLatin || startsRun)
            m_isBeyondLatin = isBeyondLatin;
        return (startsRun ? slowRun : 0) + (isBeyondLatin ? slowLetter : 0);
    }

    Limit m_left;
    bool m_isBeyondLatin = false;
    bool m_isMark = false;
};

template <typename Visitor>
void forEachFragment(const QTextDocument *document, Visitor visit)
{
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it)
            visit(it.fragment());
    }
}

// The budget that document leaves, without the selection of cursor.
Budget leftBy(const QTextDocument *document, const QTextCursor &cursor)
{
    Budget left(formattedLimit);
    const qsizetype from = cursor.selectionStart();
    const qsizetype to = cursor.selectionEnd();
    forEachFragment(document, [&](const QTextFragment &fragment) {
        left.takeChangeOfFormat();
        const QString text = fragment.text();
        const auto within = [&](qsizetype position) {
            return std::clamp(position - fragment.position(), qsizetype(0), text.size());
        };
        for (const QChar c : QStringView(text).first(within(from)))
            left.take(c);
        for (const QChar c : QStringView(text).sliced(within(to)))
            left.take(c);
    });
    return left;
}

bool isLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

// A document treats them as the end of a line, a picture, or the bounds of a frame.
bool isNotKeptByDocuments(QChar c)
{
    return isLineEnd(c) || c == QChar::ObjectReplacementCharacter || c == u'\ufdd0'
           || c == u'\ufdd1';
}

bool isOneCharacter(const QString &hidden)
{
    return hidden.size() == 1 && isNotKeptByDocuments(hidden[0]);
}

QString hiddenText(const QTextCharFormat &format)
{
    return format.objectType() == objectType ? format.stringProperty(hiddenProperty) : QString();
}

// The format without the properties of a mark.
QTextCharFormat withoutMark(QTextCharFormat format)
{
    format.clearProperty(QTextFormat::ObjectType);
    format.clearProperty(hiddenProperty);
    return format;
}

// How many characters the selected marks of cursor stand for. Marks for a single character do not
// count.
qsizetype hiddenIn(const QTextCursor &cursor)
{
    qsizetype characters = 0;
    forEachFragment(cursor.document(), [&](const QTextFragment &fragment) {
        const QString hidden = hiddenText(fragment.charFormat());
        if (hidden.isEmpty() || isOneCharacter(hidden))
            return;
        const int from = std::max(fragment.position(), cursor.selectionStart());
        const int end = std::min(fragment.position() + fragment.length(), cursor.selectionEnd());
        characters += std::max(0, end - from) * hidden.size();
    });
    return characters;
}

void insertHidden(QTextCursor &cursor, const QTextCharFormat &around, const QString &text)
{
    QTextCharFormat format = around;
    format.setObjectType(objectType);
    format.setProperty(hiddenProperty, text);
    cursor.insertText(QString(QChar::ObjectReplacementCharacter), format);
}

void insertShown(QTextCursor &cursor, const QTextCharFormat &format, const QString &text)
{
    for (auto from = text.begin(); from != text.end();) {
        const auto end = std::find_if(from, text.end(), isNotKeptByDocuments);
        cursor.insertText(QString(from, end - from), format);
        if (end == text.end())
            break;
        insertHidden(cursor, format, QString(*end));
        from = end + 1;
    }
}

// Draws how many characters are hidden.
class MarkPainter final : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    using QObject::QObject;

    QSizeF intrinsicSize(QTextDocument *document, int /*position*/,
                         const QTextFormat &format) override
    {
        const QFontMetricsF metrics(document->defaultFont());
        return {metrics.horizontalAdvance(label(format)), metrics.ascent()};
    }

    void drawObject(QPainter *painter, const QRectF &place, QTextDocument *document,
                    int /*position*/, const QTextFormat &format) override
    {
        const QFontMetricsF metrics(document->defaultFont());
        painter->save();
        painter->setFont(document->defaultFont());
        painter->fillRect(place.adjusted(0, 0, 0, metrics.descent()), Qt::lightGray);
        painter->setPen(Qt::black);
        painter->drawText(place.bottomLeft(), label(format));
        painter->restore();
    }

private:
    static QString label(const QTextFormat &format)
    {
        const QString hidden = hiddenText(format.toCharFormat());
        if (isOneCharacter(hidden))
            return QString(isLineEnd(hidden[0]) ? QChar(u'\u21b5') : QChar(u'\u25af'));
        return HiddenTextMarks::tr(" … %1 more ").arg(QLocale().toString(hidden.size()));
    }
};

} // namespace

bool isShownFormatted(QStringView markup)
{
    return Budget(formattedLimit).take(markup) == markup.size();
}

QStringView endlessLine(QStringView text)
{
    for (auto from = text.begin(); from != text.end();) {
        const auto end = std::find_if(from, text.end(), isLineEnd);
        const QStringView line(from, end);
        if (!isShownFormatted(line))
            return line;
        from = end == text.end() ? end : end + 1;
    }
    return {};
}

bool hasRoomFor(const QTextDocument *document, const QTextCursor &cursor, QStringView text)
{
    return leftBy(document, cursor).take(text) == text.size();
}

bool hasEndlessWord(QStringView text)
{
    constexpr qsizetype endless = 2'000;
    qsizetype length = 0;
    for (auto at = text.begin(); at != text.end(); ++at) {
        const bool breaksLine = *at == u'<' && QStringView(at, text.end()).startsWith(u"<br");
        length = breaksLine || *at == u' ' ? 0 : length + 1;
        if (length > endless)
            return true;
    }
    return false;
}

QString beginningOf(const QString &text, qsizetype most)
{
    if (text.size() <= most)
        return text;
    return text.first(most > 0 && text[most].isLowSurrogate() ? most - 1 : most);
}

void insertPlainly(QTextCursor cursor, const QString &text)
{
    Budget left = leftBy(cursor.document(), cursor);
    left.restrictTo(plainLimit);
    const QString shown = beginningOf(text, left.take(text));
    const QTextCharFormat format = withoutMark(cursor.charFormat());
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    insertShown(cursor, format, shown);
    if (shown.size() < text.size())
        insertHidden(cursor, format, text.sliced(shown.size()));
    cursor.endEditBlock();
}

QString hiddenText(const QTextFragment &fragment)
{
    return hiddenText(fragment.charFormat());
}

bool selectsHiddenText(const QTextCursor &cursor)
{
    bool selects = false;
    forEachFragment(cursor.document(), [&](const QTextFragment &fragment) {
        selects = selects
                  || (fragment.position() < cursor.selectionEnd()
                      && fragment.position() + fragment.length() > cursor.selectionStart()
                      && !hiddenText(fragment).isNull());
    });
    return selects;
}

void leaveMark(QTextEdit *field)
{
    const QTextCharFormat format = field->currentCharFormat();
    if (!hiddenText(format).isNull())
        field->setCurrentCharFormat(withoutMark(format));
}

HiddenTextMarks::HiddenTextMarks(QTextEdit *field) : QObject(field), m_field(field)
{
    QTextDocument *document = field->document();
    document->documentLayout()->registerHandler(objectType, new MarkPainter(document));
    field->installEventFilter(this);
}

bool HiddenTextMarks::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && selectInsteadOf(static_cast<QKeyEvent *>(event)))
        return true;
    if (event->type() == QEvent::ToolTip) {
        const QString said = tip();
        if (!said.isEmpty()) {
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), said, m_field);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

// One key must not delete megabytes that the user does not see.
bool HiddenTextMarks::selectInsteadOf(const QKeyEvent *event)
{
    QTextCursor cursor = m_field->textCursor();
    if (cursor.hasSelection())
        return false;
    const QTextCursor::MoveMode select = QTextCursor::KeepAnchor;
    if (event->matches(QKeySequence::DeleteStartOfWord))
        cursor.movePosition(QTextCursor::PreviousWord, select);
    else if (event->matches(QKeySequence::DeleteEndOfWord))
        cursor.movePosition(QTextCursor::NextWord, select);
    else if (event->key() == Qt::Key_Backspace)
        cursor.movePosition(QTextCursor::PreviousCharacter, select);
    else if (event->key() == Qt::Key_Delete)
        cursor.movePosition(QTextCursor::NextCharacter, select);
    if (!cursor.hasSelection() || hiddenIn(cursor) == 0)
        return false;
    m_field->setTextCursor(cursor);
    return true;
}

QString HiddenTextMarks::tip() const
{
    QTextCursor all(m_field->document());
    all.select(QTextCursor::Document);
    const qsizetype hidden = hiddenIn(all);
    if (hidden == 0)
        return {};
    const QString said = tr("This text is too long to be shown with its formatting, or as a whole. "
                            "It stays as it is until it is changed. A grey mark stands for "
                            "characters that are not shown, here %1. They are copied, cut and "
                            "deleted with the mark.")
                             .arg(QLocale().toString(hidden))
                             .toHtmlEscaped();
    QString other = m_field->toolTip();
    if (!Qt::mightBeRichText(other))
        other = other.toHtmlEscaped();
    return fieldTip(m_field, other.isEmpty() ? said : other + QLatin1String("<br>") + said);
}

#include "plaindisplay.moc"

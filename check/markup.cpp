// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/markup.h"

#include <QLatin1String>
#include <QStringView>

#include <algorithm>
#include <array>
#include <optional>

namespace
{

// The usual names of entities; Qt knows more.
constexpr std::array entityNames{
    QLatin1String("amp"),    QLatin1String("lt"),     QLatin1String("gt"),
    QLatin1String("quot"),   QLatin1String("apos"),   QLatin1String("nbsp"),
    QLatin1String("deg"),    QLatin1String("plusmn"), QLatin1String("middot"),
    QLatin1String("times"),  QLatin1String("micro"),  QLatin1String("ndash"),
    QLatin1String("mdash"),  QLatin1String("hellip"), QLatin1String("alpha"),
    QLatin1String("beta"),   QLatin1String("gamma"),  QLatin1String("delta"),
    QLatin1String("Delta"),  QLatin1String("pi"),     QLatin1String("sigma"),
    QLatin1String("lambda"), QLatin1String("mu"),     QLatin1String("nu"),
    QLatin1String("omega"),  QLatin1String("auml"),   QLatin1String("ouml"),
    QLatin1String("uuml"),   QLatin1String("Auml"),   QLatin1String("Ouml"),
    QLatin1String("Uuml"),   QLatin1String("szlig"),  QLatin1String("eacute"),
    QLatin1String("egrave"), QLatin1String("ccedil"), QLatin1String("oslash"),
    QLatin1String("aring"),  QLatin1String("minus"),  QLatin1String("le"),
    QLatin1String("ge"),     QLatin1String("rarr"),   QLatin1String("larr"),
    QLatin1String("copy"),   QLatin1String("reg"),
};

// Characters that are invisible, or that replace something lost in a conversion.
bool isInvisible(char16_t c)
{
    const auto within = [c](char16_t first, char16_t last) { return c >= first && c <= last; };
    const bool isControl = (c < u' ' && (c < u'\t' || c > u'\r')) || within(u'\x7f', u'\u009f');
    return isControl || c == u'\u00ad' || within(u'\u200b', u'\u200f')
           || within(u'\u2028', u'\u202e') || within(u'\u2060', u'\u206f') || c == u'\ufeff'
           || within(u'\ufff9', u'\ufffd');
}

// Blanks that Qt joins to one; the no-break space is none.
bool isBlank(QChar c)
{
    return c.isSpace() && c != QChar::Nbsp && c.unicode() != u'\u2028' && c.unicode() != u'\u2029'
           && c.unicode() != u'\u0085';
}

struct Tag {
    QStringView whole;
    QStringView name;
    bool closes;
};

bool isAsciiLetter(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// The end of the run of characters that begins at from.
template <typename Predicate>
qsizetype endOfRun(QStringView text, qsizetype from, Predicate belongs)
{
    const auto end = std::find_if_not(text.begin() + from, text.end(), belongs);
    return end - text.begin();
}

// The tag at the start of text, which is a "<". This and the next function do without expressions,
// which check the whole text before each match and so take the square of its length.
std::optional<Tag> tagAt(QStringView text)
{
    const bool closes = text.sliced(1).startsWith(u'/');
    const qsizetype from = closes ? 2 : 1;
    const qsizetype nameEnd =
        endOfRun(text, from, [](QChar c) { return isAsciiLetter(c) || isAsciiDigit(c); });
    if (nameEnd == from || !isAsciiLetter(text[from]) || nameEnd == text.size())
        return std::nullopt;
    const QChar next = text[nameEnd];
    const bool isBlank = next == u' ' || (next >= u'\t' && next <= u'\r');
    if (next != u'>' && next != u'/' && !isBlank)
        return std::nullopt;
    const qsizetype end = endOfRun(text, nameEnd, [](QChar c) { return c != u'<' && c != u'>'; });
    if (end == text.size() || text[end] != u'>')
        return std::nullopt;
    return Tag{text.first(end + 1), text.sliced(from, nameEnd - from), closes};
}

// The entity at the start of text, which is a "&", if it is a usual one: a number or one of the
// names, and ";" or the end of the text.
QStringView entityAt(QStringView text)
{
    const bool isNumber = text.sliced(1).startsWith(u'#');
    const bool isHex = isNumber && text.sliced(2).startsWith(u'x', Qt::CaseInsensitive);
    const qsizetype from = isHex ? 3 : isNumber ? 2 : 1;
    const qsizetype end = endOfRun(text, from, [&](QChar c) {
        const QChar lower = c.toLower();
        return isHex      ? isAsciiDigit(c) || (lower >= u'a' && lower <= u'f')
               : isNumber ? isAsciiDigit(c)
                          : isAsciiLetter(c);
    });
    const QStringView rest = text.sliced(end);
    const bool isClosed = rest.startsWith(u';');
    if (end == from || (!isClosed && !rest.isEmpty() && rest != u"\n"))
        return {};
    const QStringView name = text.sliced(1, end - 1);
    const bool known = isNumber
                       || std::any_of(entityNames.begin(), entityNames.end(),
                                      [&](QLatin1String each) { return name == each; });
    return known ? text.first(end + (isClosed ? 1 : 0)) : QStringView();
}

class MarkupScanner
{
public:
    MarkupScanner(const QString &text, bool isLines) : m_text(text), m_isLines(isLines) {}

    std::vector<MarkupIssue> scan()
    {
        bool afterBlank = true; // as at the start of a line
        bool atStart = true;
        for (qsizetype at = 0; at < m_text.size();) {
            const QChar c = m_text[at];
            if (c == QLatin1Char('<')) {
                at = takeTag(at, atStart, afterBlank);
                continue;
            }
            if (isBlank(c))
                checkBlank(c, atStart, afterBlank);
            else if (isInvisible(c.unicode()))
                add(MarkupIssue::Invisible,
                    QStringLiteral("the invisible character U+%1")
                        .arg(QString::number(c.unicode(), 16).toUpper().rightJustified(4, u'0')));
            else if (c == QLatin1Char('&'))
                checkEntity(at);
            // A line feed starts a line in a field of lines.
            atStart = m_isLines && c == QLatin1Char('\n');
            afterBlank = isBlank(c);
            ++at;
        }
        if (!m_open.isEmpty())
            add(MarkupIssue::Unbalanced, QStringLiteral("<%1> is not closed").arg(m_open));
        return std::move(m_issues);
    }

private:
    void add(MarkupIssue::Kind kind, const QString &message)
    {
        const bool known =
            std::any_of(m_issues.begin(), m_issues.end(),
                        [&](const MarkupIssue &issue) { return issue.kind == kind; });
        if (!known)
            m_issues.push_back({kind, message});
    }

    // Returns the offset after what begins with "<".
    qsizetype takeTag(qsizetype at, bool &atStart, bool &afterBlank)
    {
        const std::optional<Tag> tag = tagAt(QStringView(m_text).sliced(at));
        if (!tag) {
            add(MarkupIssue::Lost, QStringLiteral("\"%1\" would be taken for a tag and disappear")
                                       .arg(QStringView(m_text).sliced(at).left(20)));
            atStart = afterBlank = false;
            return at + 1;
        }
        if (tag->name == QLatin1String("br")) {
            atStart = afterBlank = true;
        } else if (tag->name == QLatin1String("sub") || tag->name == QLatin1String("sup")) {
            takeScript(tag->name.toString(), tag->closes);
        } else {
            add(MarkupIssue::ForeignTag,
                QStringLiteral("the tag %1 is removed when the file is saved").arg(tag->whole));
        }
        return at + tag->whole.size();
    }

    void takeScript(const QString &name, bool closes)
    {
        if (!closes && !m_open.isEmpty())
            add(MarkupIssue::Unbalanced,
                QStringLiteral("<%1> stands within <%2>").arg(name, m_open));
        else if (closes && m_open != name)
            add(MarkupIssue::Unbalanced,
                m_open.isEmpty() ? QStringLiteral("</%1> closes nothing").arg(name)
                                 : QStringLiteral("</%1> stands within <%2>").arg(name, m_open));
        m_open = closes ? QString() : name;
    }

    void checkBlank(QChar c, bool atStart, bool afterBlank)
    {
        if (c == QLatin1Char(' ')) {
            if (atStart)
                add(MarkupIssue::Lost, QStringLiteral("a leading blank would disappear"));
            else if (afterBlank)
                add(MarkupIssue::Lost, QStringLiteral("repeated blanks would become one"));
        } else if (c == QLatin1Char('\n') && m_isLines) {
            return;
        } else if (c.unicode() < u' ') {
            add(MarkupIssue::Lost, c == QLatin1Char('\t')
                                       ? QStringLiteral("a tab would become a blank")
                                       : QStringLiteral("a line end would become a blank"));
        } else if (atStart || afterBlank) {
            add(MarkupIssue::Lost, QStringLiteral("leading or repeated blanks would disappear"));
        }
    }

    void checkEntity(qsizetype at)
    {
        const QStringView entity = entityAt(QStringView(m_text).sliced(at));
        if (!entity.isEmpty())
            add(MarkupIssue::Lost,
                QStringLiteral("%1 would become the character that it means").arg(entity));
    }

    const QString &m_text;
    bool m_isLines;
    QString m_open; // the script that is open
    std::vector<MarkupIssue> m_issues;
};

// Whether there is nothing to check, as in most texts.
bool isPlain(const QString &text)
{
    char16_t last = u' ';
    for (const QChar each : text) {
        const char16_t c = each.unicode();
        if (c > u'~' || c < u' ' || c == u'<' || c == u'&' || (c == u' ' && last == u' '))
            return false;
        last = c;
    }
    return true;
}

} // namespace

std::vector<MarkupIssue> markupIssues(const QString &text, bool isLines)
{
    if (isPlain(text))
        return {};
    return MarkupScanner(text, isLines).scan();
}

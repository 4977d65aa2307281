// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/cutoff.h"

#include <QByteArray>
#include <QRegularExpression>

namespace
{

// The open strings and containers at the end of a text that is correct so far.
class OpenParts
{
public:
    explicit OpenParts(QByteArrayView text)
    {
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (!m_inString)
                take(text[i]);
            else if (text[i] == '\\')
                ++i;
            else if (text[i] == '"')
                m_inString = false;
        }
    }

    [[nodiscard]] bool isInString() const { return m_inString; }
    [[nodiscard]] bool isInArray() const { return m_containers.endsWith('['); }
    [[nodiscard]] bool isInObject() const { return m_containers.endsWith('{'); }

private:
    void take(char c)
    {
        if (c == '"')
            m_inString = true;
        else if (c == '{' || c == '[')
            m_containers += c;
        else if (c == '}' || c == ']')
            m_containers.chop(1);
    }

    QByteArray m_containers; // their opening brackets, the outermost first
    bool m_inString = false;
};

// Whether the text is an incomplete escape, or the first half of a surrogate pair.
bool isPartOfEscape(QByteArrayView text)
{
    static const QRegularExpression part(
        QStringLiteral(
            "^\\\\(u[0-9a-f]{0,3}|ud[89ab][0-9a-f]{2}(\\\\(u(d([c-f][0-9a-f]?)?)?)?)?)?$"),
        QRegularExpression::CaseInsensitiveOption);
    return part.match(QString::fromUtf8(text)).hasMatch();
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool endsInNumber(QByteArrayView text)
{
    const char last = text.back();
    const bool isExponent = (last == 'e' || last == 'E') && text.size() > 1;
    return last == '-' || last == '+' || last == '.'
           || (isExponent && isDigit(text[text.size() - 2]));
}

bool endsInWord(QByteArrayView text)
{
    const char last = text.back();
    return last >= 'a' && last <= 'z' && !text.endsWith("true") && !text.endsWith("false")
           && !text.endsWith("null");
}

} // namespace

std::optional<CutOff> cutOffOf(QByteArrayView text, qsizetype errorOffset)
{
    qsizetype end = text.size();
    while (end > 0 && QByteArrayView(" \t\r\n").contains(text[end - 1]))
        --end;
    const QByteArrayView rest = text.first(end).sliced(qMin(errorOffset, end));
    const OpenParts open(text.first(end));
    if (!rest.isEmpty() && !(open.isInString() && isPartOfEscape(rest)))
        return std::nullopt;

    CutOff result{end - 1, {}};
    while (result.offset > 0 && (static_cast<unsigned char>(text[result.offset]) & 0xc0) == 0x80)
        --result.offset;
    if (open.isInString())
        result.within = QStringLiteral("a text");
    else if (endsInNumber(text.first(end)))
        result.within = QStringLiteral("a number");
    else if (endsInWord(text.first(end)))
        result.within = QStringLiteral("a word");
    else if (open.isInObject())
        result.within = QStringLiteral("an object");
    else if (open.isInArray())
        result.within = QStringLiteral("an array");
    else
        return std::nullopt;
    return result;
}

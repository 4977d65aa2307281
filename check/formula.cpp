// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/formula.h"

#include "check/elements.h"
#include "species/speciesmodel.h"

#include <QStringView>

#include <algorithm>
#include <optional>
#include <utility>

namespace
{

enum class Level { Normal, Sub, Sup };

struct Sign {
    char16_t c;
    Level level;
    bool followsBlank = false;
};

constexpr double largestCount = 100'000;
constexpr int deepestBrackets = 50;

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool isLower(char16_t c)
{
    return c >= u'a' && c <= u'z';
}

bool isUpper(char16_t c)
{
    return c >= u'A' && c <= u'Z';
}

bool isDot(char16_t c)
{
    return QStringView(u"\u00b7\u2022\u22c5\u2219.*").contains(QChar(c));
}

bool isCharge(char16_t c)
{
    return c == u'+' || c == u'-';
}

// Unicode's subscript and superscript digits and signs as plain ones.
Sign plain(char16_t c, Level level)
{
    constexpr QStringView superDigits(
        u"\u2070\u00b9\u00b2\u00b3\u2074\u2075\u2076\u2077\u2078\u2079");
    if (c >= u'\u2080' && c <= u'\u2089')
        return {static_cast<char16_t>(u'0' + (c - u'\u2080')), Level::Sub};
    if (const qsizetype digit = superDigits.indexOf(QChar(c)); digit >= 0)
        return {static_cast<char16_t>(u'0' + digit), Level::Sup};
    if (c == u'\u207a')
        return {u'+', Level::Sup};
    if (c == u'\u207b')
        return {u'-', Level::Sup};
    if (c == u'\u2212' || c == u'\u2013')
        return {u'-', level};
    return {c, level};
}

// The characters with their levels, without blanks and tags.
std::vector<Sign> signsOf(const QString &markup)
{
    std::vector<Sign> signs;
    Level level = Level::Normal;
    bool followsBlank = false;
    const QString text = cleanHtmlContent(markup);
    const qsizetype lastEnd = text.lastIndexOf(QLatin1Char('>'));
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == QLatin1Char('<') && at < lastEnd) {
            const qsizetype end = text.indexOf(QLatin1Char('>'), at);
            const QStringView tag = QStringView(text).sliced(at, end - at);
            level = tag.startsWith(u"<sub")   ? Level::Sub
                    : tag.startsWith(u"<sup") ? Level::Sup
                                              : Level::Normal;
            at = end;
        } else if (text[at].isSpace()) {
            followsBlank = true;
        } else {
            signs.push_back(plain(text[at].unicode(), level));
            signs.back().followsBlank = std::exchange(followsBlank, false);
        }
    }
    return signs;
}

class FormulaParser
{
public:
    explicit FormulaParser(const QString &markup) : m_signs(signsOf(markup)) {}

    std::variant<std::vector<Formula>, FormulaError> parse()
    {
        skipPrefix();
        while (!m_error && !atEnd())
            part();
        if (!m_error && m_formula.atoms.empty())
            fail(QStringLiteral("no element in it"));
        if (m_error)
            return *m_error;
        std::vector<Formula> readings{m_formula};
        if (m_otherCharge) {
            // Fe3+ is one atom with a charge of 3, or three atoms with a charge of 1.
            Formula other{m_formula.atoms, *m_otherCharge};
            for (const auto &[atom, count] : m_chargedGroup)
                other.atoms[atom] -= (m_chargedCount - 1) * count;
            readings.push_back(other);
        }
        return readings;
    }

private:
    [[nodiscard]] bool atEnd() const { return m_at >= m_signs.size(); }
    [[nodiscard]] char16_t peek(std::size_t ahead = 0) const
    {
        return m_at + ahead < m_signs.size() ? m_signs[m_at + ahead].c : u'\0';
    }
    [[nodiscard]] Level level() const { return atEnd() ? Level::Normal : m_signs[m_at].level; }

    void fail(const QString &message, FormulaError::Kind kind = FormulaError::Syntax)
    {
        if (!m_error)
            m_error = FormulaError{kind, message};
    }

    // Skips "n-", "cyclo-" and the like.
    void skipPrefix()
    {
        std::size_t length = 0;
        while (isLower(peek(length)))
            ++length;
        if (length > 0 && peek(length) == u'-')
            m_at += length + 1;
    }

    // A whole number on one level, or nothing.
    std::optional<double> number(bool fraction = false)
    {
        if (!isDigit(peek()))
            return std::nullopt;
        const Level own = level();
        QString digits;
        do
            digits += QChar(m_signs[m_at++].c);
        while (isDigit(peek()) && level() == own && !m_signs[m_at].followsBlank);
        if (fraction && peek() == u'.' && isDigit(peek(1))) {
            do
                digits += QChar(m_signs[m_at++].c);
            while (isDigit(peek()) && level() == own);
        }
        const double value = digits.toDouble();
        if (value > largestCount)
            fail(QStringLiteral("the number %1 is too large").arg(digits));
        return value;
    }

    // Reads the part between two dots, with its factor.
    void part()
    {
        while (isDot(peek()))
            ++m_at;
        if (atEnd())
            return;
        const double factor =
            isDigit(peek()) && level() != Level::Sup ? number(true).value_or(1) : 1;
        for (const auto &[atom, count] : groups(0))
            m_formula.atoms[atom] += factor * count;
        if (!m_error && !atEnd() && !isDot(peek()))
            fail(QStringLiteral("\"%1\" is out of place").arg(QChar(peek())));
    }

    // Reads elements and brackets with their counts, up to a dot, a closing bracket or the end.
    Composition groups(int depth)
    {
        Composition atoms;
        if (depth > deepestBrackets)
            fail(QStringLiteral("the brackets are nested too deeply"));
        while (!m_error && !atEnd()) {
            const char16_t c = peek();
            Composition group;
            const bool isSup = level() == Level::Sup;
            if (isCharge(c) || isDetachedCharge() || (isSup && isDot(c))
                || (isSup && isDigit(c) && !isUpper(afterDigits()))) {
                charge();
                continue;
            }
            if (c == u'(' || c == u'[' || c == u'{')
                group = bracket(depth);
            else if (isUpper(c) || (isDigit(c) && level() == Level::Sup))
                group = element();
            else
                break;
            m_countLevel.reset();
            m_lastGroup = group;
            m_lastCount = 1;
            if (isDigit(peek()) && level() != Level::Sup && !isDetachedCharge()) {
                m_countLevel = level();
                m_lastCount = number().value_or(1);
            }
            for (const auto &[atom, each] : group)
                atoms[atom] += m_lastCount * each;
        }
        return atoms;
    }

    // After "]" or a blank, digits and a sign are the charge: [Fe(CN)6]3-, SO4 2-.
    [[nodiscard]] bool isDetachedCharge() const
    {
        return m_at > 0 && isDigit(peek()) && isCharge(afterDigits())
               && (m_signs[m_at - 1].c == u']' || m_signs[m_at].followsBlank);
    }
    [[nodiscard]] char16_t afterDigits() const
    {
        std::size_t ahead = 0;
        while (isDigit(peek(ahead)))
            ++ahead;
        return peek(ahead);
    }

    Composition bracket(int depth)
    {
        const char16_t opening = peek();
        const char16_t closing = opening == u'(' ? u')' : opening == u'[' ? u']' : u'}';
        ++m_at;
        Composition atoms;
        // An isotope without markup, such as [13C].
        if (opening == u'[' && isDigit(peek()) && isUpper(afterDigits()))
            atoms = element();
        for (const auto &[atom, count] : groups(depth + 1))
            atoms[atom] += count;
        if (peek() == closing)
            ++m_at;
        else
            fail(QStringLiteral("a bracket \"%1\" is not closed").arg(QChar(opening)));
        return atoms;
    }

    Composition element()
    {
        const int massNumber = static_cast<int>(number().value_or(0));
        QString symbol;
        const Level own = level();
        if (isUpper(peek()))
            symbol += QChar(m_signs[m_at++].c);
        while (isLower(peek()) && level() == own)
            symbol += QChar(m_signs[m_at++].c);
        if (massNumber == 0 && (symbol == QLatin1String("D") || symbol == QLatin1String("T")))
            return {{{1, symbol == QLatin1String("D") ? 2 : 3}, 1}};
        const std::optional<int> atomic = atomicNumber(symbol);
        if (!atomic)
            fail(QStringLiteral("there is no element \"%1\"").arg(symbol), FormulaError::Element);
        return {{{atomic.value_or(1), massNumber}, 1}};
    }

    // Reads "+", "2+", "+2" or "--", with the dot of a radical before it.
    void charge()
    {
        while (isDot(peek()))
            ++m_at;
        if (!isDigit(peek()) && !isCharge(peek()))
            return;
        const bool bare = !isDigit(peek()) && level() == Level::Normal;
        std::optional<double> size = number();
        if (!isCharge(peek()))
            return fail(QStringLiteral("a superscript that is neither a charge nor an isotope"));
        const int sign = peek() == u'+' ? 1 : -1;
        int signs = 0;
        for (; isCharge(peek()); ++m_at)
            ++signs;
        if (!size && signs == 1)
            size = number();
        const int charge = sign * static_cast<int>(size.value_or(signs));
        m_formula.charge += charge;
        if (bare && m_countLevel == Level::Normal) {
            m_otherCharge = sign * static_cast<int>(m_lastCount);
            m_chargedGroup = m_lastGroup;
            m_chargedCount = m_lastCount;
        }
    }

    std::vector<Sign> m_signs;
    std::size_t m_at = 0;
    Formula m_formula;
    std::optional<FormulaError> m_error;
    // The last group and its count, which a charge without markup may own.
    Composition m_lastGroup;
    double m_lastCount = 1;
    std::optional<Level> m_countLevel;
    // The charge in the other reading, and the group that occurs only once in it.
    std::optional<int> m_otherCharge;
    Composition m_chargedGroup;
    double m_chargedCount = 1;
};

} // namespace

std::variant<std::vector<Formula>, FormulaError> parseFormula(const QString &markup)
{
    return FormulaParser(markup).parse();
}

bool hasRaisedCharacters(const QString &markup)
{
    return std::any_of(markup.begin(), markup.end(), [](QChar c) {
        return plain(c.unicode(), Level::Normal).level != Level::Normal;
    });
}

std::map<int, double> elementCounts(const Composition &atoms)
{
    std::map<int, double> counts;
    for (const auto &[atom, count] : atoms)
        counts[atom.first] += count;
    return counts;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/wholefile.h"

#include <algorithm>
#include <optional>

namespace
{

constexpr qsizetype largestText = 16'000'000; // bytes; the decoder takes half a second for it

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Reads the numbers of a file one after the other.
class Numbers
{
public:
    Numbers(QByteArrayView bytes, qsizetype start) : m_bytes(bytes), m_at(start) {}

    // The bytes after the number that was read last and the one blank, or the comment, that ends
    // it.
    [[nodiscard]] quint64 rest() const { return static_cast<quint64>(m_bytes.size() - m_at); }

    // The next number, of at most so many digits; nothing if something else comes, or the end.
    // One that is too large for any use is given as large.
    std::optional<quint64> next(int mostDigits = 1'000'000)
    {
        skipBlanks();
        if (m_at == m_bytes.size() || !isDigit(m_bytes[m_at]))
            return std::nullopt;
        constexpr quint64 large = 1'000'000'000;
        quint64 value = 0;
        for (; m_at < m_bytes.size() && isDigit(m_bytes[m_at]) && mostDigits > 0; --mostDigits)
            value = std::min(large, value * 10 + quint64(m_bytes[m_at++] - '0'));
        if (mostDigits > 0 && m_at < m_bytes.size())
            endNumber();
        return value;
    }

private:
    void skipBlanks()
    {
        for (; m_at < m_bytes.size(); ++m_at) {
            if (m_bytes[m_at] == '#')
                skipLine();
            else if (!isBlank(m_bytes[m_at]))
                return;
        }
    }

    void endNumber()
    {
        if (m_bytes[m_at] == '#')
            skipLine();
        m_at = std::min(m_at + 1, m_bytes.size());
    }

    // Up to the end of the line, or to the last byte.
    void skipLine()
    {
        while (m_at + 1 < m_bytes.size() && m_bytes[m_at] != '\n')
            ++m_at;
    }

    QByteArrayView m_bytes;
    qsizetype m_at;
};

// Whether so many values follow.
bool hasValues(Numbers numbers, quint64 count, int mostDigits)
{
    // Each takes a byte at least: what is far too short is not read through.
    if (numbers.rest() < count)
        return false;
    for (; count > 0; --count) {
        if (!numbers.next(mostDigits))
            return false;
    }
    return true;
}

} // namespace

bool isWholeAnymap(QByteArrayView bytes)
{
    constexpr quint64 longestSide = 32'767; // of the toolkit's decoder
    const int kind = bytes[1] - '0';
    const bool isText = kind <= 3;
    const bool isBits = kind == 1 || kind == 4;
    const bool isColour = kind == 3 || kind == 6;
    Numbers numbers(bytes, 2);
    const quint64 width = numbers.next().value_or(0);
    const quint64 height = numbers.next().value_or(0);
    const quint64 most = isBits ? 1 : numbers.next().value_or(0);
    if (width == 0 || width > longestSide || height == 0 || height > longestSide || most == 0)
        return false;
    const quint64 values = width * (isColour ? 3 : 1);
    if (isText)
        return bytes.size() <= largestText
               && hasValues(numbers, values * height, isBits ? 1 : 1'000'000);
    const quint64 line = isBits ? (width + 7) / 8 : values * (most > 255 ? 2 : 1);
    return line * height <= numbers.rest();
}

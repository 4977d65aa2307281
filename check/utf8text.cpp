// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/utf8text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace
{

constexpr std::uint64_t highBits = 0x8080808080808080;

// The length of the well-formed sequence at c, which is not ASCII; 0 if there is none.
qsizetype sequenceLength(const unsigned char *c, qsizetype available)
{
    const auto continues = [&](qsizetype at, unsigned least = 0x80, unsigned most = 0xbf) {
        return at < available && c[at] >= least && c[at] <= most;
    };
    const unsigned lead = c[0];
    if (lead >= 0xc2 && lead <= 0xdf)
        return continues(1) ? 2 : 0;
    if (lead >= 0xe0 && lead <= 0xef) {
        // Overlong forms and surrogate halves are not allowed.
        const unsigned least = lead == 0xe0 ? 0xa0 : 0x80;
        const unsigned most = lead == 0xed ? 0x9f : 0xbf;
        return continues(1, least, most) && continues(2) ? 3 : 0;
    }
    if (lead >= 0xf0 && lead <= 0xf4) {
        const unsigned least = lead == 0xf0 ? 0x90 : 0x80;
        const unsigned most = lead == 0xf4 ? 0x8f : 0xbf;
        return continues(1, least, most) && continues(2) && continues(3) ? 4 : 0;
    }
    return 0;
}

bool startsCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xc0) != 0x80;
}

// The place after bytes that begin at start.
TextPosition advanced(TextPosition start, QByteArrayView bytes)
{
    for (const char c : bytes)
        start.advance(c);
    return start;
}

constexpr qsizetype markDistance = 256; // bytes

// The offset at which the line of offset begins.
qsizetype lineStart(QByteArrayView text, qsizetype offset)
{
    return offset > 0 ? text.first(offset).lastIndexOf('\n') + 1 : 0;
}

} // namespace

std::optional<qsizetype> firstInvalidUtf8(QByteArrayView bytes)
{
    const auto *const c = reinterpret_cast<const unsigned char *>(bytes.data());
    qsizetype at = 0;
    while (at < bytes.size()) {
        std::uint64_t eight = highBits;
        if (bytes.size() - at >= qsizetype(sizeof eight))
            std::memcpy(&eight, c + at, sizeof eight);
        if ((eight & highBits) == 0) {
            at += sizeof eight;
            continue;
        }
        const qsizetype length = c[at] < 0x80 ? 1 : sequenceLength(c + at, bytes.size() - at);
        if (length == 0)
            return at;
        at += length;
    }
    return std::nullopt;
}

TextPosition positionAt(QByteArrayView utf8, qsizetype offset)
{
    const QByteArrayView before = utf8.first(std::clamp<qsizetype>(offset, 0, utf8.size()));
    const QByteArrayView inLine = before.sliced(lineStart(utf8, before.size()));
    TextPosition position;
    position.line += static_cast<int>(std::count(before.begin(), before.end(), '\n'));
    position.column +=
        static_cast<int>(std::count_if(inLine.begin(), inLine.end(), startsCharacter));
    return position;
}

TextPosition PositionFinder::at(qsizetype offset)
{
    constexpr int fewCalls = 16;
    if (m_marks.empty() && ++m_calls <= fewCalls) {
        const TextPosition within = positionAt(m_text, offset);
        return {m_start.line + within.line - 1,
                within.line > 1 ? within.column : m_start.column + within.column - 1};
    }
    if (m_marks.empty())
        setMarks();
    const qsizetype end = std::clamp<qsizetype>(offset, 0, m_text.size());
    const qsizetype mark = end / markDistance;
    const qsizetype start = mark * markDistance;
    return advanced(m_marks[static_cast<std::size_t>(mark)], m_text.sliced(start, end - start));
}

void PositionFinder::setMarks()
{
    m_marks.push_back(m_start);
    for (qsizetype end = markDistance; end <= m_text.size(); end += markDistance)
        m_marks.push_back(
            advanced(m_marks.back(), m_text.sliced(end - markDistance, markDistance)));
}

QByteArrayView lineAt(QByteArrayView utf8, qsizetype offset)
{
    const qsizetype start = lineStart(utf8, std::clamp<qsizetype>(offset, 0, utf8.size()));
    const qsizetype end = utf8.indexOf('\n', start);
    QByteArrayView line = utf8.sliced(start, (end < 0 ? utf8.size() : end) - start);
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

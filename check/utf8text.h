// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

#include <limits>
#include <optional>
#include <vector>

// A place in a text as people and editors count: from 1, columns in characters.
struct TextPosition {
    int line = 1;
    int column = 1;

    // Moves past the next byte of the text. Lines end with LF.
    void advance(char byte)
    {
        if (byte == '\n')
            *this = {line + 1, 1};
        else if ((static_cast<unsigned char>(byte) & 0xc0) != 0x80
                 && column < std::numeric_limits<int>::max())
            ++column;
    }
};

// The offset of the first byte that is not well-formed UTF-8; nothing if all are.
[[nodiscard]] std::optional<qsizetype> firstInvalidUtf8(QByteArrayView bytes);

// The place of the character at offset, which may be the end of the text. Lines end with LF.
[[nodiscard]] TextPosition positionAt(QByteArrayView utf8, qsizetype offset);

// The bytes of the line of offset, without its end.
[[nodiscard]] QByteArrayView lineAt(QByteArrayView utf8, qsizetype offset);

// Finds positions in one text, which must outlive it. positionAt() walks from the start each time;
// this keeps marks at even distances once there are many calls. The text may be a part of a longer
// one, in which it begins at start.
class PositionFinder
{
public:
    explicit PositionFinder(QByteArrayView utf8, TextPosition start = {})
        : m_text(utf8), m_start(start)
    {
    }

    [[nodiscard]] TextPosition at(qsizetype offset);

private:
    void setMarks();

    QByteArrayView m_text;
    TextPosition m_start;
    int m_calls = 0;
    std::vector<TextPosition> m_marks;
};

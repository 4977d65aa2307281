// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

#include <optional>
#include <vector>

// A place in a text as people and editors count: both from 1, columns in characters.
struct TextPosition {
    int line = 1;
    int column = 1;
};

// The offset of the first byte that is no part of well-formed UTF-8; nothing if all bytes are.
[[nodiscard]] std::optional<qsizetype> firstInvalidUtf8(QByteArrayView bytes);

// The place of the character at offset, which may be the end of the text. Lines end with LF.
[[nodiscard]] TextPosition positionAt(QByteArrayView utf8, qsizetype offset);

// The bytes of the line that holds offset, without its end.
[[nodiscard]] QByteArrayView lineAt(QByteArrayView utf8, qsizetype offset);

// Says positionAt() of one text, which must outlive it. Each call of that walks over the text; once
// there are many of them, marks at even distances save nearly all of the way.
class PositionFinder
{
public:
    explicit PositionFinder(QByteArrayView utf8) : m_text(utf8) {}

    [[nodiscard]] TextPosition at(qsizetype offset);

private:
    void setMarks();

    QByteArrayView m_text;
    int m_calls = 0;
    std::vector<TextPosition> m_marks;
};

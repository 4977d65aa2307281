// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/jsonlayout.h"

#include <algorithm>

namespace
{

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

// Whether blanks beside this character mean nothing.
bool isSign(char c)
{
    return c == ',' || c == ':' || c == '{' || c == '}' || c == '[' || c == ']';
}

} // namespace

void JsonWithoutLayout::take(QByteArrayView piece)
{
    const qsizetype before = m_bytes.size();
    m_bytes.resize(before + piece.size() + 1); // a blank may wait
    char *out = m_bytes.data() + before;
    for (const char c : piece) {
        if (m_inString) {
            m_inString = m_escaped || c != '"';
            m_escaped = !m_escaped && c == '\\';
        } else if (isBlank(c)) {
            m_waits = true;
            continue;
        } else {
            if (m_waits && !isSign(m_last) && !isSign(c))
                *out++ = ' ';
            m_waits = false;
            m_inString = c == '"';
        }
        *out++ = m_last = c;
    }
    m_bytes.truncate(out - m_bytes.constData());
}

qint64 sizeWithoutLayout(QByteArrayView text)
{
    constexpr qsizetype pieceSize = 1 << 20;
    JsonWithoutLayout compact;
    qint64 size = 0;
    for (qsizetype at = 0; at < text.size(); at += pieceSize) {
        compact.take(text.sliced(at, std::min(pieceSize, text.size() - at)));
        size += compact.bytes().size();
    }
    return size;
}

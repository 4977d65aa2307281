// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <utility>

// Takes the text of a JSON file in pieces and drops the blanks and line ends between its values,
// which indenting adds. The result means the same, and text that is no JSON stays no JSON: a blank
// between two words is kept.
class JsonWithoutLayout
{
public:
    void take(QByteArrayView piece);
    // What take() has left and bytes() has not returned yet.
    [[nodiscard]] qint64 size() const { return m_bytes.size(); }
    [[nodiscard]] QByteArray bytes() { return std::exchange(m_bytes, {}); }

private:
    QByteArray m_bytes;
    char m_last = ',';
    bool m_inString = false;
    bool m_escaped = false;
    bool m_waits = false; // a blank that may be needed
};

// The bytes of a JSON text without the blanks and line ends between its values.
[[nodiscard]] qint64 sizeWithoutLayout(QByteArrayView text);

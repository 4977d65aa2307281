// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/writtenform.h"

#include "check/numbertext.h"
#include "files/jsonfile.h"

#include <QByteArray>

#include <algorithm>
#include <optional>

namespace
{

// Walks through a text along the editor's layout, whatever its values are.
class LayoutWalker
{
public:
    explicit LayoutWalker(const JsonText &text) : m_bytes(text.bytes()) {}

    bool walk(const JsonValue &root)
    {
        return takeValue(root, 0) && take("\n") && m_at == m_bytes.size();
    }

    // The offset up to which the text has that layout.
    [[nodiscard]] qsizetype place() const { return m_at; }

private:
    bool take(QByteArrayView expected)
    {
        if (!m_bytes.sliced(m_at).startsWith(expected))
            return false;
        m_at += expected.size();
        return true;
    }

    bool takeIndent(qsizetype level)
    {
        static const QByteArray blanks(64, ' ');
        constexpr qsizetype width = 4;
        return level * width <= blanks.size() && take(QByteArrayView(blanks).first(level * width));
    }

    bool takeRaw(QByteArrayView raw)
    {
        m_at += raw.size();
        return true;
    }

    bool takeValue(const JsonValue &value, qsizetype level)
    {
        if (value.begin() != m_at)
            return false;
        switch (value.kind()) {
        case JsonKind::Object:
        case JsonKind::Array:
            return takeContainer(value, level);
        case JsonKind::Number:
            return isWrittenLikeThat(value) && takeRaw(value.raw());
        case JsonKind::String:
            return isTextWrittenLikeThat(value) && takeRaw(value.raw());
        case JsonKind::Null:
        case JsonKind::Bool:
            return takeRaw(value.raw());
        }
        Q_UNREACHABLE();
    }

    // Escapes may be written in several ways, and reading drops a byte order mark.
    static bool isTextWrittenLikeThat(const JsonValue &text)
    {
        return (!text.raw().contains('\\') && !text.utf8().startsWith("\xef\xbb\xbf"))
               || jsonOnOneLine(text.string()) == text.raw();
    }

    // All numbers of the records are doubles.
    static bool isWrittenLikeThat(const JsonValue &number)
    {
        constexpr int exactDigits = 15; // of any double
        const NumberForm form = formOf(number.raw());
        if (form.isPlain && form.significantDigits <= exactDigits)
            return true;
        const std::optional<double> value = valueOf(number.raw());
        return value && jsonOnOneLine(*value) == number.raw();
    }

    bool takeContainer(const JsonValue &container, qsizetype level)
    {
        const bool isObject = container.isObject();
        if (!take(isObject ? "{\n" : "[\n"))
            return false;
        QByteArrayView last;
        for (JsonValue child = container.firstChild(); child; child = child.nextSibling()) {
            if (child.begin() != container.firstChild().begin() && !take(",\n"))
                return false;
            if (!takeIndent(level + 1))
                return false;
            if (isObject) {
                const QByteArrayView key = child.rawKey();
                // The editor writes ASCII keys only.
                if (child.keyBegin() != m_at || key.contains('\\') || key.compare(last) <= 0
                    || !isAscii(key) || !takeRaw(key) || !take(": "))
                    return false;
                last = key;
            }
            if (!takeValue(child, level + 1))
                return false;
        }
        return (container.count() == 0 || take("\n")) && takeIndent(level)
               && take(isObject ? "}" : "]");
    }

    static bool isAscii(QByteArrayView bytes)
    {
        return std::all_of(bytes.begin(), bytes.end(),
                           [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    }

    QByteArrayView m_bytes;
    qsizetype m_at = 0;
};

} // namespace

std::optional<qsizetype> firstOtherByte(const JsonText &text)
{
    LayoutWalker layout(text);
    if (layout.walk(text.root()))
        return std::nullopt;
    return layout.place();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/jsontext.h"

#include "check/cutoff.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>
#include <rapidjson/stream.h>

#include <cstring>

namespace
{

constexpr qsizetype deepestNesting = 1024; // Qt's own limit
constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");

// The offset after the string that begins with the quote at begin and has a text of this length.
qsizetype endOfString(QByteArrayView bytes, qsizetype begin, const char *text, qsizetype length)
{
    qsizetype at = begin + 1;
    // Most strings have no escapes, and their text is as long as in the file.
    if (at + length < bytes.size() && bytes[at + length] == '"'
        && std::memcmp(bytes.data() + at, text, static_cast<std::size_t>(length)) == 0)
        return at + length + 1;
    while (at < bytes.size() && bytes[at] != '"')
        at += bytes[at] == '\\' ? 2 : 1;
    return at + 1;
}

} // namespace

// Receives the parser's events.
class JsonTextBuilder
{
public:
    using Stream = rapidjson::InsituStringStream;

    JsonTextBuilder(JsonText &text, Stream &stream) : m_text(text), m_stream(stream) {}

    bool Null() { return literal(JsonKind::Null, 4, false); }
    bool Bool(bool value) { return literal(JsonKind::Bool, value ? 4 : 5, value); }
    bool RawNumber(const char *, rapidjson::SizeType length, bool)
    {
        // The stream is still at the start of the number.
        auto &number = add(JsonKind::Number, m_stream.Tell());
        number.end = static_cast<quint32>(number.begin + length);
        return true;
    }
    bool String(const char *text, rapidjson::SizeType length, bool)
    {
        auto &string = add(JsonKind::String, m_stream.Tell());
        string.end = static_cast<quint32>(endOfString(m_text.m_bytes, string.begin, text, length));
        string.text = offsetOf(text);
        string.count = length;
        return true;
    }
    bool Key(const char *text, rapidjson::SizeType length, bool)
    {
        const auto begin = static_cast<quint32>(m_stream.Tell());
        const qsizetype end = endOfString(m_text.m_bytes, begin, text, length);
        m_key = static_cast<quint32>(m_text.m_keys.size());
        m_text.m_keys.push_back({begin, static_cast<quint32>(end), offsetOf(text), length});
        return true;
    }
    bool StartObject() { return open(JsonKind::Object); }
    bool StartArray() { return open(JsonKind::Array); }
    bool EndObject(rapidjson::SizeType count) { return close(count); }
    bool EndArray(rapidjson::SizeType count) { return close(count); }

    // Numbers are kept as text.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

private:
    quint32 offsetOf(const char *text) const
    {
        return static_cast<quint32>(text - m_text.m_decoded.constData());
    }

    JsonText::Node &add(JsonKind kind, std::size_t begin)
    {
        const auto index = static_cast<quint32>(m_text.m_nodes.size());
        const quint32 parent = m_open.empty() ? index : m_open.back();
        m_text.m_nodes.push_back({.begin = static_cast<quint32>(begin),
                                  .end = 0,
                                  .next = index + 1,
                                  .parent = parent,
                                  .count = 0,
                                  .text = 0,
                                  .key = m_key,
                                  .kind = kind,
                                  .boolean = false});
        m_key = JsonText::noKey;
        return m_text.m_nodes.back();
    }
    bool literal(JsonKind kind, std::size_t length, bool value)
    {
        auto &node = add(kind, m_stream.Tell() - length);
        node.end = static_cast<quint32>(m_stream.Tell());
        node.boolean = value;
        return true;
    }
    bool open(JsonKind kind)
    {
        const auto index = static_cast<quint32>(m_text.m_nodes.size());
        add(kind, m_stream.Tell() - 1);
        m_open.push_back(index);
        return qsizetype(m_open.size()) <= deepestNesting;
    }
    bool close(rapidjson::SizeType count)
    {
        auto &node = m_text.m_nodes[m_open.back()];
        node.end = static_cast<quint32>(m_stream.Tell());
        node.next = static_cast<quint32>(m_text.m_nodes.size());
        node.count = count;
        m_open.pop_back();
        return true;
    }

    JsonText &m_text;
    Stream &m_stream;
    std::vector<quint32> m_open;
    quint32 m_key = JsonText::noKey;
};

namespace
{

// Says what is wrong with an escape or with an unescaped control character.
QString escapeError(char c)
{
    constexpr int hexadecimal = 16;
    if (c == '\n' || c == '\r')
        return QStringLiteral("A line ends within a text, where \\n has to stand for it.");
    if (static_cast<unsigned char>(c) >= ' ')
        return QStringLiteral("There is no such escape in a text.");
    return QStringLiteral("A control character within a text, where \\u%1 has to stand for it.")
        .arg(static_cast<int>(c), 4, hexadecimal, QLatin1Char('0'));
}

JsonError errorOf(const rapidjson::ParseResult &result, const QByteArray &bytes)
{
    const auto offset = static_cast<qsizetype>(result.Offset());
    const bool isLimit = result.Code() == rapidjson::kParseErrorTermination
                         || result.Code() == rapidjson::kParseErrorNumberTooBig;
    const bool isEmpty = result.Code() == rapidjson::kParseErrorDocumentEmpty;
    const std::optional<CutOff> cutOff =
        isLimit || isEmpty ? std::nullopt : cutOffOf(bytes, offset);
    if (cutOff)
        return {JsonError::Syntax, cutOff->offset,
                QStringLiteral("The file ends inside %1.").arg(cutOff->within)};
    switch (result.Code()) {
    case rapidjson::kParseErrorStringEscapeInvalid:
        return {JsonError::Syntax, offset,
                escapeError(offset < bytes.size() ? bytes[offset] : ' ')};
    case rapidjson::kParseErrorNumberTooBig:
        return {JsonError::NumberTooLarge, offset, QStringLiteral("The number is too large.")};
    case rapidjson::kParseErrorTermination:
        return {JsonError::Syntax, offset,
                QStringLiteral("Nested more than %1 levels deep.").arg(deepestNesting)};
    case rapidjson::kParseErrorObjectMissName:
        return {
            JsonError::Syntax, offset,
            QStringLiteral("A key in quotes is due here; no comma stands behind the last member.")};
    case rapidjson::kParseErrorDocumentEmpty:
        return {JsonError::Syntax, 0,
                bytes.isEmpty() || bytes == byteOrderMark
                    ? QStringLiteral("The file is empty.")
                    : QStringLiteral("There are only blanks in the file.")};
    default:
        return {JsonError::Syntax, offset,
                QString::fromLatin1(rapidjson::GetParseError_En(result.Code()))};
    }
}

} // namespace

JsonText::JsonText(const QByteArray &bytes)
    : m_bytes(bytes), m_decoded(bytes.constData(), bytes.size())
{
    if (m_decoded.startsWith(byteOrderMark))
        m_decoded.replace(0, byteOrderMark.size(), QByteArray(byteOrderMark.size(), ' '));
    constexpr qsizetype bytesPerNode = 16; // of the files as the editor writes them
    m_nodes.reserve(static_cast<std::size_t>(bytes.size() / bytesPerNode));

    rapidjson::InsituStringStream stream(m_decoded.data()); // clazy:exclude=detaching-member
    JsonTextBuilder builder(*this, stream);
    rapidjson::Reader reader;
    const rapidjson::ParseResult result =
        reader.Parse<rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag>(stream,
                                                                                          builder);
    if (result.IsError())
        m_error = errorOf(result, m_bytes);
    else if (const auto end = static_cast<qsizetype>(stream.Tell()); end != m_bytes.size())
        // The parser takes a zero byte for the end.
        m_error = {JsonError::Syntax, end, QStringLiteral("A zero byte in the text.")};
}

JsonValue JsonText::root() const
{
    return m_error ? JsonValue() : JsonValue(this, 0);
}

JsonKind JsonValue::kind() const
{
    return m_text->m_nodes[m_index].kind;
}

bool JsonValue::toBool() const
{
    return m_text->m_nodes[m_index].boolean;
}

qsizetype JsonValue::begin() const
{
    return m_text->m_nodes[m_index].begin;
}

qsizetype JsonValue::end() const
{
    return m_text->m_nodes[m_index].end;
}

QByteArrayView JsonValue::raw() const
{
    return QByteArrayView(m_text->m_bytes).sliced(begin(), end() - begin());
}

QByteArrayView JsonValue::utf8() const
{
    if (!isString())
        return {};
    const JsonText::Node &node = m_text->m_nodes[m_index];
    return QByteArrayView(m_text->m_decoded).sliced(node.text, node.count);
}

QString JsonValue::string() const
{
    return QString::fromUtf8(utf8());
}

qsizetype JsonValue::count() const
{
    return isString() ? 0 : m_text->m_nodes[m_index].count;
}

JsonValue JsonValue::firstChild() const
{
    return count() > 0 ? JsonValue(m_text, m_index + 1) : JsonValue();
}

JsonValue JsonValue::nextSibling() const
{
    const JsonText::Node &node = m_text->m_nodes[m_index];
    return node.next < m_text->m_nodes[node.parent].next ? JsonValue(m_text, node.next)
                                                         : JsonValue();
}

JsonValue JsonValue::member(QLatin1String key) const
{
    JsonValue found;
    if (!isObject())
        return found;
    const QByteArrayView name(key.data(), key.size());
    for (JsonValue child = firstChild(); child; child = child.nextSibling()) {
        if (child.keyUtf8() == name)
            found = child;
    }
    return found;
}

bool JsonValue::hasKey() const
{
    return m_text->m_nodes[m_index].key != JsonText::noKey;
}

QByteArrayView JsonValue::keyUtf8() const
{
    const JsonText::Key &key = m_text->m_keys[m_text->m_nodes[m_index].key];
    return QByteArrayView(m_text->m_decoded).sliced(key.text, key.length);
}

QString JsonValue::key() const
{
    return QString::fromUtf8(keyUtf8());
}

qsizetype JsonValue::keyBegin() const
{
    return m_text->m_keys[m_text->m_nodes[m_index].key].begin;
}

QByteArrayView JsonValue::rawKey() const
{
    const JsonText::Key &key = m_text->m_keys[m_text->m_nodes[m_index].key];
    return QByteArrayView(m_text->m_bytes).sliced(key.begin, key.end - key.begin);
}

QString JsonValue::pointer() const
{
    const quint32 parent = m_text->m_nodes[m_index].parent;
    if (parent == m_index)
        return {};
    const JsonValue container(m_text, parent);
    QString step;
    if (hasKey()) {
        step = key();
        step.replace(QLatin1Char('~'), QLatin1String("~0"));
        step.replace(QLatin1Char('/'), QLatin1String("~1"));
    } else {
        int index = 0;
        for (JsonValue child = container.firstChild(); child.m_index != m_index;
             child = child.nextSibling())
            ++index;
        step = QString::number(index);
    }
    return container.pointer() + QLatin1Char('/') + step;
}

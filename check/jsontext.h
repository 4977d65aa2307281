// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QLatin1String>
#include <QString>

#include <optional>
#include <vector>

class JsonText;

enum class JsonKind : quint8 { Null, Bool, Number, String, Array, Object };

// Why a text is no JSON, and at which byte.
struct JsonError {
    enum Kind { Syntax, NumberTooLarge };
    Kind kind = Syntax;
    qsizetype offset = 0;
    QString message;
};

// A value of a JsonText, which must outlive it; or none, which supports only the test for it.
class JsonValue
{
public:
    JsonValue() = default;

    explicit operator bool() const { return m_text != nullptr; }

    [[nodiscard]] JsonKind kind() const;
    [[nodiscard]] bool isObject() const { return kind() == JsonKind::Object; }
    [[nodiscard]] bool isArray() const { return kind() == JsonKind::Array; }
    [[nodiscard]] bool isString() const { return kind() == JsonKind::String; }
    [[nodiscard]] bool isNumber() const { return kind() == JsonKind::Number; }
    [[nodiscard]] bool toBool() const;

    // The offsets of the value's first byte and after its last.
    [[nodiscard]] qsizetype begin() const;
    [[nodiscard]] qsizetype end() const;
    // The value's bytes in the file: a number with all its digits.
    [[nodiscard]] QByteArrayView raw() const;
    // The text of a string, escapes resolved, as UTF-8; empty for other values.
    [[nodiscard]] QByteArrayView utf8() const;
    [[nodiscard]] QString string() const;

    // The members of an object or elements of an array, in file order.
    [[nodiscard]] qsizetype count() const;
    [[nodiscard]] JsonValue firstChild() const;
    [[nodiscard]] JsonValue nextSibling() const;
    // The last member of this name, as readers keep that one; none if it is missing.
    [[nodiscard]] JsonValue member(QLatin1String key) const;

    // The key of an object's member, and the offset of its opening quote.
    [[nodiscard]] bool hasKey() const;
    [[nodiscard]] QByteArrayView keyUtf8() const;
    [[nodiscard]] QString key() const;
    [[nodiscard]] qsizetype keyBegin() const;
    [[nodiscard]] QByteArrayView rawKey() const;

    // The value's place in the document (RFC 6901).
    [[nodiscard]] QString pointer() const;

private:
    friend class JsonText;
    JsonValue(const JsonText *text, quint32 index) : m_text(text), m_index(index) {}

    const JsonText *m_text = nullptr;
    quint32 m_index = 0;
};

// A JSON text with the places of its values, the digits of its numbers and its duplicate keys, all
// of which QJsonDocument forgets. The limit of nesting is Qt's.
class JsonText
{
    Q_DISABLE_COPY_MOVE(JsonText)

public:
    // Parses UTF-8 of less than 4 GB; a byte order mark is skipped.
    explicit JsonText(const QByteArray &bytes);

    [[nodiscard]] const std::optional<JsonError> &error() const { return m_error; }
    // None after an error.
    [[nodiscard]] JsonValue root() const;
    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }

private:
    friend class JsonValue;
    friend class JsonTextBuilder;

    struct Node {
        quint32 begin;
        quint32 end;
        quint32 next;   // index of the node after this value and everything in it
        quint32 parent; // its own index for the root
        quint32 count;  // of children; of a string: bytes of its text
        quint32 text;   // of a string: offset of its text in m_decoded
        quint32 key;    // index in m_keys, or noKey
        JsonKind kind;
        bool boolean;
    };
    struct Key {
        quint32 begin;
        quint32 end;
        quint32 text;
        quint32 length;
    };
    static constexpr quint32 noKey = 0xffffffff;

    QByteArray m_bytes;
    QByteArray m_decoded; // the same bytes, strings overwritten by their texts
    std::vector<Node> m_nodes;
    std::vector<Key> m_keys;
    std::optional<JsonError> m_error;
};

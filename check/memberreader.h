// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/utf8text.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <optional>

// Reads the members of a JSON text's top-level object one by one and holds one at a time, so that
// memory is that of the largest. It looks only at quotes, brackets and commas; JsonText judges the
// members.
class MemberReader
{
    Q_DISABLE_COPY_MOVE(MemberReader)

public:
    // Reads from the device's present place; the device must outlive this.
    explicit MemberReader(QIODevice &device);

    // Goes to the next member, past the value of the previous one if it was not taken. False after
    // the last one and after an error: see error() and hasFailed().
    [[nodiscard]] bool next();
    // The key with resolved escapes, and the place of its opening quote.
    [[nodiscard]] QString key() const;
    [[nodiscard]] TextPosition keyPosition() const { return m_keyPosition; }
    // The bytes read from the device: up to the member's value before take(), up to its end after
    // that.
    [[nodiscard]] qint64 offset() const { return m_read - (m_buffer.size() - m_at); }

    // An object of this member alone: "{", the member as in the text, and "}", which is missing if
    // the text ends within the member. Nothing if the member has more than largestMember bytes
    // without the white space between its values.
    [[nodiscard]] std::optional<QByteArray> take(qint64 largestMember);
    // The member's value if it is a string. Takes the member.
    [[nodiscard]] QString takeString();

    struct Error {
        TextPosition position;
        QString message; // a sentence without a full stop
    };
    // The error between two members or around all of them.
    [[nodiscard]] const std::optional<Error> &error() const { return m_error; }
    // Whether reading the device failed.
    [[nodiscard]] bool hasFailed() const { return m_failed; }

private:
    bool begin();
    bool end();
    bool nextKey();
    [[nodiscard]] bool fill();
    [[nodiscard]] int peek();
    void startKeeping(qint64 largest);
    void keepPassed();
    void pass();
    void passBlanks();
    void passString();
    void passValue();
    bool fail(const QString &message);

    QIODevice &m_device;
    QByteArray m_buffer;
    qint64 m_read = 0;      // from the device
    qsizetype m_at = 0;     // in m_buffer
    qsizetype m_keptTo = 0; // up to here m_member has what is to be kept of it
    TextPosition m_position;
    bool m_started = false;
    bool m_atValue = false; // the value of the present member is still to be read
    bool m_cutOff = false;  // the text ended within it
    bool m_failed = false;
    QByteArray m_member; // with "{" before it; only its key while the value is passed over
    bool m_keeps = false;
    qint64 m_counted = 0; // bytes of the member without white space between its values
    qint64 m_largest = 0;
    TextPosition m_keyPosition;
    std::optional<Error> m_error;
};

// The kind of a JSON file, judged by its first keys only: datasets or the species, entries or the
// header, or the "Type". Other if it has none of these.
enum class FileKind { Other, Species, Database };
[[nodiscard]] FileKind kindByFirstKeys(QIODevice &device);

// Whether the file is a database by its first keys and its "Type", or would be if it were not
// broken. Memory does not grow with the file.
[[nodiscard]] bool isDatabaseFile(const QString &path);

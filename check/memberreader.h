// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/utf8text.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <optional>

// Reads the members of a JSON text's top-level object one after the other and holds one at a time,
// so that memory is that of the largest one. Looks only at what is needed for that: quotes,
// brackets, commas. Whether a member is right is for JsonText to say.
class MemberReader
{
    Q_DISABLE_COPY_MOVE(MemberReader)

public:
    // Reads from the device's present place; the device must outlive the reader.
    explicit MemberReader(QIODevice &device);

    // Goes to the next member; passes over the value of the one before if it was not taken. False
    // behind the last one, and if something is wrong: see error() and hasFailed().
    [[nodiscard]] bool next();
    // The key, escapes resolved, and the place of its opening quote.
    [[nodiscard]] QString key() const;
    [[nodiscard]] TextPosition keyPosition() const { return m_keyPosition; }
    // How many bytes of the device have been read: up to the value before the member is taken, and
    // up to its end behind that.
    [[nodiscard]] qint64 offset() const { return m_read - (m_buffer.size() - m_at); }

    // An object of this member alone: "{", the member as it stands in the text, and "}", which is
    // missing where the text ends within the member. Nothing if the member has more than
    // largestMember bytes, not counting white space between its values.
    [[nodiscard]] std::optional<QByteArray> take(qint64 largestMember);
    // The member's value if it is a text. Takes the member.
    [[nodiscard]] QString takeString();

    struct Error {
        TextPosition position;
        QString message; // a sentence without a full stop
    };
    // What is wrong between two members, or around all of them.
    [[nodiscard]] const std::optional<Error> &error() const { return m_error; }
    // Whether the device could not be read to its end.
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

// What a JSON file is, told by its first keys without reading more: they are those of the datasets
// or the species, of entries or the header, or the "Type". Other if none of these is found.
enum class FileKind { Other, Species, Database };
[[nodiscard]] FileKind kindByFirstKeys(QIODevice &device);

// Whether the file is a database by its first keys and by its "Type", or would be if it were not
// broken. Memory does not grow with the file.
[[nodiscard]] bool isDatabaseFile(const QString &path);

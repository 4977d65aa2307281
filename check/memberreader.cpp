// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/memberreader.h"

#include "check/jsontext.h"
#include "database/databasecompiler.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace
{

constexpr qsizetype pieceSize = 1 << 16;
constexpr qsizetype largestText = largestJsonText - pieceSize;

bool isBlank(int c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

} // namespace

MemberReader::MemberReader(QIODevice &device) : m_device(device) {}

bool MemberReader::fill()
{
    keepPassed();
    if (m_counted > m_largest || m_member.size() > largestText) {
        m_keeps = false;
        m_member = {};
    }
    m_buffer.resize(pieceSize);
    const qint64 got = m_device.read(m_buffer.data(), pieceSize);
    m_failed = m_failed || got < 0;
    m_buffer.resize(std::max<qint64>(got, 0));
    m_read += m_buffer.size();
    m_at = m_keptTo = 0;
    return !m_buffer.isEmpty();
}

// Adds the bytes that were passed to the member's text.
void MemberReader::keepPassed()
{
    if (m_keeps)
        m_member.append(m_buffer.constData() + m_keptTo, m_at - m_keptTo);
    m_keptTo = m_at;
}

// Returns the next byte; -1 at the end.
int MemberReader::peek()
{
    if (m_at == m_buffer.size() && !fill())
        return -1;
    return static_cast<unsigned char>(m_buffer.at(m_at));
}

void MemberReader::pass()
{
    m_position.advance(m_buffer.at(m_at++));
}

void MemberReader::passBlanks()
{
    while (isBlank(peek()))
        pass();
}

// Passes a string from its opening to its closing quote.
void MemberReader::passString()
{
    pass();
    for (int c = peek(); c >= 0; c = peek()) {
        ++m_counted;
        pass();
        if (c == '"')
            return;
        if (c == '\\' && peek() >= 0)
            pass();
    }
    m_cutOff = true;
}

void MemberReader::passValue()
{
    int depth = 0;
    for (int c = peek(); c >= 0; c = peek()) {
        if (depth == 0 && (c == ',' || c == '}' || c == ']'))
            return;
        if (c == '"') {
            passString();
        } else {
            depth += int(c == '{' || c == '[') - int(c == '}' || c == ']');
            m_counted += isBlank(c) ? 0 : 1;
            pass();
        }
        const bool isEnd = c == '"' || c == '}' || c == ']';
        if (isEnd && depth == 0)
            return;
    }
    m_cutOff = true;
}

bool MemberReader::next()
{
    if (m_atValue)
        passValue();
    m_atValue = false;
    if (m_error || m_cutOff || m_failed)
        return false;
    if (!std::exchange(m_started, true))
        return begin() && nextKey();
    passBlanks();
    if (peek() == '}')
        return end();
    if (peek() != ',')
        return fail(QStringLiteral("A comma or a closing brace is missing between two members"));
    pass();
    passBlanks();
    return nextKey();
}

// Goes to the first key; false if there is none.
bool MemberReader::begin()
{
    for (const unsigned char c : {0xef, 0xbb, 0xbf}) { // a byte order mark
        if (peek() == c)
            ++m_at;
    }
    passBlanks();
    if (peek() != '{')
        return fail(QStringLiteral("The file holds no object"));
    pass();
    passBlanks();
    return peek() != '}' || end();
}

bool MemberReader::end()
{
    pass();
    passBlanks();
    return peek() < 0 ? false : fail(QStringLiteral("More follows behind the file's object"));
}

bool MemberReader::nextKey()
{
    if (peek() != '"')
        return fail(QStringLiteral("The name of a member is missing"));
    m_keyPosition = m_position;
    m_member = "{";
    m_counted = 0;
    startKeeping(largestJsonFile);
    passString();
    keepPassed();
    m_keeps = false;
    m_atValue = true;
    return true;
}

bool MemberReader::fail(const QString &message)
{
    if (!m_failed)
        m_error = Error{m_position,
                        peek() < 0 ? QStringLiteral("The file ends inside an object") : message};
    return false;
}

void MemberReader::startKeeping(qint64 largest)
{
    m_largest = largest;
    m_keptTo = m_at;
    m_keeps = true;
}

QString MemberReader::key() const
{
    const JsonText text(m_member + ":0}");
    return text.root() ? text.root().firstChild().key() : QString();
}

std::optional<QByteArray> MemberReader::take(qint64 largestMember)
{
    startKeeping(largestMember);
    passValue();
    keepPassed();
    m_atValue = false;
    const bool isWhole = std::exchange(m_keeps, false) && m_counted <= m_largest;
    QByteArray member = std::exchange(m_member, {});
    if (!isWhole)
        return std::nullopt;
    if (!m_cutOff)
        member += '}';
    return member;
}

QString MemberReader::takeString()
{
    constexpr qint64 longest = 1000;
    const JsonText text(take(longest).value_or(QByteArray()));
    const JsonValue value = text.root() ? text.root().firstChild() : JsonValue();
    return value ? value.string() : QString();
}

FileKind kindByFirstKeys(QIODevice &device)
{
    MemberReader reader(device);
    while (reader.next()) {
        const QString key = reader.key();
        if (key == headerKey || isEntryKey(key))
            return FileKind::Database;
        if (key == speciesKey || isDatasetKey(key))
            return FileKind::Species;
        if (key == typeKey) {
            const QString type = reader.takeString();
            return type == speciesFileType    ? FileKind::Species
                   : type == databaseFileType ? FileKind::Database
                                              : FileKind::Other;
        }
    }
    return FileKind::Other;
}

bool isDatabaseFile(const QString &path)
{
    QFile file(path);
    // Opening a pipe would wait for a writer that may never come.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)
        || kindByFirstKeys(file) != FileKind::Database || !file.seek(0))
        return false;
    MemberReader reader(file);
    QString type;
    while (reader.next()) {
        if (reader.key() == typeKey)
            type = reader.takeString();
    }
    return type == databaseFileType || reader.error() || reader.hasFailed();
}

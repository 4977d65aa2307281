// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/findinglist.h"

#include <algorithm>
#include <utility>

namespace
{

// The line at offset, only a window of it if it is long, and a caret below the place; nothing if
// there is nothing to see.
QString sourceAt(const QByteArray &bytes, qsizetype offset)
{
    constexpr qsizetype longest = 100; // characters
    constexpr qsizetype before = 60;
    const QByteArrayView line = lineAt(bytes, offset);
    if (line.trimmed().isEmpty())
        return {};
    const qsizetype column = positionAt(bytes, offset).column - 1;
    QString text = QString::fromUtf8(line);
    for (QChar &c : text) {
        if (!c.isPrint())
            c = QLatin1Char(' ');
    }
    // The caret counts code points, as columns do; UTF-16 units differ from them beyond the first
    // plane only, which is rare here.
    const qsizetype start = text.size() > longest ? qMax<qsizetype>(column - before, 0) : 0;
    return text.sliced(qMin(start, text.size())).left(longest) + QLatin1Char('\n')
           + QString(column - start, QLatin1Char(' ')) + QLatin1Char('^');
}

} // namespace

FindingList::FindingList(QString path, const QByteArray &bytes, const CheckSet &enabled,
                         TextPosition start)
    : m_path(std::move(path)), m_bytes(bytes), m_positions(bytes, start), m_enabled(enabled)
{
}

void FindingList::add(Check check, const JsonValue &value, const QString &message,
                      const QString &hint, std::optional<Severity> severity)
{
    append(check, placeOf(value), message, hint, severity);
}

void FindingList::addAtKey(Check check, const JsonValue &member, const QString &message,
                           const QString &hint)
{
    append(check, placeOfKey(member), message, hint, {});
}

void FindingList::addAt(Check check, qsizetype offset, const QString &message, const QString &hint)
{
    const TextPosition position = m_positions.at(offset);
    append(check, {{}, position.line, position.column}, message, hint, {});
}

void FindingList::addAtByte(Check check, qsizetype offset, const QString &message,
                            const QString &hint)
{
    const TextPosition position = m_positions.at(offset);
    append(check, {{}, position.line, position.column}, message, hint, {},
           sourceAt(m_bytes, offset), true);
}

void FindingList::addUnread(Check check, const Place &place, const QString &message)
{
    append(check, place, message, {}, {}, {}, true);
}

void FindingList::addAtPlace(Check check, const Place &place, const QString &message,
                             const QString &hint)
{
    append(check, place, message, hint, {});
}

bool FindingList::hasAny(bool (*belongs)(Check)) const
{
    const auto checks = allChecks();
    return std::any_of(checks.begin(), checks.end(), [&](const CheckInfo &info) {
        return has(info.check) && belongs(info.check);
    });
}

Place FindingList::placeOf(const JsonValue &value)
{
    const TextPosition position = m_positions.at(value.begin());
    return {value.pointer(), position.line, position.column};
}

Place FindingList::placeOfKey(const JsonValue &member)
{
    const TextPosition position = m_positions.at(member.keyBegin());
    return {member.pointer(), position.line, position.column};
}

void FindingList::append(Check check, const Place &place, const QString &message,
                         const QString &hint, std::optional<Severity> severity,
                         const QString &source, bool endsReading)
{
    m_found.set(static_cast<std::size_t>(check));
    if (!isAsked(check))
        return;
    m_findings.append({.check = check,
                       .severity = severity.value_or(infoOf(check).severity),
                       .path = m_path,
                       .pointer = place.pointer,
                       .line = place.line,
                       .column = place.column,
                       .message = message,
                       .hint = hint,
                       .source = source,
                       .endsReading = endsReading});
}

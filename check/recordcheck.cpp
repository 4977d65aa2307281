// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/recordcheck.h"

#include "files/editdistance.h"

#include <algorithm>
#include <vector>

namespace
{

void checkKeysOf(const JsonValue &object, FindingList &findings)
{
    constexpr qsizetype few = 40;
    std::vector<JsonValue> members;
    members.reserve(static_cast<std::size_t>(object.count()));
    for (JsonValue member = object.firstChild(); member; member = member.nextSibling())
        members.push_back(member);
    const auto report = [&](const JsonValue &lost) {
        reportDuplicateKey(lost.key(), findings.placeOfKey(lost), findings);
    };
    if (object.count() <= few) {
        for (std::size_t i = 0; i < members.size(); ++i) {
            const bool again = std::any_of(
                members.begin() + static_cast<std::ptrdiff_t>(i) + 1, members.end(),
                [&](const JsonValue &later) { return later.keyUtf8() == members[i].keyUtf8(); });
            if (again)
                report(members[i]);
        }
        return;
    }
    std::stable_sort(members.begin(), members.end(), [](const auto &a, const auto &b) {
        return QByteArrayView(a.keyUtf8()).compare(b.keyUtf8()) < 0;
    });
    for (std::size_t i = 0; i + 1 < members.size(); ++i) {
        if (members[i].keyUtf8() == members[i + 1].keyUtf8())
            report(members[i]);
    }
}

} // namespace

void reportDuplicateKey(const QString &key, const Place &place, FindingList &findings)
{
    findings.addAtPlace(
        Check::DuplicateKey, place,
        QStringLiteral("The key %1 is written again below; this value is lost").arg(quoted(key)),
        QStringLiteral("Keep one of the two; the editor reads the last one."));
}

void checkDuplicateKeys(const JsonValue &root, FindingList &findings)
{
    // The reader limits nesting, but not enough for recursion.
    std::vector<JsonValue> open{root};
    while (!open.empty()) {
        const JsonValue value = open.back();
        open.pop_back();
        if (value.isObject() && value.count() > 1)
            checkKeysOf(value, findings);
        if (!value.isObject() && !value.isArray())
            continue;
        for (JsonValue child = value.firstChild(); child; child = child.nextSibling()) {
            if (child.isObject() || child.isArray())
                open.push_back(child);
        }
    }
}

void checkMembers(const JsonValue &object, std::span<const KnownKey> known, FindingList &findings)
{
    for (JsonValue member = object.firstChild(); member; member = member.nextSibling()) {
        const QByteArrayView key = member.keyUtf8();
        const auto found = std::find_if(known.begin(), known.end(), [&](const KnownKey &each) {
            return key == QByteArrayView(each.key.data(), each.key.size());
        });
        if (found != known.end()) {
            checkKind(member, found->kind, findings);
            continue;
        }
        const QString meant = similarKey(member.key(), known);
        findings.addAtKey(Check::UnknownKey, member,
                          QStringLiteral("The editor does not know the key %1 and drops it")
                              .arg(quoted(member.key())),
                          meantHint(meant));
    }
}

QString similarKey(const QString &key, std::span<const KnownKey> known)
{
    constexpr qsizetype farthest = 2;
    constexpr qsizetype longest = 64;
    QString best;
    qsizetype bestDistance = farthest + 1;
    if (key.size() > longest)
        return best;
    for (const KnownKey &each : known) {
        const QString name(each.key);
        const qsizetype distance = editDistance(key.toLower(), name.toLower(), Swaps::No);
        // Two edits turn a short word into another one.
        if (distance < bestDistance && 2 * distance < name.size()) {
            best = name;
            bestDistance = distance;
        }
    }
    return best;
}

QString meantHint(const QString &meant)
{
    return meant.isEmpty() ? QString() : QStringLiteral("Did you mean \"%1\"?").arg(meant);
}

bool checkKind(const JsonValue &value, JsonKind kind, FindingList &findings)
{
    if (value.kind() == kind)
        return true;
    const QString readAs = kind == JsonKind::Number ? QStringLiteral("0")
                           : kind == JsonKind::Bool ? QStringLiteral("false")
                                                    : QStringLiteral("empty");
    // A null loses nothing, but another program may read it differently.
    const bool isNull = value.kind() == JsonKind::Null;
    findings.add(Check::ValueType, value,
                 QStringLiteral("%1 is %2, but the editor reads %3 here and takes it for %4")
                     .arg(quoted(value.key()), kindName(value.kind()), kindName(kind), readAs),
                 kind == JsonKind::String && value.isNumber()
                     ? QStringLiteral("Put the number in quotes.")
                     : QString(),
                 isNull ? std::optional(Severity::Warning) : std::nullopt);
    return false;
}

QString kindName(JsonKind kind)
{
    switch (kind) {
    case JsonKind::Null:
        return QStringLiteral("null");
    case JsonKind::Bool:
        return QStringLiteral("true or false");
    case JsonKind::Number:
        return QStringLiteral("a number");
    case JsonKind::String:
        return QStringLiteral("a text");
    case JsonKind::Array:
        return QStringLiteral("a list");
    case JsonKind::Object:
        return QStringLiteral("an object");
    }
    Q_UNREACHABLE();
}

QString quoted(const QString &text)
{
    constexpr qsizetype longest = 60;
    QString shown = text.size() > longest ? text.left(longest) + QChar(u'\u2026') : text;
    for (QChar &c : shown) {
        if (!c.isPrint() && !c.isSurrogate())
            c = QChar::ReplacementCharacter;
    }
    return QLatin1Char('"') + shown + QLatin1Char('"');
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <QLatin1String>
#include <QString>

#include <span>

// A key that a reader knows, and the kind of value that it reads there.
struct KnownKey {
    QLatin1String key;
    JsonKind kind;
};

// Keys that are written twice, in an object and in all that it holds.
void checkDuplicateKeys(const JsonValue &root, FindingList &findings);

// Reports a key at place that is written again in the same object.
void reportDuplicateKey(const QString &key, const Place &place, FindingList &findings);

// The members of an object that the reader does not know, and those whose value is not of the kind
// that it reads: it takes them for empty.
void checkMembers(const JsonValue &object, std::span<const KnownKey> known, FindingList &findings);

// The known key that an unknown one was probably meant to be; empty if none comes close.
[[nodiscard]] QString similarKey(const QString &key, std::span<const KnownKey> known);

// "Did you mean ...?" about such a key; empty if there is none.
[[nodiscard]] QString meantHint(const QString &meant);

// Reports a value that is not of the kind that is read there. Returns whether it is of that kind.
bool checkKind(const JsonValue &value, JsonKind kind, FindingList &findings);

// What messages call a kind of value: "a text", "a number", ...
[[nodiscard]] QString kindName(JsonKind kind);

// A text as messages quote it: in quotes and not too long.
[[nodiscard]] QString quoted(const QString &text);

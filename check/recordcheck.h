// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <QLatin1String>
#include <QString>

#include <span>

// A key that a reader knows, and the kind of its value.
struct KnownKey {
    QLatin1String key;
    JsonKind kind;
};

// Reports keys that occur twice in an object or in anything within it.
void checkDuplicateKeys(const JsonValue &root, FindingList &findings);

// Reports a key at place that is written again in the same object.
void reportDuplicateKey(const QString &key, const Place &place, FindingList &findings);

// Reports members of an object that the reader does not know, and values of the wrong kind, which
// it takes for empty.
void checkMembers(const JsonValue &object, std::span<const KnownKey> known, FindingList &findings);

// The known key that was probably meant; empty if none comes close.
[[nodiscard]] QString similarKey(const QString &key, std::span<const KnownKey> known);

// "Did you mean ...?" with that key; empty without one.
[[nodiscard]] QString meantHint(const QString &meant);

// Reports a value of the wrong kind. Returns whether the kind is right.
bool checkKind(const JsonValue &value, JsonKind kind, FindingList &findings);

// The word for a kind of value in messages: "a text", "a number", ...
[[nodiscard]] QString kindName(JsonKind kind);

// A text as messages quote it: in quotes and shortened.
[[nodiscard]] QString quoted(const QString &text);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonObject>
#include <QJsonValue>

// The fields of a spectrum object but its points, as "key: value" in files of other programs.

// The keys that a spectrum can have.
[[nodiscard]] QByteArrayList metadataKeys();

// The key among metadataKeys() that name is, letters compared without regard to case; empty if
// there is none.
[[nodiscard]] QByteArray metadataKey(const QByteArray &name);

// Sets the field of this key from a text: a type by its name or index, a line spectrum as true or
// false. False if the text is no value of the field.
[[nodiscard]] bool setMetadata(QJsonObject &metadata, const QByteArray &key,
                               const QByteArray &text);

// A value on one line: a text as it is, if it can be told from a quoted one and has no blanks at
// its ends and no control characters; else quoted as in JSON. Other values are JSON.
[[nodiscard]] QByteArray metadataText(const QString &key, const QJsonValue &value);

// The text that metadataText() made a line of.
[[nodiscard]] QByteArray unquoted(const QByteArray &text);

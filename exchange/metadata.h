// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonObject>
#include <QJsonValue>

// The fields of a spectrum object without its points, as "key: value" in other programs' files.

// The keys of a spectrum's fields.
[[nodiscard]] QByteArrayList metadataKeys();

// The key among metadataKeys() that equals name in any case; empty if there is none.
[[nodiscard]] QByteArray metadataKey(const QByteArray &name);

// Sets the field from a text: a type by name or index, a line spectrum as true or false. False if
// the text is no value of the field.
[[nodiscard]] bool setMetadata(QJsonObject &metadata, const QByteArray &key,
                               const QByteArray &text);

// A value on one line. A text stays as it is if it does not look quoted and has no blanks at its
// ends and no control characters; otherwise it is quoted as in JSON. Other values are JSON.
[[nodiscard]] QByteArray metadataText(const QString &key, const QJsonValue &value);

// The inverse of metadataText() for texts.
[[nodiscard]] QByteArray unquoted(const QByteArray &text);

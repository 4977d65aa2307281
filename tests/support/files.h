// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

// Files of the tests. Each function fails the test if it cannot do its work.

void writeFile(const QString &path, const QByteArray &bytes);
void writeFile(const QString &path, const QJsonObject &object);
[[nodiscard]] QByteArray fileBytes(const QString &path);
[[nodiscard]] QJsonObject fileObject(const QString &path);
// The names in a folder, hidden ones and dangling links included.
[[nodiscard]] QStringList namesIn(const QString &folder);

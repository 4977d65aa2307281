// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/jsonfile.h"

#include "species/filebytes.h"

#include <QFileInfo>
#include <QJsonDocument>

bool hasType(const QJsonObject &object, QLatin1String type)
{
    return object.value(typeKey).toString() == type;
}

std::optional<QJsonObject> readJsonObject(const QString &path)
{
    if (QFileInfo(path).size() > largestJsonFile)
        return std::nullopt;
    const std::optional<QByteArray> bytes = readFileBytes(path);
    if (!bytes)
        return std::nullopt;
    return QJsonDocument::fromJson(*bytes).object();
}

bool writeJsonObject(const QString &path, const QJsonObject &object)
{
    const QByteArray bytes = QJsonDocument(object).toJson(QJsonDocument::Indented);
    return bytes.size() <= largestJsonFile && replaceFileBytes(path, bytes);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/speciesfile.h"

#include "files/jsonfile.h"

#include <QRegularExpression>

QJsonObject speciesFileObject(const QJsonObject &species, const QList<QJsonObject> &datasets)
{
    QJsonObject file{{typeKey, speciesFileType}, {speciesKey, species}};
    int number = 1;
    for (const QJsonObject &dataset : datasets)
        file.insert(QStringLiteral("Dataset%1").arg(number++), dataset);
    return file;
}

bool isDatasetKey(const QString &key)
{
    static const QRegularExpression pattern(datasetKeyPattern);
    const QRegularExpressionMatch match = pattern.match(key);
    return match.hasMatch() && match.capturedLength() == key.size();
}

QStringList datasetKeys(const QJsonObject &file)
{
    QStringList keys = file.keys();
    keys.removeIf([](const QString &key) { return !isDatasetKey(key); });
    return keys;
}

bool isSpeciesFile(const QString &path)
{
    // A text with a parse error reads as an empty object, which has no type.
    const std::optional<QJsonObject> object = readJsonObject(path);
    return object && hasType(*object, speciesFileType);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/speciesfile.h"

#include "species/jsonfile.h"

QJsonObject speciesFileObject(const QJsonObject &species, const QList<QJsonObject> &datasets)
{
    QJsonObject file{{typeKey, speciesFileType}, {speciesKey, species}};
    int number = 1;
    for (const QJsonObject &dataset : datasets)
        file.insert(QStringLiteral("Dataset%1").arg(number++), dataset);
    return file;
}

bool isSpeciesFile(const QString &path)
{
    // A text with a parse error reads as an empty object, which has no type.
    const std::optional<QJsonObject> object = readJsonObject(path);
    return object && hasType(*object, speciesFileType);
}

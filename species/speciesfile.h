// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QList>
#include <QString>

// The envelope of a species file: "Type", "Species" and the spectra as "Dataset1", "Dataset2", ...

inline constexpr QLatin1String speciesFileType("Species v1");
inline constexpr QLatin1String speciesKey("Species");

// The whole file's object; datasets are numbered from 1 in the order of the list.
[[nodiscard]] QJsonObject speciesFileObject(const QJsonObject &species,
                                            const QList<QJsonObject> &datasets);

// Whether the file at path can be read, is JSON and names itself a species file. Shows nothing.
[[nodiscard]] bool isSpeciesFile(const QString &path);

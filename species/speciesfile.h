// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QList>
#include <QString>
#include <QStringList>

// The envelope of a species file: "Type", "Species" and the spectra as "Dataset1", "Dataset2", ...

inline constexpr QLatin1String speciesFileType("Species v1");
inline constexpr QLatin1String speciesKey("Species");
// What the keys of spectra look like; no such key ends with a line feed, before which "$" matches.
inline constexpr QLatin1String datasetKeyPattern("^Dataset\\d+$");

// The whole file's object; datasets are numbered from 1 in the order of the list.
[[nodiscard]] QJsonObject speciesFileObject(const QJsonObject &species,
                                            const QList<QJsonObject> &datasets);

// Whether key is "Dataset" and decimal digits, with nothing before or after.
[[nodiscard]] bool isDatasetKey(const QString &key);

// The keys of the file's spectra in the order in which they are loaded: that of the sorted keys, so
// that Dataset10 comes before Dataset2.
[[nodiscard]] QStringList datasetKeys(const QJsonObject &file);

// Whether the file at path can be read, is JSON and names itself a species file. Shows nothing.
[[nodiscard]] bool isSpeciesFile(const QString &path);

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
// The pattern of the keys of spectra; no key ends with a line feed, before which "$" also matches.
inline constexpr QLatin1String datasetKeyPattern("^Dataset\\d+$");

// The whole file's object; datasets are numbered from 1 in the order of the list.
[[nodiscard]] QJsonObject speciesFileObject(const QJsonObject &species,
                                            const QList<QJsonObject> &datasets);

// Whether key is exactly "Dataset" and decimal digits.
[[nodiscard]] bool isDatasetKey(const QString &key);

// The keys of the file's spectra in the order of loading, which is that of sorted texts: Dataset10
// comes before Dataset2.
[[nodiscard]] QStringList datasetKeys(const QJsonObject &file);

// Whether the file at path can be read, is JSON and names itself a species file.
[[nodiscard]] bool isSpeciesFile(const QString &path);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QNetworkRequest>
#include <QString>
#include <QUrl>

class QNetworkReply;

// The public web service that draws structural formulas by CAS number.

// Bodies above this size are refused, in bytes.
inline constexpr qint64 largestStructureImage = qint64{16} * 1024 * 1024;

// A service that sends no byte for this long is given up, in ms.
inline constexpr int structureImagePatience = 30'000;

// The address of the colour image for a valid CAS number.
[[nodiscard]] QUrl structureImageUrl(const QString &casNumber);

// Asks this host alone for it, in HTTP/1.1: a redirection to another one is an error.
[[nodiscard]] QNetworkRequest structureImageRequest(const QString &casNumber);

// Ends a download at its user's wish. Its reply ends with an error that is not to be told.
void cancelDownload(QNetworkReply *reply);
[[nodiscard]] bool isCancelled(const QNetworkReply *reply);

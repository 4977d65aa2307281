// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QNetworkRequest>
#include <QString>
#include <QUrl>

class QNetworkReply;

// The public web service that draws structural formulas by CAS number.

// Bodies above this size are refused, in bytes.
inline constexpr qint64 largestStructureImage = qint64{16} * 1024 * 1024;

// A download is given up if the service sends no byte for this long, in ms.
inline constexpr int structureImagePatience = 30'000;

// The address of the colour image for a valid CAS number.
[[nodiscard]] QUrl structureImageUrl(const QString &casNumber);

// The request stays with this host and HTTP/1.1: a redirection to another host is an error.
[[nodiscard]] QNetworkRequest structureImageRequest(const QString &casNumber);

// Ends a download that its user cancels. The error of its reply is not to be shown.
void cancelDownload(QNetworkReply *reply);
[[nodiscard]] bool isCancelled(const QNetworkReply *reply);

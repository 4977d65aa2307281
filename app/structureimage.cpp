// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/structureimage.h"

#include <QNetworkReply>

namespace
{

// Scheme and host of the service; ZORAVEL_IMAGE_SERVICE sets another one at build time.
constexpr QLatin1String imageServiceBase(ZORAVEL_IMAGE_SERVICE);

// Set on a reply: Qt reports a timeout with the same error as a cancelled download.
constexpr char cancelledProperty[] = "cancelledByUser";

} // namespace

QUrl structureImageUrl(const QString &casNumber)
{
    QString digits = casNumber;
    digits.remove(QLatin1Char('-'));
    return QUrl(imageServiceBase + QLatin1String("/cgi/cbook.cgi?Struct=C") + digits
                    + QLatin1String("&Type=Color"),
                QUrl::TolerantMode);
}

QNetworkRequest structureImageRequest(const QString &casNumber)
{
    QNetworkRequest request(structureImageUrl(casNumber));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::SameOriginRedirectPolicy);
    // Qt's code for HTTP/2 has had flaws that a server can exploit.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

void cancelDownload(QNetworkReply *reply)
{
    reply->setProperty(cancelledProperty, true);
    reply->abort();
}

bool isCancelled(const QNetworkReply *reply)
{
    return reply->property(cancelledProperty).toBool();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/structureimage.h"

namespace
{

// Scheme and host of the service; a build for another one sets ZORAVEL_IMAGE_SERVICE.
constexpr QLatin1String imageServiceBase(ZORAVEL_IMAGE_SERVICE);

} // namespace

QUrl structureImageUrl(const QString &casNumber)
{
    QString digits = casNumber;
    digits.remove(QLatin1Char('-'));
    return QUrl(imageServiceBase + QLatin1String("/cgi/cbook.cgi?Struct=C") + digits
                    + QLatin1String("&Type=Color"),
                QUrl::TolerantMode);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/picturecheck.h"

#include "check/pngcheck.h"
#include "pictures/picture.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

void checkPicture(const JsonValue &value, FindingList &findings)
{
    constexpr int smallestSide = 16;   // pixels
    constexpr int largestSide = 4'096; // pixels
    constexpr qsizetype largestFile = 1'000'000;
    if (!value || !value.isString() || value.utf8().isEmpty())
        return;
    const QByteArray bytes = QByteArray::fromBase64(value.utf8().toByteArray());
    const QSize size = soundPngSize(bytes).value_or(QSize());
    // Fall back to full decoding.
    const QSize decoded = size.isValid() ? size : decodePicture(bytes).size();
    if (decoded.isEmpty()) {
        findings.add(Check::ImageDecode, value,
                     QStringLiteral("The structure image cannot be decoded; the editor drops it"),
                     QStringLiteral("Paste or download the image again."));
        return;
    }
    const QString measures =
        QStringLiteral("%1 x %2 pixels").arg(decoded.width()).arg(decoded.height());
    if (qMax(decoded.width(), decoded.height()) > largestSide || bytes.size() > largestFile)
        findings.add(Check::ImageSize, value,
                     QStringLiteral("The structure image is very large: %1, %2 kB")
                         .arg(measures)
                         .arg((bytes.size() + 999) / 1000),
                     QStringLiteral("Scale it down."));
    else if (qMin(decoded.width(), decoded.height()) < smallestSide)
        findings.add(Check::ImageSize, value,
                     QStringLiteral("The structure image is very small: %1").arg(measures),
                     QStringLiteral("Paste or download a larger one."));
}

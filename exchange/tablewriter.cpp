// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/tablewriter.h"

#include "exchange/metadata.h"
#include "exchange/numbers.h"
#include "files/jsonfile.h"
#include "spectrum/spectrumobject.h"

QByteArray writeTable(const QJsonObject &spectrum, char separator, char decimal)
{
    QByteArray text;
    for (auto member = spectrum.begin(); member != spectrum.end(); ++member) {
        const QString key = member.key();
        if (key == typeKey || key == energiesKey || key == intensitiesKey || key == pointObjectsKey)
            continue;
        text += "# " + key.toUtf8() + ": " + metadataText(key, member.value()) + '\n';
    }
    text += QByteArray("E / eV") + separator + "I\n";
    const auto number = [&](double value) { return shortestText(value).replace('.', decimal); };
    for (const QPointF &point : storedPoints(spectrum))
        text += number(point.x()) + separator + number(point.y()) + '\n';
    return text;
}

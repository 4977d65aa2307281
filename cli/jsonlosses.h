// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonObject>

// What of the file's object before is not in after, the object that the editor would save of it:
// one line for each place, by its path from the top ("/Species/Note: ..."; "Spectrum" for a
// spectrum file as a whole). Numbers of an array are taken together. Spectra that only get another
// number, a picture that is encoded anew, and points in another form are not lost.
[[nodiscard]] QByteArrayList lossesBetween(const QJsonObject &before, const QJsonObject &after);

// A line of the same form for each value of the JSON text whose key is written again below it,
// which no reader of objects gets to see.
[[nodiscard]] QByteArrayList lossesInReading(const QByteArray &json);

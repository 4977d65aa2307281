// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QJsonObject>

// What of the file's object before is not in after, the object that the editor would save of it:
// one line for each place, by its path from the top ("/Species/Note: ..."). Numbers of an array are
// taken together. Spectra that only get another number, a picture that is encoded anew, and points
// in another form are not lost.
[[nodiscard]] QByteArrayList lossesBetween(const QJsonObject &before, const QJsonObject &after);

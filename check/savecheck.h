// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonObject>

// A file, and what the editor writes after loading it (asSavedFile()).

// Reports if the bytes of a species or spectrum file would be others. Nothing is said where another
// finding has named what changes.
void checkSaving(const JsonText &text, FindingList &findings);

// Whether a finding of the check names what is lost with the next save.
[[nodiscard]] bool saysWhySavingChanges(Check check);

// What of the file's object before is not in after, the object that the editor would save of it:
// one line for each place, by its path from the top ("/Species/Note: ..."; "Spectrum" for a
// spectrum file as a whole). Numbers of an array are taken together. Spectra that only get another
// number, a picture that is encoded anew, and points in another form are not lost.
[[nodiscard]] QByteArrayList lossesBetween(const QJsonObject &before, const QJsonObject &after);

// A line of the same form for each value of the JSON text whose key is written again below it,
// which no reader of objects gets to see.
[[nodiscard]] QByteArrayList lossesInReading(const QByteArray &json);

// Why the editor would lose points of the spectrum object; empty if it would not.
[[nodiscard]] QByteArray whyPointsAreLost(const QJsonObject &spectrum);

// What the objects of points hold besides their two numbers, which nobody reads; empty if nothing.
[[nodiscard]] QByteArray whatElsePointsHold(const QJsonObject &spectrum);

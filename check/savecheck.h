// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonObject>

// Compares a file with what the editor writes after loading it (asSavedFile()).

// Reports if saving would change the bytes of a species or spectrum file, unless another finding
// has named the change.
void checkSaving(const JsonText &text, FindingList &findings);

// Whether the check's findings name what the next save loses.
[[nodiscard]] bool saysWhySavingChanges(Check check);

// The losses between a file's object and what the editor would save: one line for each place, by
// its path from the top ("/Species/Note: ..."; "Spectrum" for a whole spectrum file). Numbers of an
// array count together. Renumbered spectra, reencoded pictures and points in another form are no
// losses.
[[nodiscard]] QByteArrayList lossesBetween(const QJsonObject &before, const QJsonObject &after);

// One line of the same form for each value of the JSON text whose key occurs again later, which no
// reader of objects sees.
[[nodiscard]] QByteArrayList lossesInReading(const QByteArray &json);

// Why the editor would lose points of the spectrum object; empty if it would not.
[[nodiscard]] QByteArray whyPointsAreLost(const QJsonObject &spectrum);

// What point objects hold besides their two numbers, which nobody reads; empty if nothing.
[[nodiscard]] QByteArray whatElsePointsHold(const QJsonObject &spectrum);

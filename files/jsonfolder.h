// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

// The names of the JSON files in folder, without hidden ones: "*.json" in any case, in natural
// order.
[[nodiscard]] QStringList jsonFilesIn(const QString &folder);

// Sorts names as the user's locale does, digit runs by their numeric value and letters without
// regard to case: C2H4 before C10H8, b before C. Names that are equal so far are sorted by their
// code units, so that the order is the same everywhere and at every call.
void sortNaturally(QStringList &names);

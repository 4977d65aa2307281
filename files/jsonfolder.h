// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

// The names of the JSON files in folder: "*.json" in any case, not hidden, in natural order.
[[nodiscard]] QStringList jsonFilesIn(const QString &folder);

// Sorts names in the order of the user's locale, with runs of digits by value and without regard to
// case: C2H4 before C10H8, b before C. Names that are equal by this are sorted by code units, so
// that the order is always the same.
void sortNaturally(QStringList &names);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

// The public web service that draws structural formulas by CAS number.

// Bodies above this size are refused, in bytes.
inline constexpr qint64 largestStructureImage = qint64{16} * 1024 * 1024;

// The address of the colour image for a valid CAS number.
[[nodiscard]] QUrl structureImageUrl(const QString &casNumber);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>

// Writes a spectrum object as a table of two columns: its fields as comments "# Key: value", a line
// of headings, and the points with all digits.
[[nodiscard]] QByteArray writeTable(const QJsonObject &spectrum, char separator, char decimal);

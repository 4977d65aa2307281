// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>

// Writes a spectrum object as JCAMP-DX 5.01, in plain ASCII: as XYDATA if the steps are even and
// the intensities short enough to read back the same numbers, otherwise as XYPOINTS. The fields
// have labels of their own, "##$ZORAVEL TITLE=".
[[nodiscard]] QByteArray writeJcamp(const QJsonObject &spectrum);

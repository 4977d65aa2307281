// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>

// Writes a spectrum object as JCAMP-DX 5.01, in plain ASCII: XYDATA if the steps are so even and
// the intensities have so few digits that the same numbers are read again, else XYPOINTS. The
// fields stand under labels of their own, "##$ZORAVEL TITLE=".
[[nodiscard]] QByteArray writeJcamp(const QJsonObject &spectrum);

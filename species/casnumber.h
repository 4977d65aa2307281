// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Whether cas is exactly a CAS registry number: one to seven digits, a hyphen, two digits, a hyphen
// and the correct check digit.
[[nodiscard]] bool isValidCasNumber(const QString &cas);

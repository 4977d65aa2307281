// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Whether cas is a CAS registry number: one to seven digits, a hyphen, two digits, a hyphen and the
// right check digit, with nothing before or after.
[[nodiscard]] bool isValidCasNumber(const QString &cas);

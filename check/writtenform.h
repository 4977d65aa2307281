// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/jsontext.h"

#include <optional>

// The offset from which on QJsonDocument would write the values of a text in another way, numbers
// as doubles; nothing if it would write these bytes. That is found in a thirtieth of the time of
// writing them.
[[nodiscard]] std::optional<qsizetype> firstOtherByte(const JsonText &text);

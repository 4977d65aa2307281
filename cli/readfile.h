// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

struct InputFile;

// Why the library that reads files refuses this one, in a few words: "no such file".
[[nodiscard]] QByteArray whyUnreadable(const InputFile &input);

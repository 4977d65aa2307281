// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The folder that the user last worked in, kept across runs as one value of the platform's settings
// store. Read and written afresh at every call: a second running editor sees the change at once.

// The stored folder, or the user's home folder if none was stored. It may no longer exist.
[[nodiscard]] QString lastFolder();

// Stores the absolute path of the folder that contains the file filePath, which need not exist. For
// the path of a folder that is its parent.
void setLastFolder(const QString &filePath);

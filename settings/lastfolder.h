// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The folder that the user last worked in, kept across runs in the platform's settings. It is read
// and written at every call: a second editor sees a change at once.

// The stored folder, or the user's home folder without one. It may no longer exist.
[[nodiscard]] QString lastFolder();

// Stores the absolute path of the folder that contains the file filePath, which need not exist. If
// filePath is a folder, that is its parent.
void setLastFolder(const QString &filePath);

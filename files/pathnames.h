// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Whether ".." occurs in a path.
[[nodiscard]] bool hasParentStep(const QString &path);

// A path of the same file without "..". Links up to the last ".." are resolved as the system does;
// the rest does not change. Qt makes a path absolute by cutting "folder/.." out of the text, which
// names another file if the folder is a link. A path that leads nowhere does not change.
[[nodiscard]] QString withoutParentSteps(const QString &path);

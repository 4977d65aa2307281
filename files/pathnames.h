// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Whether a path goes to a parent folder by "..".
[[nodiscard]] bool hasParentStep(const QString &path);

// A path of the same file without "..": up to the last one the system follows the links, what comes
// behind stays as it is. Cutting "folder/.." out of the text, as Qt does wherever it makes a path
// absolute, would name another file if the folder is a link. A path that leads nowhere stays.
[[nodiscard]] QString withoutParentSteps(const QString &path);

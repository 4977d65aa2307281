// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

#include <optional>

// Reports if the editor would write the species or spectrum file in another way after loading it.
// Nothing is said where another finding has named what changes.
void checkSaving(const JsonText &text, bool isSpecies, FindingList &findings);

// The offset of the first byte, in the layout or else in a value, that the editor would write in
// another way after loading the text; nothing if it would write the same bytes. The bytes of a
// picture do not count as long as it is the PNG of one that decodes. This follows what loading and
// saving do without doing it, which would take several times as long as all other checks.
[[nodiscard]] std::optional<qsizetype> placeThatSavingChanges(const JsonText &text, bool isSpecies);

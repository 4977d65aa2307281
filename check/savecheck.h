// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

// Reports if the editor would write the species or spectrum file in another way after loading it.
// The bytes of a picture do not count as long as it stays a PNG of the same pixels. Nothing is said
// where another finding has named what changes.
void checkSaving(const JsonText &text, bool isSpecies, FindingList &findings);

// Whether the text is, byte for byte, what the editor would write after loading it, as far as a
// quick look can tell: false may also mean that it cannot.
[[nodiscard]] bool isCertainlyAsSaved(const JsonText &text, bool isSpecies);

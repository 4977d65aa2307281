// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

// Checks formula, mass and InChI of a profile, each by itself and against each other.
void checkComposition(const JsonValue &species, FindingList &findings);

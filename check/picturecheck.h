// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/findinglist.h"
#include "check/jsontext.h"

// Checks the structure image of a profile; a missing image is no finding.
void checkPicture(const JsonValue &value, FindingList &findings);

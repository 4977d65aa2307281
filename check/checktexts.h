// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The tables of all checks, one a group.
#include "check/checktexts_collection.h"
#include "check/checktexts_file.h"
#include "check/checktexts_profile.h"
#include "check/checktexts_spectrum.h"
#include "check/checktexts_text.h"

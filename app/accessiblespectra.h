// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Describes the area of the spectra to assistive technology: its tab bar, which Qt leaves out, and
// the sub-windows by number and title, as titles may be empty or the same. Only the one on top is
// reported as shown. Call it once for the program; repeating it does nothing.
void describeSpectraToAssistiveTechnology();

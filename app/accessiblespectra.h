// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Lets assistive technology see the area of the spectra as it is: its bar of tabs, which the
// toolkit leaves out, and the sub-windows, whose titles may be empty or the same, each by its
// number and its title; only the one on top as shown. Once for the program; repeating it does
// nothing.
void describeSpectraToAssistiveTechnology();

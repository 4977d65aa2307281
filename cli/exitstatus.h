// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The program's exit statuses. Scripts rely on these numbers.
enum ExitStatus {
    exitFine = 0,
    exitFindings = 1, // findings or differences
    exitUsage = 2,    // the command line is wrong
    exitFailure = 3,  // something could not be read or written
};

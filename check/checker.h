// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/collectioncheck.h"
#include "check/finding.h"

#include <QList>

#include <functional>
#include <vector>

struct CheckOptions {
    FileCheckOptions file;
    int jobs = 1; // files that are checked at the same time
    // Called now and then in the calling thread with the number of finished files. Returning false
    // ends the work without findings.
    std::function<bool(qsizetype done)> progress = {};
};

// Checks files and compares them with each other. The findings are in the order of the inputs and,
// within a file, of their places, whatever the number of jobs.
[[nodiscard]] QList<Finding> checkFiles(const std::vector<CheckInput> &inputs,
                                        const CheckOptions &options);

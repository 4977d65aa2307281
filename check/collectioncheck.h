// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/filecheck.h"

#include <QString>

#include <optional>
#include <vector>

// A file to check.
struct CheckInput {
    QString name;                    // as findings name it
    QString path;                    // as it is opened
    std::optional<QByteArray> bytes; // standard input; read from path if there are none
};

// Compares the files with each other and adds the findings to their results, one for each input in
// the same order: the same species or points twice, databases that are out of date.
void checkCollection(const std::vector<CheckInput> &inputs, const FileCheckOptions &options,
                     std::vector<FileResult> &results);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/arguments.h"
#include "cli/filenames.h"
#include "exchange/energyaxis.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QList>

#include <utility>
#include <variant>

// What one run of "zoravel convert" is to do.
struct ConvertJob {
    InputFile input;
    QByteArray output; // empty for standard output
    QByteArray to;     // empty if it is not known
    QByteArray from;   // empty to find out
    QByteArray spectrum;
    char decimal = 0;
    QByteArrayList columns;
    EnergyChoice energies;
    bool isLenient = false;
    QList<std::pair<QByteArray, QByteArray>> fields;
};

// The job that the command line asks for, or what is wrong with it.
[[nodiscard]] std::variant<ConvertJob, UsageError> convertJob(const Arguments &arguments);

// Why the job has no format to write.
[[nodiscard]] QByteArray whyNoFormat(const ConvertJob &job);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/finding.h"

#include <QByteArray>
#include <QList>

// The findings of a run for programs and people.
struct Report {
    QList<Finding> findings;
    qsizetype files = 0; // that were checked
    QByteArray toolVersion;
};

// The number of findings of each severity.
struct Totals {
    qsizetype errors = 0;
    qsizetype warnings = 0;
    qsizetype notes = 0;
};
[[nodiscard]] Totals totalsOf(const QList<Finding> &findings);

// "2 errors, 1 warning and 0 notes in 8 files".
[[nodiscard]] QByteArray totalsLine(const Report &report);

// One line for each finding in the style of compilers, with the line of the file and a caret if
// that helps, and a line of totals; empty without findings. Coloured for a terminal.
[[nodiscard]] QByteArray textReport(const Report &report, bool coloured);

// An object with the tool's version, totals and all findings.
[[nodiscard]] QByteArray jsonReport(const Report &report);

// Workflow commands of GitHub Actions, errors first. Those beyond its limit for one severity go to
// the log as text and are counted.
[[nodiscard]] QByteArray githubReport(const Report &report);

// SARIF 2.1.0 with the explanations of all checks.
[[nodiscard]] QByteArray sarifReport(const Report &report);

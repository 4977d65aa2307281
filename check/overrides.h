// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/finding.h"

#include <QByteArray>
#include <QList>
#include <QRegularExpression>
#include <QString>

#include <variant>

// Findings that somebody has looked at and found to be right: a text of lines
//
//     GLOB CHECK-ID REASON
//
// with "#" at the start of comments. In a glob "*" and "?" stand for characters of one name, "**"
// for any folders; it is compared with the whole path or with what follows one of its slashes. A
// glob with blanks is put in double quotes. The reason must not be missing. That a file cannot be
// read is never right.
struct Override {
    QRegularExpression files;
    Check check;
    QString text; // the line
    int line;
};

struct OverrideError {
    int line;
    QString message;
};

[[nodiscard]] std::variant<QList<Override>, OverrideError> parseOverrides(const QByteArray &text);

// Removes overridden findings from the list, and appends one for each override that was not needed,
// at its line of the file with this name.
void applyOverrides(const QList<Override> &overrides, const QString &name,
                    QList<Finding> &findings);

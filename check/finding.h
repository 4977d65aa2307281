// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/checks.h"
#include "files/pathnames.h"

#include <QDir>
#include <QString>

#include <compare>

// One finding: what a check says about one place of one file.
struct Finding {
    Check check;
    Severity severity;
    QString path;    // as the file was named
    QString pointer; // RFC 6901; empty for the whole document and where there is no document
    int line = 1;    // from 1
    int column = 1;  // from 1, in characters
    QString message; // what is wrong, in one sentence without a full stop
    QString hint;    // how to mend it; may be empty
    QString source;  // the line of the file and a caret below, where only the place explains it
    bool endsReading = false; // nothing behind this place could be read, nor checked

    // The path without "./", as it compares with paths in a repository.
    [[nodiscard]] QString plainPath() const
    {
        return hasParentStep(path) ? path : QDir::cleanPath(path);
    }
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

// Something in a text of restricted markup that its field in the editor cannot hold.
struct MarkupIssue {
    enum Kind {
        ForeignTag, // removed when the file is saved
        Unbalanced, // subscripts and superscripts
        Lost,       // text that changes with the next edit of the field
        Invisible,
    };
    Kind kind;
    QString message; // a sentence without a full stop
};

// The issues of a text, at most one of each kind: the first. Line feeds are no issue in a field of
// lines, whose text is read with them.
[[nodiscard]] std::vector<MarkupIssue> markupIssues(const QString &text, bool isLines);

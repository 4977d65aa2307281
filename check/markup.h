// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

// Something in a text of restricted markup that the editor's field cannot hold.
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

// The first issue of each kind in a text. In a field of lines a line feed is none.
[[nodiscard]] std::vector<MarkupIssue> markupIssues(const QString &text, bool isLines);

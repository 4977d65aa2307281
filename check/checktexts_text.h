// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/checks.h"

#include <array>

inline constexpr std::array textChecks{
    CheckInfo{
        .check = Check::MarkupTag,
        .id = QLatin1String("markup-tag"),
        .severity = Severity::Warning,
        .summary = QLatin1String("a tag that the editor removes"),
        .why = QLatin1String("Texts may hold <sub>, <sup> and <br>, in small letters. Every other "
                             "tag is dropped when the file is saved."),
        .mend = QLatin1String("Take the tag out, or write it in small letters."),
        .example = QLatin1String("<i>trans</i>-stilbene, H<SUB>2</SUB>O")},
    CheckInfo{
        .check = Check::MarkupUnbalanced,
        .id = QLatin1String("markup-unbalanced"),
        .severity = Severity::Warning,
        .summary = QLatin1String("subscripts or superscripts are not closed in order"),
        .why = QLatin1String("A <sub> or <sup> that is not closed runs on to the end of the text; "
                             "one that is closed without having been opened is dropped."),
        .mend = QLatin1String("Close each tag where its text ends."),
        .example = QLatin1String("H<sub>2O")},
    CheckInfo{.check = Check::TextLost,
              .id = QLatin1String("text-lost"),
              .severity = Severity::Warning,
              .summary = QLatin1String("text that the fields of the editor cannot hold"),
              .why = QLatin1String(
                  "The fields show texts as markup: a \"<\" and what follows it disappears,"
                  " entities become their character, leading and repeated blanks shrink. "
                  "As soon as the field is edited, the text is saved as it was shown."),
              .mend = QLatin1String(
                  "Write \"below\" or a lesser-than sign of another kind for \"<\", the "
                  "character itself for an entity, and single blanks."),
              .example = QLatin1String("\"T < 300 K\", \"A &amp; B\"")},
    CheckInfo{.check = Check::InvisibleCharacter,
              .id = QLatin1String("invisible-character"),
              .severity = Severity::Warning,
              .summary = QLatin1String("control or invisible characters in a text"),
              .why =
                  QLatin1String("They come with text that was copied from documents and web pages, "
                                "cannot be seen, and make searches and comparisons fail."),
              .mend = QLatin1String("Type the text anew."),
              .example = QLatin1String("\"benzene\" with a zero-width space behind it")},
    CheckInfo{.check = Check::DecimalComma,
              .id = QLatin1String("decimal-comma"),
              .severity = Severity::Error,
              .summary = QLatin1String("a decimal comma"),
              .why = QLatin1String(
                  "Numbers have a decimal point in the collection. Programs read \"9,24\" "
                  "as 9, as 924 or not at all."),
              .mend = QLatin1String("Write a point."),
              .example = QLatin1String("\"AIE\": \"9,24\"")},
};

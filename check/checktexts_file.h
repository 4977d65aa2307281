// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/checks.h"

#include <array>

inline constexpr std::array fileChecks{
    CheckInfo{
        .check = Check::Unreadable,
        .id = QLatin1String("unreadable"),
        .severity = Severity::Error,
        .summary = QLatin1String("the file cannot be read"),
        .why = QLatin1String("The file does not exist, is no regular file, may not be read, breaks "
                             "off while it is read, or is larger than the 256 MB that the editor "
                             "reads. A database may be larger, but none of its entries."),
        .mend = QLatin1String("Look at the path, at the file's rights and at the disk. A link may "
                              "lead to a file that is gone."),
        .example = QLatin1String("error: Cannot be read: no such file [unreadable]")},
    CheckInfo{
        .check = Check::NotUtf8,
        .id = QLatin1String("not-utf8"),
        .severity = Severity::Error,
        .summary = QLatin1String("the file is not UTF-8"),
        .why = QLatin1String("JSON is UTF-8. The editor cannot open a file with any other byte in "
                             "it, even if only one accented letter is wrong."),
        .mend = QLatin1String("Convert the file, for example with: iconv -f WINDOWS-1252 -t UTF-8 "
                              "old.json -o new.json"),
        .example =
            QLatin1String("The byte 0xE9 alone, which is an e with an acute accent in old Windows"
                          " files.")},
    CheckInfo{
        .check = Check::JsonSyntax,
        .id = QLatin1String("json-syntax"),
        .severity = Severity::Error,
        .summary = QLatin1String("the file is no JSON"),
        .why =
            QLatin1String("One misplaced comma or quote makes a whole file unreadable; the editor"
                          " then says only that it is no species file. Where an editor of texts "
                          "let a line break or a tab into a string, the entry editor is more "
                          "forgiving than other programs, and the database would still break "
                          "them."),
        .mend =
            QLatin1String("Mend the place that the caret shows; what is wrong may also stand just"
                          " before it."),
        .example = QLatin1String("\"AIE\": \"9.24\",}      (a comma before the closing brace)")},
    CheckInfo{.check = Check::NumberRange,
              .id = QLatin1String("number-range"),
              .severity = Severity::Error,
              .summary = QLatin1String("a number is not finite"),
              .why = QLatin1String(
                  "Numbers are kept as 64-bit floating-point values. The editor refuses a"
                  " whole file in which one is too large, or so close to zero that it "
                  "would become zero."),
              .mend = QLatin1String("Correct the exponent, or take the point out."),
              .example = QLatin1String("\"I\": [1.0, 2e999]")},
    CheckInfo{
        .check = Check::DuplicateKey,
        .id = QLatin1String("duplicate-key"),
        .severity = Severity::Error,
        .summary = QLatin1String("a key is written twice in one object"),
        .why = QLatin1String("The editor keeps only the last value of a key; what stands under the "
                             "others is gone with the next save. This is what a merge of two "
                             "versions often leaves behind."),
        .mend = QLatin1String("Keep one of the two."),
        .example = QLatin1String("\"AIE\": \"9.24\", \"AIE\": \"9.25\"")},
    CheckInfo{.check = Check::WrongType,
              .id = QLatin1String("wrong-type"),
              .severity = Severity::Error,
              .summary = QLatin1String("the file's \"Type\" is none of the collection's"),
              .why = QLatin1String(
                  "By its \"Type\" a file says what it is: \"Species v1\", \"Spectrum v1\" or "
                  "\"Database v1\", in exactly these letters. The editor opens nothing "
                  "else, and the compilation stops at it."),
              .mend = QLatin1String(
                  "Correct \"Type\", or keep other JSON files out of the folders that are "
                  "checked."),
              .example = QLatin1String("\"Type\": \"species v1\"   (a small s)")},
    CheckInfo{
        .check = Check::UnknownKey,
        .id = QLatin1String("unknown-key"),
        .severity = Severity::Warning,
        .summary = QLatin1String("the editor does not know this key"),
        .why = QLatin1String("What stands under a key that the editor does not know is gone after "
                             "the next save. Often it is a slip in the name of a known one."),
        .mend = QLatin1String("Correct the name, or move the text into a comment."),
        .example = QLatin1String("\"Formular\": \"C<sub>6</sub>H<sub>6</sub>\"")},
    CheckInfo{
        .check = Check::ValueType,
        .id = QLatin1String("value-type"),
        .severity = Severity::Error,
        .summary = QLatin1String("a value is not of the kind that the editor reads"),
        .why = QLatin1String("The editor reads a number where it expects a text as an empty text, "
                             "and a text where it expects a number as 0, without a word. The next "
                             "save writes that."),
        .mend = QLatin1String("Write texts in quotes and numbers without."),
        .example = QLatin1String("\"AIE\": 9.24   (energies of a profile are texts: \"9.24\")")},
    CheckInfo{
        .check = Check::DigitsLost,
        .id = QLatin1String("digits-lost"),
        .severity = Severity::Warning,
        .summary = QLatin1String("points have more digits than the editor keeps"),
        .why =
            QLatin1String("Energies and intensities are loaded with six significant digits. More "
                          "are gone after the next save."),
        .mend = QLatin1String("Decide yourself what to round: six digits are 0.1 meV at 12 eV. For "
                              "finer scans keep the original data elsewhere, too."),
        .example = QLatin1String("\"E\": [12.3456789] becomes 12.3457")},
    CheckInfo{
        .check = Check::WouldChange,
        .id = QLatin1String("would-change-on-save"),
        .severity = Severity::Note,
        .summary = QLatin1String("the editor would write this file in another way"),
        .why = QLatin1String("Opening and saving the file without any edit changes it, so that the "
                             "next curator's small correction is a large difference in the version "
                             "history."),
        .mend = QLatin1String("zoravel format --in-place FILE writes it as the editor does, with "
                              "--lossy also where something gets lost."),
        .example =
            QLatin1String("Another indentation, another order of keys, 10.0 instead of 10.")},
};

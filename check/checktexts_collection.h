// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/checks.h"

#include <array>

inline constexpr std::array collectionChecks{
    CheckInfo{.check = Check::SameCas,
              .id = QLatin1String("same-cas"),
              .severity = Severity::Warning,
              .summary = QLatin1String("two species files have the same CAS number"),
              .why = QLatin1String(
                  "One species has one file; otherwise its spectra are scattered, and one"
                  " of the two is forgotten in the next correction."),
              .mend = QLatin1String("Join the files, or correct the number that is wrong."),
              .example = QLatin1String("butane.json and n-butane.json, both 106-97-8")},
    CheckInfo{.check = Check::SameInchi,
              .id = QLatin1String("same-inchi"),
              .severity = Severity::Warning,
              .summary = QLatin1String("two species files have the same InChI"),
              .why = QLatin1String(
                  "One species has one file. This also finds an InChI that stayed behind "
                  "when a file was copied as a pattern for a new one."),
              .mend = QLatin1String("Join the files, or correct the InChI that is wrong."),
              .example = QLatin1String("benzene.json and toluene.json, both InChI=1S/C6H6/...")},
    CheckInfo{.check = Check::SameCid,
              .id = QLatin1String("same-cid"),
              .severity = Severity::Warning,
              .summary = QLatin1String("two species files have the same PubChem number"),
              .why = QLatin1String(
                  "One species has one file. This also finds a number that stayed behind "
                  "when a file was copied as a pattern for a new one."),
              .mend = QLatin1String("Join the files, or correct the number that is wrong."),
              .example = QLatin1String("benzene.json and toluene.json, both 241")},
    CheckInfo{.check = Check::SameName,
              .id = QLatin1String("same-name"),
              .severity = Severity::Warning,
              .summary = QLatin1String("two species files have the same name"),
              .why = QLatin1String(
                  "Readers cannot tell the entries apart. Case, blanks and markup do not "
                  "count."),
              .mend = QLatin1String("Join the files, or give isomers and ions names that differ."),
              .example = QLatin1String("Butane in butane.json and in isobutane.json")},
    CheckInfo{.check = Check::SamePoints,
              .id = QLatin1String("same-points"),
              .severity = Severity::Warning,
              .summary = QLatin1String("the same points stand twice in the collection"),
              .why = QLatin1String(
                  "A spectrum was copied and not replaced, or entered twice. Only spectra"
                  " of at least five points are compared."),
              .mend = QLatin1String("Delete one of the two."),
              .example = QLatin1String("Dataset1 of butane.json and Dataset2 of isobutane.json")},
    CheckInfo{
        .check = Check::DatabaseStale,
        .id = QLatin1String("database-stale"),
        .severity = Severity::Warning,
        .summary = QLatin1String("a database does not hold what the species files hold"),
        .why =
            QLatin1String("The database was compiled before the last change of its species files,"
                          " or from other files. It is compared with all species files that are "
                          "checked in the same run."),
        .mend =
            QLatin1String("zoravel compile -o DATABASE FOLDER writes it anew; name the folder of "
                          "its species files when you check it."),
        .example = QLatin1String("database.json, and one of its species files with a newer AIE")},
    CheckInfo{.check = Check::UnusedOverride,
              .id = QLatin1String("unused-override"),
              .severity = Severity::Warning,
              .summary = QLatin1String("an override that no finding needs any more"),
              .why =
                  QLatin1String("Overrides silence findings that were looked at and found right. "
                                "One that silences nothing hides the next finding of its kind "
                                "in these files."),
              .mend = QLatin1String("Delete the line. Where only a part of the collection is "
                                    "checked, use --skip unused-override."),
              .example = QLatin1String("lead.json mass-formula measured on another isotopic "
                                       "mixture   (the mass has been corrected since)")},
};

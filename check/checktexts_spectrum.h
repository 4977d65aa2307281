// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/checks.h"

#include <array>

inline constexpr std::array spectrumChecks{
    CheckInfo{.check = Check::NoPoints,
              .id = QLatin1String("no-points"),
              .severity = Severity::Warning,
              .summary = QLatin1String("a spectrum without points"),
              .why = QLatin1String("There is nothing to show. Often an import failed."),
              .mend = QLatin1String("Enter the points, or delete the spectrum."),
              .example = QLatin1String("\"E\": [], \"I\": []")},
    CheckInfo{
        .check = Check::FewPoints,
        .id = QLatin1String("few-points"),
        .severity = Severity::Warning,
        .summary = QLatin1String("a curve of fewer than five points"),
        .why =
            QLatin1String("A curve through so few points shows no spectrum. Line spectra may have"
                          " any number."),
        .mend = QLatin1String("Enter the remaining points, or mark it as a line spectrum."),
        .example = QLatin1String("\"E\": [9.2, 9.3], \"I\": [0, 1], \"LineSpectrum\": false")},
    CheckInfo{.check = Check::UnequalArrays,
              .id = QLatin1String("unequal-arrays"),
              .severity = Severity::Error,
              .summary = QLatin1String("\"E\" and \"I\" differ in length"),
              .why = QLatin1String(
                  "Each energy belongs to the intensity at the same place. If the numbers"
                  " of both differ, the editor loads no point at all, without a word."),
              .mend = QLatin1String("Find the place where one is missing or too many."),
              .example = QLatin1String("\"E\": [9.1, 9.2, 9.3], \"I\": [10, 20]")},
    CheckInfo{.check = Check::NotAscending,
              .id = QLatin1String("not-ascending"),
              .severity = Severity::Error,
              .summary = QLatin1String("the energies of a curve do not ascend"),
              .why = QLatin1String(
                  "Resampling and reading off values take the energies as ascending; "
                  "otherwise points are passed over. In a line spectrum it is a note, as "
                  "the order of lines does not matter there."),
              .mend = QLatin1String("Sort the points, or turn a descending scan around."),
              .example = QLatin1String("9.20, 9.21, 9.12, 9.23")},
    CheckInfo{
        .check = Check::RepeatedEnergy,
        .id = QLatin1String("repeated-energy"),
        .severity = Severity::Warning,
        .summary = QLatin1String("an energy is repeated in a curve"),
        .why = QLatin1String("A curve has one value at each energy. At a repeated one resampling "
                             "divides by zero. Rounding to six digits may have made two energies "
                             "equal, or two scans were joined."),
        .mend = QLatin1String("Average the points of one energy."),
        .example = QLatin1String("9.20, 9.21, 9.21, 9.22")},
    CheckInfo{
        .check = Check::AllZero,
        .id = QLatin1String("all-zero"),
        .severity = Severity::Warning,
        .summary = QLatin1String("all intensities are zero"),
        .why = QLatin1String("There is no signal. Often a column of the wrong name was imported."),
        .mend = QLatin1String("Enter the intensities."),
        .example = QLatin1String("\"I\": [0, 0, 0]")},
    CheckInfo{
        .check = Check::IntensitySpike,
        .id = QLatin1String("intensity-spike"),
        .severity = Severity::Warning,
        .summary = QLatin1String("one intensity is far above all others of a curve"),
        .why = QLatin1String("It is 100,000 times its neighbours or more, and a thousand times any "
                             "other: a slip of the exponent or of the decimal point. Normalised to "
                             "it, the rest of the spectrum is a flat line."),
        .mend = QLatin1String("Compare the point with the source, or delete it."),
        .example = QLatin1String("\"I\": [2.1, 2.4, 2.5e6, 2.2]")},
    CheckInfo{
        .check = Check::EnergyUnit,
        .id = QLatin1String("energy-unit"),
        .severity = Severity::Warning,
        .summary = QLatin1String("the energies look like another unit than eV"),
        .why = QLatin1String("Photon energies are kept in eV. Values of this size look like "
                             "nanometres, wavenumbers or meV: converted from that unit they fall "
                             "where ionisation energies are."),
        .mend =
            QLatin1String("Convert: E/eV = 1239.84 / (wavelength/nm) = wavenumber/cm-1 / 8065.54 "
                          "= E/meV / 1000."),
        .example = QLatin1String("130.1, 130.2, 130.3 (nm)")},
    CheckInfo{.check = Check::EnergyGap,
              .id = QLatin1String("energy-gap"),
              .severity = Severity::Warning,
              .summary = QLatin1String("a gap far above the usual step"),
              .why = QLatin1String(
                  "One step is more than 25 times as wide as most: a part of the scan may"
                  " be missing, or a digit is wrong in an energy."),
              .mend = QLatin1String("Look at the points at both ends of the gap."),
              .example = QLatin1String("9.21, 9.22, 9.93, 9.94")},
    CheckInfo{.check = Check::BelowIonisation,
              .id = QLatin1String("below-ionisation"),
              .severity = Severity::Warning,
              .summary = QLatin1String("no point above the ionisation energy"),
              .why = QLatin1String(
                  "Below the adiabatic ionisation energy of its species a photoionisation"
                  " spectrum shows no ions. The energies, or those of the profile, may be"
                  " wrong."),
              .mend = QLatin1String("Compare the energies with AIE and VIE of the profile."),
              .example = QLatin1String("Points from 6 to 7 eV, AIE 9.24 eV")},
    CheckInfo{
        .check = Check::TypeIndex,
        .id = QLatin1String("type-index"),
        .severity = Severity::Error,
        .summary = QLatin1String("a spectrum type that does not exist"),
        .why = QLatin1String("\"SpectType\" is the index in the list of types, 0 to 5. The editor "
                             "shows no type for any other number."),
        .mend = QLatin1String("0 ms-TPES, 1 ms-SPES, 2 TPES, 3 PES, 4 FC simulation, 5 PIS."),
        .example = QLatin1String("\"SpectType\": 6")},
    CheckInfo{.check = Check::ForeignField,
              .id = QLatin1String("foreign-field"),
              .severity = Severity::Warning,
              .summary = QLatin1String("a field that belongs to the other kind of spectra"),
              .why = QLatin1String(
                  "Measurements have Source, Resolution and Normalization; simulations "
                  "(type 4) have LevelOfTheory, ConvolutionFWHM and AIE. The editor drops"
                  " the fields of the other kind when it loads a spectrum."),
              .mend = QLatin1String("Correct the type, or move the text to a field of this kind."),
              .example = QLatin1String("\"SpectType\": 3, \"LevelOfTheory\": \"B3LYP\"")},
    CheckInfo{.check = Check::MissingTitle,
              .id = QLatin1String("missing-title"),
              .severity = Severity::Warning,
              .summary = QLatin1String("a spectrum without a title"),
              .why = QLatin1String("The title names the spectrum in lists and tabs."),
              .mend = QLatin1String("Enter one."),
              .example = QLatin1String("\"Title\": \"\"")},
    CheckInfo{.check = Check::MissingUploader,
              .id = QLatin1String("missing-uploader"),
              .severity = Severity::Note,
              .summary = QLatin1String("a spectrum without an uploader"),
              .why = QLatin1String("Nobody can be asked about it."),
              .mend = QLatin1String("Enter the name of the person or group."),
              .example = QLatin1String("\"Uploader\": \"\"")},
    CheckInfo{
        .check = Check::MissingReference,
        .id = QLatin1String("missing-reference"),
        .severity = Severity::Note,
        .summary = QLatin1String("a spectrum that does not say where it comes from"),
        .why = QLatin1String("DOI, further citations and comments are all empty."),
        .mend = QLatin1String("Enter the DOI of the publication, or say in the comments where the "
                              "data are from."),
        .example =
            QLatin1String("\"DOI\": \"\", \"FurtherRefs\": \"\", \"FurtherComments\": \"\"")},
    CheckInfo{.check = Check::TemperatureNumber,
              .id = QLatin1String("temperature-number"),
              .severity = Severity::Warning,
              .summary = QLatin1String("a temperature does not begin with a number"),
              .why = QLatin1String(
                  "The temperature is read as a number in K. Words before it, or a letter "
                  "in place of a digit, leave it out of tables. A sign such as ~ or < may "
                  "stand before it, an uncertainty, a range or a unit behind it."),
              .mend = QLatin1String("Write the number first, and words into the comments."),
              .example = QLatin1String("\"T\": \"room temperature\"")},
    CheckInfo{.check = Check::DoiForm,
              .id = QLatin1String("doi-form"),
              .severity = Severity::Warning,
              .summary = QLatin1String("not in the form of a DOI"),
              .why =
                  QLatin1String("A DOI begins with 10., a number, and a slash. Links are made by "
                                "putting the resolver's address before it."),
              .mend = QLatin1String("Write the DOI alone."),
              .example = QLatin1String("\"DOI\": \"J. Chem. Phys. 120, 11\"")},
    CheckInfo{.check = Check::DateForm,
              .id = QLatin1String("date-form"),
              .severity = Severity::Warning,
              .summary =
                  QLatin1String("a date that is not written as yyyy-MM-dd or does not exist"),
              .why = QLatin1String("Lists are sorted by it, which works only in this form."),
              .mend = QLatin1String("Write year, month and day with hyphens."),
              .example = QLatin1String("\"CreatedDate\": \"21.11.2026\", \"2026-02-30\"")},
    CheckInfo{.check = Check::DateFuture,
              .id = QLatin1String("date-future"),
              .severity = Severity::Warning,
              .summary = QLatin1String("a date in the future"),
              .why = QLatin1String(
                  "A spectrum cannot have been entered or measured after today. Often the"
                  " clock of a computer was wrong, or a digit is."),
              .mend = QLatin1String("Correct the date."),
              .example = QLatin1String("\"CreatedDate\": \"2062-11-21\"")},
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/checks.h"

#include <array>

inline constexpr std::array profileChecks{
    CheckInfo{.check = Check::CasForm,
              .id = QLatin1String("cas-form"),
              .severity = Severity::Error,
              .summary = QLatin1String("not in the form of a CAS number"),
              .why = QLatin1String(
                  "A CAS number has up to seven digits, a hyphen, two digits, a hyphen "
                  "and one check digit. The editor fetches the structure's image by it."),
              .mend = QLatin1String(
                  "Copy the number from its source, with plain hyphens and nothing around"
                  " it."),
              .example = QLatin1String("\"CAS\": \"71 43 2\"")},
    CheckInfo{.check = Check::CasCheckDigit,
              .id = QLatin1String("cas-check-digit"),
              .severity = Severity::Error,
              .summary = QLatin1String("the check digit of the CAS number is wrong"),
              .why = QLatin1String(
                  "The last digit follows from the others: a wrong one means that a digit"
                  " was mistyped or that two were exchanged."),
              .mend = QLatin1String(
                  "Look the number up. The digit that the message expects is right only "
                  "if all the others are."),
              .example = QLatin1String("106-97-3: check digit 3, expected 8")},
    CheckInfo{.check = Check::FormulaSyntax,
              .id = QLatin1String("formula-syntax"),
              .severity = Severity::Error,
              .summary = QLatin1String("the sum formula cannot be read"),
              .why = QLatin1String(
                  "A formula consists of elements and counts, may have brackets, a "
                  "charge, isotopes such as <sup>13</sup>C, D and T, and parts joined by "
                  "a dot."),
              .mend = QLatin1String("Close brackets, and take words and other signs out."),
              .example = QLatin1String("\"C<sub>6</sub>H<sub>6</sub> (liq.)\"")},
    CheckInfo{
        .check = Check::FormulaElement,
        .id = QLatin1String("formula-element"),
        .severity = Severity::Error,
        .summary = QLatin1String("an element that does not exist in the sum formula"),
        .why = QLatin1String("Mostly a slip of the shift key, or an abbreviation such as Me or Ph, "
                             "which cannot be searched for."),
        .mend = QLatin1String("Write the elements' symbols."),
        .example = QLatin1String("\"CuCi<sub>2</sub>\"")},
    CheckInfo{
        .check = Check::FormulaUnicode,
        .id = QLatin1String("formula-unicode"),
        .severity = Severity::Warning,
        .summary = QLatin1String("subscripts of the sum formula are characters of their own"),
        .why = QLatin1String("Unicode has small digits as characters. They look like subscripts, "
                             "but other programs and searches do not find the formula by them: "
                             "everywhere else in the collection a subscript is markup."),
        .mend = QLatin1String("Write plain digits and make them subscripts."),
        .example = QLatin1String("H\\u2082O instead of H<sub>2</sub>O")},
    CheckInfo{
        .check = Check::MassFormula,
        .id = QLatin1String("mass-formula"),
        .severity = Severity::Error,
        .summary = QLatin1String("the mass does not belong to the sum formula"),
        .why =
            QLatin1String("The mass was compared with the average, the monoisotopic and the "
                          "nominal mass of the formula. It agrees with none of them within the "
                          "range of the official atomic weights since 1961 and the mass' last "
                          "digit, so one of the two is wrong. A difference of less than 0.1 % is "
                          "a warning. Where there is no formula that can be read, the InChI stands "
                          "in for it."),
        .mend = QLatin1String("Correct the mass or the formula. The mass is a number in unified "
                              "atomic mass units."),
        .example = QLatin1String("C6H6 with 87.11 instead of 78.11")},
    CheckInfo{
        .check = Check::FormulaInchi,
        .id = QLatin1String("formula-inchi"),
        .severity = Severity::Error,
        .summary = QLatin1String("the sum formula and the InChI name different compositions"),
        .why = QLatin1String("The InChI begins with the sum formula, to which its layers /p and /q "
                             "add protons and charges, and /i isotopes. If they differ, one of the "
                             "two belongs to another species."),
        .mend = QLatin1String("Take both from one source."),
        .example = QLatin1String("C6H6 with InChI=1S/C6H12/..., D2O with InChI=1S/H2O/h1H2")},
    CheckInfo{
        .check = Check::InchiForm,
        .id = QLatin1String("inchi-form"),
        .severity = Severity::Error,
        .summary = QLatin1String("the InChI contradicts itself"),
        .why =
            QLatin1String("The layers of an InChI depend on each other: every atom of the formula"
                          " stands in the connections, and the hydrogen layers hold as many "
                          "hydrogen atoms as the formula. A slip in copying breaks that. A "
                          "standard InChI, 1S, has no layer /f or /r."),
        .mend = QLatin1String("Copy the InChI again, as a whole."),
        .example = QLatin1String("InChI=1S/CH4O/c1-2/h2H,1H2 (three of four hydrogen atoms)")},
    CheckInfo{
        .check = Check::PubchemCid,
        .id = QLatin1String("pubchem-cid"),
        .severity = Severity::Error,
        .summary = QLatin1String("not a PubChem compound number"),
        .why = QLatin1String("A CID is a positive whole number. Addresses of pages are built from "
                             "it."),
        .mend = QLatin1String("Write the digits only."),
        .example = QLatin1String("\"PubChem\": \"CID 241\"")},
    CheckInfo{.check = Check::EnergyNumber,
              .id = QLatin1String("energy-number"),
              .severity = Severity::Error,
              .summary = QLatin1String("an ionisation energy is not a number"),
              .why = QLatin1String(
                  "Programs that use the collection read AIE and VIE as numbers in eV, with "
                  "the uncertainty of the last digits in brackets, if there is one: "
                  "9.24(3). A number with more around it, such as a unit, is a warning."),
              .mend =
                  QLatin1String("Write the number, and its uncertainty in brackets; sources belong "
                                "into the comment beside it."),
              .example = QLatin1String("\"AIE\": \"9.24 eV\"")},
    CheckInfo{
        .check = Check::EnergyRange,
        .id = QLatin1String("energy-range"),
        .severity = Severity::Warning,
        .summary = QLatin1String("an ionisation energy outside 3.5 to 25 eV"),
        .why = QLatin1String("The lowest ionisation energy of all species is near that of caesium, "
                             "3.89 eV, the highest that of helium, 24.59 eV. Values outside were "
                             "mostly entered in another unit or with a slip of the decimal point."),
        .mend = QLatin1String("Convert the value to eV."),
        .example = QLatin1String("\"AIE\": \"92.4\"")},
    CheckInfo{
        .check = Check::VieBelowAie,
        .id = QLatin1String("vie-below-aie"),
        .severity = Severity::Error,
        .summary = QLatin1String("the vertical ionisation energy is below the adiabatic one"),
        .why = QLatin1String("The adiabatic energy leads to the lowest level of the ion, so the "
                             "vertical one cannot be lower. Differences within the rounding of the "
                             "two numbers do not count."),
        .mend = QLatin1String("The two may have been exchanged, or one of them mistyped."),
        .example = QLatin1String("AIE 9.95 with VIE 9.24")},
    CheckInfo{
        .check = Check::ImageDecode,
        .id = QLatin1String("image-decode"),
        .severity = Severity::Error,
        .summary = QLatin1String("the structure image cannot be read"),
        .why = QLatin1String("The editor drops an image that it cannot decode, without a word, and "
                             "the next save writes none."),
        .mend = QLatin1String("Paste or download the image again."),
        .example = QLatin1String("A text that was cut off, or that is the path of an image file")},
    CheckInfo{.check = Check::ImageSize,
              .id = QLatin1String("image-size"),
              .severity = Severity::Warning,
              .summary = QLatin1String("the structure image is unusually large or small"),
              .why = QLatin1String(
                  "Images of structures have some hundred pixels a side. A very large one"
                  " makes every file that holds it slow to load; a very small one cannot "
                  "be read."),
              .mend = QLatin1String("Scale the image: sides of 16 to 4,096 pixels, at most 1 MB."),
              .example = QLatin1String("A photograph of 6,000 by 4,000 pixels")},
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <map>
#include <utility>
#include <variant>

// The contents of an InChI for a species as a whole.
struct Inchi {
    std::map<int, int> atoms; // by atomic number, those of the layer /p counted
    int charge = 0;           // of the layers /q and /p
    // The atoms in layer /i, by atomic and mass number; atoms counts them too.
    std::map<std::pair<int, int>, int> isotopes;
};

struct InchiError {
    QString message; // a sentence without a full stop
};

// Reads an InChI of version 1 and checks its layers against each other: the formula is in Hill's
// order, the connections name every heavy atom and no bond twice, the hydrogen layers hold the
// formula's hydrogen, stereo layers name existing atoms and bonds, layers have one part for each
// component, and a standard InChI has standard layers only. It does not check that the InChI is the
// canonical one.
[[nodiscard]] std::variant<Inchi, InchiError> parseInchi(const QString &text);

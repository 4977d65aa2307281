// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <map>
#include <utility>
#include <variant>

// What an InChI says of a species as a whole.
struct Inchi {
    std::map<int, int> atoms; // by atomic number, those of the layer /p counted
    int charge = 0;           // of the layers /q and /p
    // Atoms that the layer /i names, by atomic and mass number; they are counted above, too.
    std::map<std::pair<int, int>, int> isotopes;
};

struct InchiError {
    QString message; // a sentence without a full stop
};

// Reads an InChI of version 1 and checks its layers against each other: the formula is in Hill's
// order, the connections name every heavy atom and no bond twice, the hydrogen layers hold the
// formula's hydrogen, stereo layers name atoms and bonds that exist, layers with a part for each
// component have as many as there are components, and a standard InChI has standard layers only.
// Whether it is the canonical one is not checked.
[[nodiscard]] std::variant<Inchi, InchiError> parseInchi(const QString &text);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/energyaxis.h"
#include "exchange/exchanged.h"

#include <QByteArray>

#include <variant>

struct JcampReading {
    int block = 0;              // of the data blocks of the file, from 1; 0 for the only one
    EnergyChoice energies = {}; // settles what XUNITS says
    bool isLenient = false;     // takes ordinates whose check value on the next line is another
};

// Reads a spectrum of JCAMP-DX: XYDATA of the form (X++(Y..Y)) with ordinates in any of the forms
// AFFN, PAC, SQZ, DIF and DUP, XYPOINTS and peak tables of the form (XY..XY). Everything that the
// file says twice is compared: abscissas on the lines, check values, FIRSTX, LASTX and NPOINTS; the
// file is refused where they disagree. Abscissas in another unit become energies in eV; without one
// that is named or chosen the file is refused. Labels that a spectrum object has no field for go
// into its comments.
[[nodiscard]] std::variant<ExchangedSpectrum, ExchangeError>
readJcamp(const QByteArray &bytes, const JcampReading &reading = {});

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

// Reads a spectrum from JCAMP-DX: XYDATA of the form (X++(Y..Y)) with ordinates in AFFN, PAC, SQZ,
// DIF or DUP form, XYPOINTS and peak tables of the form (XY..XY). Redundant values are compared:
// abscissas on the lines, check values, FIRSTX, LASTX and NPOINTS; the file is refused if they
// disagree. Abscissas in another unit become energies in eV; without a named or chosen unit the
// file is refused. Labels without a field in the spectrum object go into its comments.
[[nodiscard]] std::variant<ExchangedSpectrum, ExchangeError>
readJcamp(const QByteArray &bytes, const JcampReading &reading = {});

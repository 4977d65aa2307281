// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/exchanged.h"

#include <QByteArray>

#include <variant>

// Reads a spectrum of JCAMP-DX: XYDATA of the form (X++(Y..Y)) with ordinates in any of the forms
// AFFN, PAC, SQZ, DIF and DUP, XYPOINTS and peak tables of the form (XY..XY). Everything that the
// file says twice is compared: abscissas on the lines, check values, FIRSTX, LASTX and NPOINTS; the
// file is refused where they disagree. Abscissas in wave numbers or wavelengths become energies in
// eV. Labels that a spectrum object has no field for go into its comments.
//
// block counts the data blocks of the file from 1; 0 stands for the only one.
[[nodiscard]] std::variant<ExchangedSpectrum, ExchangeError> readJcamp(const QByteArray &bytes,
                                                                       int block = 0);

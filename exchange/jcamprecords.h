// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "exchange/exchanged.h"

#include <QByteArray>
#include <QList>

#include <variant>

// The labelled data records of a JCAMP-DX file.

struct JcampRecord {
    qsizetype line;       // from 1
    QByteArray label;     // as it is written
    QByteArray name;      // the same for comparisons: capitals, without blanks, "-", "/" and "_"
    QByteArrayList lines; // of the value, without comments
};

struct JcampBlock {
    QList<JcampRecord> records; // without TITLE's block mates "BLOCKS" and "END"
    qsizetype comments = 0;     // how many "$$ ..." there were

    // The record with this name; null if there is none.
    [[nodiscard]] const JcampRecord *find(const char *name) const;
    // Its value on one line; empty if there is none.
    [[nodiscard]] QByteArray value(const char *name) const;
};

// The blocks with data, from TITLE to END, without those that only link others.
[[nodiscard]] std::variant<QList<JcampBlock>, ExchangeError> jcampBlocks(const QByteArray &bytes);

// The block's record with the table of points; null if there is none.
[[nodiscard]] const JcampRecord *pointTable(const JcampBlock &block);

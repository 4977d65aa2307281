// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <optional>

class QRandomGenerator;

// A file with one fault.
struct Variant {
    QByteArray bytes;
    QString fault; // what was done to the file, for the log
    // What the bytes say, where it is known without parsing them.
    std::optional<QJsonObject> object;
};

using VariantUser = std::function<void(const Variant &variant)>;

// The file cut off after 0, step, 2 * step, ... bytes.
void forEachCut(const QByteArray &file, qsizetype step, const VariantUser &use);

// The file with one byte replaced, count times: a byte of a class (digits, letters, quotes,
// brackets,
// ...) that is drawn first, so that the rare ones have their turn, becomes any other byte.
void forEachFlip(const QByteArray &file, int count, QRandomGenerator &random,
                 const VariantUser &use);

// The file with one member of its object, or of an object right in that, removed, given twice, or
// of another type or value, in all ways in turn.
void forEachKeyFault(const QJsonObject &file, const VariantUser &use);

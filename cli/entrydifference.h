// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/pointdifference.h"

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

struct FieldDifference {
    QString key;
    QJsonValue before; // undefined where there is no such key
    QJsonValue after;
    bool isDescribed = false; // the values say in words what stands there
};

struct SpectrumDifference {
    QByteArray before; // its key in the file; empty if it was added
    QByteArray after;  // empty if it was removed
    QByteArray title;
    qsizetype count = 0; // of the points of one that was added or removed
    PointDifference points;
    QList<FieldDifference> fields;
};

// The differences of two entries; empty lists if they are equal.
struct EntryDifference {
    QList<FieldDifference> profile;
    QList<FieldDifference> rest; // what stands besides the profile and the spectra
    QList<SpectrumDifference> spectra;

    [[nodiscard]] bool isNone() const
    {
        return profile.isEmpty() && rest.isEmpty() && spectra.isEmpty();
    }
};

// Compares the objects of two species files, two spectrum files or two entries of databases.
[[nodiscard]] EntryDifference differenceBetween(const QJsonObject &before,
                                                const QJsonObject &after);

// The members that differ, in the order of their keys.
[[nodiscard]] QList<FieldDifference> fieldDifferences(const QJsonObject &before,
                                                      const QJsonObject &after);

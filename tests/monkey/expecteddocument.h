// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QImage>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QPointF>
#include <QString>
#include <QStringList>

// The expected document, kept without the editor's code: plain, slow, and straight from the
// description of the formats.

struct ExpectedSpectrum {
    // A new one, created today.
    ExpectedSpectrum();
    explicit ExpectedSpectrum(const QJsonObject &object);

    [[nodiscard]] QJsonObject toJson() const;
    [[nodiscard]] QList<QPointF> points() const;
    // The key of the text that the field of this name is bound to for the type as it is.
    [[nodiscard]] QString keyOf(const QString &field) const;

    // The editor's text is read.
    void read();
    void normalise();
    // Not for line spectra.
    void resample();

    QMap<QString, QString> texts; // by JSON key
    int type = 0;
    bool isLine = false;
    QStringList lines; // as last read
    QString editorText;
    bool isPending = false; // whether editorText is still to be read

private:
    void rewrite(const QStringList &newLines);
};

struct ExpectedDocument {
    [[nodiscard]] QJsonObject toJson() const;
    void clear();
    void load(const QJsonObject &file);
    void setImage(const QImage &image);

    QMap<QString, QString> texts; // by JSON key
    double mass = 0;
    bool hasImageKey = false; // a record that never had an image has no key for it
    QImage image;
    QList<ExpectedSpectrum> spectra;
};

// The differences between two species files' objects, or an empty text. Images are compared by
// pixels.
[[nodiscard]] QString difference(const QJsonObject &actual, const QJsonObject &expected);

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "species/mystandarditemmodel.h"
#include "spectrum/spectrumobject.h"

#include <QJsonObject>
#include <QList>
#include <QPointF>
#include <QStringList>

class QPlainTextEdit;
class QTimer;

inline constexpr int spectrumColumnCount = 16;

// One spectrum of a species entry: sixteen metadata columns in one row, edited through the spectrum
// window's data mapper, and the list of its point lines, which follows the text of a point editor
// that it does not own and that may be null. The editor is read two seconds after its last change;
// until then the points are older than the text. Loading and writing never fail: a missing or
// mistyped value is an empty text, 0, false or no point.
class SpectrumModel : public MyStandardItemModel
{
    Q_OBJECT

public:
    SpectrumModel(QObject *parent, QPlainTextEdit *pointEditor);
    ~SpectrumModel() override;

    // Replaces the record and the point text and starts a fresh undo history of the point editor.
    // Emits no model signal.
    void loadFromJson(const QJsonObject &obj);
    [[nodiscard]] QJsonObject toJson() const;

    // The last read points: photon energies in eV and intensities, in line order.
    [[nodiscard]] QList<QPointF> getXYVectors() const;
    // The number of lines that were not empty at the last reading, points or not.
    [[nodiscard]] qsizetype lineCount() const { return pointLines.size(); }
    // Replaces the editor's text with the point lines and starts a fresh undo history.
    void setTextEditText();

    // Reads the editor at once if its last change is unread.
    void readPendingPoints();
    // Forgets an unread change.
    void dropPendingPoints();
    // Whether the last reading of the editor found changed lines.
    [[nodiscard]] bool lastReadFoundChanges() const;

    // The edit role of a value of the record.
    [[nodiscard]] QVariant value(SpectrumColumn column) const;
    bool setValue(SpectrumColumn column, const QVariant &value);

signals:
    // The points may have changed.
    void spectrumDataChanged();

public slots:
    // Scales the intensities so that the largest becomes 1000. Drops lines that are not points.
    void normalizeSpectrum();
    // Resamples on a grid of 0.001 eV by linear interpolation and drops lines that are not points.
    // A box says if a line spectrum or too large a range cannot be resampled.
    void makePointsSparser();
    void emitSpectrumDataChanged();

private:
    void setPointLines(const QStringList &lines);
    void rewritePoints(const QStringList &lines);
    void warn(const QString &text);

    QTimer *debounceTimer;
    QPlainTextEdit *textEdit;
    bool updatingText = false;
    QStringList pointLines;
    QStringList parsedLines; // the lines, sharing their data, that parsedPoints were read from
    QList<QPointF> parsedPoints;
    bool readFoundChanges = false;
};

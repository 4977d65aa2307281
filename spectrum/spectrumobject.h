// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <array>

// A spectrum as the object of a file: its keys, and what the editor reads and writes.

inline constexpr QLatin1String spectrumTypeKey("SpectType"); // index into spectrumTypeNames
inline constexpr QLatin1String lineSpectrumKey("LineSpectrum");
inline constexpr QLatin1String energiesKey("E");            // eV
inline constexpr QLatin1String intensitiesKey("I");         // arbitrary unit
inline constexpr QLatin1String pointObjectsKey("Spectrum"); // one object a point; never written

// The types of spectra, as the form offers them.
inline constexpr std::array spectrumTypeNames{
    QLatin1String("ms-TPES"), QLatin1String("ms-SPES"),       QLatin1String("TPES"),
    QLatin1String("PES"),     QLatin1String("FC simulation"), QLatin1String("PIS"),
};

// The columns of the record.
enum class SpectrumColumn {
    Title,
    Uploader,
    Doi,
    Type, // int, index into the list of spectrum types
    FurtherRefs,
    Temperature, // K
    FurtherComments,
    CreatedDate, // yyyy-MM-dd
    FacilityDate,
    LineSpectrum, // bool
    Source,
    Resolution, // meV
    Normalization,
    LevelOfTheory,
    ConvolutionFwhm, // meV
    Aie,             // eV
};

// The spectra that a text field belongs to; for the other kind it is emptied on load and not
// written.
enum class SpectrumKind { Any, Experiment, Simulation };

// Whether a field belongs to the spectra of a type, an index into spectrumTypeNames.
[[nodiscard]] bool belongsTo(SpectrumKind field, int type);

struct SpectrumTextField {
    SpectrumColumn column;
    QLatin1String key;
    SpectrumKind kind;
};

// The text fields of the record and their JSON keys. Columns Type and LineSpectrum are no texts.
inline constexpr std::array spectrumTextFields{
    SpectrumTextField{SpectrumColumn::Title, QLatin1String("Title"), SpectrumKind::Any},
    SpectrumTextField{SpectrumColumn::Uploader, QLatin1String("Uploader"), SpectrumKind::Any},
    SpectrumTextField{SpectrumColumn::Doi, QLatin1String("DOI"), SpectrumKind::Any},
    SpectrumTextField{SpectrumColumn::FurtherRefs, QLatin1String("FurtherRefs"), SpectrumKind::Any},
    SpectrumTextField{SpectrumColumn::Temperature, QLatin1String("T"), SpectrumKind::Any},
    SpectrumTextField{SpectrumColumn::FurtherComments, QLatin1String("FurtherComments"),
                      SpectrumKind::Any},
    SpectrumTextField{SpectrumColumn::CreatedDate, QLatin1String("CreatedDate"), SpectrumKind::Any},
    SpectrumTextField{SpectrumColumn::FacilityDate, QLatin1String("FacilityDate"),
                      SpectrumKind::Any},
    SpectrumTextField{SpectrumColumn::Source, QLatin1String("Source"), SpectrumKind::Experiment},
    SpectrumTextField{SpectrumColumn::Resolution, QLatin1String("Resolution"),
                      SpectrumKind::Experiment},
    SpectrumTextField{SpectrumColumn::Normalization, QLatin1String("Normalization"),
                      SpectrumKind::Experiment},
    SpectrumTextField{SpectrumColumn::LevelOfTheory, QLatin1String("LevelOfTheory"),
                      SpectrumKind::Simulation},
    SpectrumTextField{SpectrumColumn::ConvolutionFwhm, QLatin1String("ConvolutionFWHM"),
                      SpectrumKind::Simulation},
    SpectrumTextField{SpectrumColumn::Aie, QLatin1String("AIE"), SpectrumKind::Simulation},
};

// The key of a column.
[[nodiscard]] constexpr QLatin1String keyOf(SpectrumColumn column)
{
    for (const SpectrumTextField &field : spectrumTextFields) {
        if (field.column == column)
            return field.key;
    }
    return column == SpectrumColumn::Type ? spectrumTypeKey : lineSpectrumKey;
}

// Which spectra a column belongs to.
[[nodiscard]] constexpr SpectrumKind kindOf(SpectrumColumn column)
{
    for (const SpectrumTextField &field : spectrumTextFields) {
        if (field.column == column)
            return field.kind;
    }
    return SpectrumKind::Any;
}

// The only type that is a simulation. Later types in the list are experiments again.
inline constexpr int simulationType = 4;

// Photon energies in eV and intensities with all digits; the record keeps six. Empty if there are
// more of one than of the other; a value that is no number is 0.
[[nodiscard]] QList<QPointF> storedPoints(const QJsonObject &spectrum);

// Replaces the points of the spectrum object.
void storePoints(QJsonObject &spectrum, const QList<QPointF> &points);

// The editor's record of a spectrum object. A missing or mistyped value is an empty text, 0, false
// or no point.
struct SpectrumRecord {
    int type = 0; // index into spectrumTypeNames, or any other number that a file has
    bool isLineSpectrum = false;
    std::array<QString, spectrumTextFields.size()> texts = {}; // in the order of the fields
    QStringList pointLines = {};                               // six digits of every number

    [[nodiscard]] static SpectrumRecord fromJson(const QJsonObject &spectrum);
    // The object with these points, photon energies in eV and intensities.
    [[nodiscard]] QJsonObject toJson(const QList<QPointF> &points) const;
    [[nodiscard]] QString text(SpectrumColumn column) const;
};

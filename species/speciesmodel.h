// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "species/mystandarditemmodel.h"

#include <QImage>
#include <QJsonObject>
#include <QLatin1String>

#include <array>
#include <cstddef>
#include <optional>

// What a cell of the species record holds, and how its JSON value is read and written.
enum class SpeciesFieldKind {
    Text,   // restricted markup; a JSON string
    Lines,  // the same, line ends turned into "<br>" on load
    Number, // a double after loading, text after editing; a JSON number
    Image,  // a QImage; a JSON string, the base64 of a PNG file
};

// The columns of the record.
enum class SpeciesColumn {
    Name,
    Aliases,
    Mass, // amu
    Formula,
    Inchi,
    Cas,
    PubChem,
    Aie, // eV
    Vie, // eV
    AieComment,
    VieComment,
    Image,
};

struct SpeciesField {
    QLatin1String key;
    SpeciesFieldKind kind;
};

// The fields of the record, one a column, in column order.
inline constexpr std::array speciesFields{
    SpeciesField{QLatin1String("Name"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("Aliases"), SpeciesFieldKind::Lines},
    SpeciesField{QLatin1String("Mass"), SpeciesFieldKind::Number},
    SpeciesField{QLatin1String("Formula"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("InChI"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("CAS"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("PubChem"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("AIE"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("VIE"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("AIE_Comment"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("VIE_Comment"), SpeciesFieldKind::Text},
    SpeciesField{QLatin1String("StructuralFormula"), SpeciesFieldKind::Image},
};
inline constexpr int speciesImageColumn = static_cast<int>(SpeciesColumn::Image);

[[nodiscard]] constexpr QLatin1String keyOf(SpeciesColumn column)
{
    return speciesFields[static_cast<std::size_t>(column)].key;
}

// A copy of text without any tag but sub, sup and br (in lower case, with or without attributes).
// Everything outside tags stays, such as entities and a "<" without a ">".
[[nodiscard]] QString cleanHtmlContent(const QString &text);

// A copy of text with every CR LF and every other LF turned into "<br>"; a lone CR stays.
[[nodiscard]] QString convertNewlinesToBr(const QString &text);

// The finite number of a number field's value, which may be a text with a decimal point in every
// locale; nothing if it is none and saved as 0.
[[nodiscard]] std::optional<double> savedNumber(const QVariant &value);

// The record of one chemical species: one row, with a column for each of speciesFields. The main
// window owns the only instance, and its form edits it through a data mapper. Loading and writing
// never fail: a missing or mistyped value is an empty text, 0 or no image.
class SpeciesModel : public MyStandardItemModel
{
    Q_OBJECT

public:
    explicit SpeciesModel(QObject *parent);

    // Fills every column from the "Species" object of a species file.
    void loadFromJson(const QJsonObject &species);
    [[nodiscard]] QJsonObject toJson() const;

    // The structure image; null if there is none.
    [[nodiscard]] QImage getImage() const;

    // Accepts Qt::EditRole only. Stores an image if it differs visibly from the present one; a
    // value that is no image clears it. Always returns true for the image column.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

signals:
    void imageChanged();

private:
    bool setImage(const QModelIndex &index, const QImage &image);
};

// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/speciesmodel.h"

#include "pictures/picture.h"

#include <QJsonValue>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QVariant>

#include <cmath>

namespace
{

// The cell value for a JSON value; an invalid one for a missing or unreadable image.
QVariant cellValue(const QJsonValue &json, SpeciesFieldKind kind)
{
    switch (kind) {
    case SpeciesFieldKind::Text:
        return json.toString();
    case SpeciesFieldKind::Lines:
        return convertNewlinesToBr(json.toString());
    case SpeciesFieldKind::Number:
        return json.toDouble();
    case SpeciesFieldKind::Image: {
        const QImage image = decodePicture(QByteArray::fromBase64(json.toString().toUtf8()));
        return image.isNull() ? QVariant() : QVariant::fromValue(image);
    }
    }
    Q_UNREACHABLE();
}

bool holdsImage(const QVariant &value)
{
    return QMetaType::canConvert(value.metaType(), QMetaType::fromType<QImage>());
}

} // namespace

QString cleanHtmlContent(const QString &text)
{
    static const QRegularExpression removeTags(QStringLiteral("<(?!/?(sub|sup|br)\\b)[^>]*>"));
    // No tag ends behind the last ">". Looking for one there takes the square of the length of a
    // text with many "<".
    const qsizetype end = text.lastIndexOf(QLatin1Char('>')) + 1;
    // The expression does not match a text with half a surrogate pair, so it gets a copy of the
    // same length with another character in its place. A byte order mark stays, so that positions
    // agree.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString subject = decoder(QStringView(text).first(end).toUtf8());
    QString result;
    qsizetype kept = 0;
    for (auto matches = removeTags.globalMatch(subject); matches.hasNext();) {
        const QRegularExpressionMatch tag = matches.next();
        result += QStringView(text).sliced(kept, tag.capturedStart() - kept);
        kept = tag.capturedEnd();
    }
    return result + QStringView(text).sliced(kept);
}

QString convertNewlinesToBr(const QString &text)
{
    QString result = text;
    result.replace(QLatin1String("\r\n"), QLatin1String("<br>"));
    result.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    return result;
}

// JSON can hold finite numbers only.
std::optional<double> savedNumber(const QVariant &value)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

SpeciesModel::SpeciesModel(QObject *parent) : MyStandardItemModel(parent)
{
    setRowCount(1);
    setColumnCount(static_cast<int>(speciesFields.size()));
}

void SpeciesModel::loadFromJson(const QJsonObject &species)
{
    int column = 0;
    for (const SpeciesField &field : speciesFields) {
        const QVariant value = cellValue(species.value(field.key), field.kind);
        setData(index(0, column++), value, Qt::EditRole);
    }
}

QJsonObject SpeciesModel::toJson() const
{
    QJsonObject species;
    int column = 0;
    for (const SpeciesField &field : speciesFields) {
        const QVariant value = data(index(0, column++), Qt::DisplayRole);
        switch (field.kind) {
        case SpeciesFieldKind::Text:
        case SpeciesFieldKind::Lines:
            species.insert(field.key, cleanHtmlContent(value.toString()));
            break;
        case SpeciesFieldKind::Number:
            species.insert(field.key, savedNumber(value).value_or(0.0));
            break;
        case SpeciesFieldKind::Image:
            if (holdsImage(value))
                species.insert(field.key,
                               QString::fromLatin1(encodePng(value.value<QImage>()).toBase64()));
            break;
        }
    }
    return species;
}

QImage SpeciesModel::getImage() const
{
    return data(index(0, speciesImageColumn), Qt::DisplayRole).value<QImage>();
}

bool SpeciesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole)
        return false;
    if (index.column() == speciesImageColumn)
        return setImage(index, value.value<QImage>());
    return MyStandardItemModel::setData(index, value, Qt::EditRole);
}

bool SpeciesModel::setImage(const QModelIndex &index, const QImage &image)
{
    const auto current = data(index, Qt::DisplayRole).value<QImage>();
    if (!isSamePicture(image, current)) {
        // The base class compares values, but cannot compare pictures.
        // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        QStandardItemModel::setData(index, QVariant::fromValue(image), Qt::EditRole);
        emit imageChanged();
    }
    return true;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "monkey/expecteddocument.h"

#include "support/expecteddocument.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <cmath>

namespace
{

const QString imageKey = QStringLiteral("StructuralFormula");
const QString speciesKey = QStringLiteral("Species");

void takeTexts(QMap<QString, QString> &texts, const QJsonObject &object)
{
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member->isString())
            texts[member.key()] = member->toString();
    }
}

// Fills the texts of the object, which has all its keys.
void putTexts(QJsonObject &object, const QMap<QString, QString> &texts)
{
    for (const QString &key : object.keys()) {
        if (object[key].isString())
            object[key] = texts.value(key, QLatin1String(""));
    }
}

QStringList linesOf(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QImage imageOf(const QJsonValue &text)
{
    return QImage::fromData(QByteArray::fromBase64(text.toString().toLatin1()));
}

QString withoutImage(QJsonObject file)
{
    QJsonObject species = file[speciesKey].toObject();
    species.remove(imageKey);
    file[speciesKey] = species;
    return QString::fromUtf8(QJsonDocument(file).toJson());
}

} // namespace

ExpectedSpectrum::ExpectedSpectrum()
{
    texts[QStringLiteral("CreatedDate")] =
        QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd"));
}

ExpectedSpectrum::ExpectedSpectrum(const QJsonObject &object) : lines(expectedPointLines(object))
{
    const QJsonObject saved = expectedSpectrum(object);
    type = saved[QLatin1String("SpectType")].toInt();
    isLine = saved[QLatin1String("LineSpectrum")].toBool();
    takeTexts(texts, saved);
    editorText = lines.join(QLatin1Char('\n'));
}

QString ExpectedSpectrum::keyOf(const QString &field) const
{
    static const QMap<QString, QString> common{
        {QStringLiteral("lineEditTitle"), QStringLiteral("Title")},
        {QStringLiteral("lineEditUploader"), QStringLiteral("Uploader")},
        {QStringLiteral("lineEditSpectDOI"), QStringLiteral("DOI")},
        {QStringLiteral("textEditCitations"), QStringLiteral("FurtherRefs")},
        {QStringLiteral("lineEditSourceT"), QStringLiteral("T")},
        {QStringLiteral("textEditComments"), QStringLiteral("FurtherComments")},
        {QStringLiteral("lineEditFacilityDate"), QStringLiteral("FacilityDate")}};
    static const QStringList ofMeasurements{QStringLiteral("Source"), QStringLiteral("Resolution"),
                                            QStringLiteral("Normalization")};
    static const QStringList ofSimulations{
        QStringLiteral("LevelOfTheory"), QStringLiteral("ConvolutionFWHM"), QStringLiteral("AIE")};
    const QStringList &moving = type == 4 ? ofSimulations : ofMeasurements;
    if (field == QLatin1String("lineEditSource"))
        return moving[0];
    if (field == QLatin1String("lineEditResolution"))
        return moving[1];
    if (field == QLatin1String("lineEditFlux"))
        return moving[2];
    return common.value(field);
}

QList<QPointF> ExpectedSpectrum::points() const
{
    static const QRegularExpression separator(QStringLiteral("[,;\\s]+"));
    QList<QPointF> result;
    for (const QString &line : lines) {
        const QStringList parts = line.split(separator, Qt::SkipEmptyParts);
        bool isX = false;
        bool isY = false;
        const double x = parts.value(0).toDouble(&isX);
        const double y = parts.value(1).toDouble(&isY);
        if (parts.size() == 2 && isX && isY)
            result.append({x, y});
    }
    return result;
}

QJsonObject ExpectedSpectrum::toJson() const
{
    QJsonObject object = expectedSpectrum(
        {{QStringLiteral("SpectType"), type}, {QStringLiteral("LineSpectrum"), isLine}});
    putTexts(object, texts);
    QJsonArray energies;
    QJsonArray intensities;
    for (const QPointF &point : points()) {
        energies.append(point.x());
        intensities.append(point.y());
    }
    object[QLatin1String("E")] = energies;
    object[QLatin1String("I")] = intensities;
    return object;
}

void ExpectedSpectrum::read()
{
    if (!isPending)
        return;
    lines = linesOf(editorText);
    isPending = false;
}

void ExpectedSpectrum::rewrite(const QStringList &newLines)
{
    lines = newLines;
    editorText = lines.join(QLatin1Char('\n'));
    isPending = false;
}

void ExpectedSpectrum::normalise()
{
    const QList<QPointF> old = points();
    if (old.isEmpty())
        return;
    double maximum = old.first().y();
    for (const QPointF &point : old)
        maximum = point.y() > maximum ? point.y() : maximum;
    if (maximum == 0.0)
        return;
    QStringList result;
    for (const QPointF &point : old)
        result.append(QString::number(point.x(), 'f', 4) + QLatin1Char(' ')
                      + QString::number(point.y() / maximum * 1000.0, 'f', 2));
    rewrite(result);
}

void ExpectedSpectrum::resample()
{
    const QList<QPointF> old = points();
    if (old.isEmpty())
        return;
    const double start = old.first().x() + 0.001;
    const double end = old.last().x() - 0.001;
    const int last = static_cast<int>((end - start) / 0.001);
    QStringList result;
    for (int i = 0; last >= 0 && i <= last; ++i) {
        const double x = std::fma(i, 0.001, start);
        for (int j = 0; j + 1 < old.size(); ++j) {
            if (!(old[j + 1].x() >= x))
                continue;
            const double y = std::fma(old[j + 1].y() - old[j].y(),
                                      (x - old[j].x()) / (old[j + 1].x() - old[j].x()), old[j].y());
            result.append(QString::number(x, 'f', 3) + QLatin1Char(' ')
                          + QString::number(y, 'f', 2));
            break;
        }
    }
    rewrite(result);
}

QJsonObject ExpectedDocument::toJson() const
{
    QJsonObject species = expectedSpecies({{QStringLiteral("Mass"), mass}});
    putTexts(species, texts);
    if (hasImageKey) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        species[imageKey] = QString::fromLatin1(buffer.data().toBase64());
    }
    QJsonObject file{{QStringLiteral("Type"), QStringLiteral("Species v1")}, {speciesKey, species}};
    int number = 1;
    for (const ExpectedSpectrum &spectrum : spectra)
        file[QStringLiteral("Dataset%1").arg(number++)] = spectrum.toJson();
    return file;
}

void ExpectedDocument::clear()
{
    texts.clear();
    mass = 0;
    image = QImage();
    spectra.clear();
}

void ExpectedDocument::load(const QJsonObject &file)
{
    clear();
    const QJsonObject species = file[speciesKey].toObject();
    takeTexts(texts, expectedSpecies(species));
    mass = species[QLatin1String("Mass")].toDouble();
    const QImage loaded = imageOf(species[imageKey]);
    if (!loaded.isNull())
        setImage(loaded);
    for (const QString &key : expectedDatasetKeys(file))
        spectra.append(ExpectedSpectrum(file[key].toObject()));
}

void ExpectedDocument::setImage(const QImage &newImage)
{
    image = newImage;
    hasImageKey = hasImageKey || !image.isNull();
}

QString difference(const QJsonObject &actual, const QJsonObject &expected)
{
    const QStringList left = withoutImage(actual).split(QLatin1Char('\n'));
    const QStringList right = withoutImage(expected).split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
        if (left.value(i) != right.value(i))
            return QStringLiteral("line %1: is \"%2\", must be \"%3\"")
                .arg(QString::number(i + 1), left.value(i), right.value(i));
    }
    const QJsonObject first = actual[speciesKey].toObject();
    const QJsonObject second = expected[speciesKey].toObject();
    if (first.contains(imageKey) != second.contains(imageKey))
        return QStringLiteral("only one has a key for the image");
    const QImage one = imageOf(first[imageKey]).convertToFormat(QImage::Format_ARGB32);
    const QImage other = imageOf(second[imageKey]).convertToFormat(QImage::Format_ARGB32);
    return one == other ? QString() : QStringLiteral("the images differ");
}

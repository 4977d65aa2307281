// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/expecteddocument.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{

constexpr int simulation = 4;
constexpr std::array keptTags{"sub"_L1, "sup"_L1, "br"_L1};

bool isWordCharacter(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9')
           || u == u'_';
}

// Whether a tag that stays begins right after the "<" at this place.
bool isKeptTag(QStringView afterBracket)
{
    if (afterBracket.startsWith(u'/'))
        afterBracket = afterBracket.sliced(1);
    return std::any_of(keptTags.begin(), keptTags.end(), [&](QLatin1StringView name) {
        return afterBracket.startsWith(name)
               && (afterBracket.size() == name.size()
                   || !isWordCharacter(afterBracket[name.size()]));
    });
}

QString textOf(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object[key];
    return value.isString() ? value.toString() : QString();
}

double numberOf(const QJsonValue &value)
{
    return value.isDouble() ? value.toDouble() : 0.0;
}

// A whole number that an int can hold, or 0.
int integerOf(const QJsonValue &value)
{
    const double number = numberOf(value);
    const bool fits = number == std::trunc(number) && number >= std::numeric_limits<int>::min()
                      && number <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(number) : 0;
}

QString sixDigits(double number)
{
    return QString::number(number, 'g', 6);
}

double roundedToSixDigits(double number)
{
    const QByteArray text = sixDigits(number).toLatin1();
    double rounded = 0;
    std::from_chars(text.constData(), text.constData() + text.size(), rounded);
    return rounded;
}

struct Points {
    QList<double> energies;    // eV
    QList<double> intensities; // arbitrary units
};

Points pointsOf(const QJsonObject &spectrum)
{
    Points points;
    if (spectrum.contains("Spectrum"_L1)) {
        const QJsonArray elements = spectrum["Spectrum"_L1].toArray();
        for (const auto &element : elements) {
            points.energies.append(numberOf(element.toObject()["E"_L1]));
            points.intensities.append(numberOf(element.toObject()["I"_L1]));
        }
        return points;
    }
    const QJsonArray energies = spectrum["E"_L1].toArray();
    const QJsonArray intensities = spectrum["I"_L1].toArray();
    if (energies.size() != intensities.size())
        return points;
    for (const auto &energy : energies)
        points.energies.append(numberOf(energy));
    for (const auto &intensity : intensities)
        points.intensities.append(numberOf(intensity));
    return points;
}

QJsonArray roundedArray(const QList<double> &numbers)
{
    QJsonArray array;
    for (const double number : numbers)
        array.append(roundedToSixDigits(number));
    return array;
}

} // namespace

QString expectedMarkup(const QString &text)
{
    QString result;
    qsizetype at = 0;
    while (at < text.size()) {
        const qsizetype end = text[at] == u'<' ? text.indexOf(u'>', at) : -1;
        if (end < 0 || isKeptTag(QStringView(text).sliced(at + 1)))
            result += text[at++];
        else
            at = end + 1;
    }
    return result;
}

QJsonObject expectedSpecies(const QJsonObject &loaded)
{
    QJsonObject saved{{u"Mass"_s, numberOf(loaded["Mass"_L1])}};
    for (const QString &key : {u"Name"_s, u"Formula"_s, u"InChI"_s, u"CAS"_s, u"PubChem"_s,
                               u"AIE"_s, u"VIE"_s, u"AIE_Comment"_s, u"VIE_Comment"_s})
        saved[key] = expectedMarkup(textOf(loaded, key));
    QString aliases = textOf(loaded, u"Aliases"_s);
    aliases.replace(u"\r\n"_s, u"\n"_s);
    saved[u"Aliases"_s] = expectedMarkup(aliases.split(u'\n').join(u"<br>"_s));
    return saved;
}

QStringList expectedPointLines(const QJsonObject &loaded)
{
    const Points points = pointsOf(loaded);
    QStringList lines;
    for (qsizetype i = 0; i < points.energies.size(); ++i)
        lines.append(sixDigits(points.energies[i]) + "; "_L1 + sixDigits(points.intensities[i]));
    return lines;
}

QJsonObject expectedSpectrum(const QJsonObject &loaded)
{
    const int type = integerOf(loaded["SpectType"_L1]);
    QJsonObject saved{{u"SpectType"_s, type}};
    saved[u"LineSpectrum"_s] = loaded["LineSpectrum"_L1] == QJsonValue(true);
    for (const QString &key : {u"Title"_s, u"Uploader"_s, u"DOI"_s, u"FurtherRefs"_s, u"T"_s,
                               u"FurtherComments"_s, u"CreatedDate"_s, u"FacilityDate"_s})
        saved[key] = expectedMarkup(textOf(loaded, key));
    const QStringList ofKind = type == simulation
                                   ? QStringList{u"LevelOfTheory"_s, u"ConvolutionFWHM"_s, u"AIE"_s}
                                   : QStringList{u"Source"_s, u"Resolution"_s, u"Normalization"_s};
    for (const QString &key : ofKind)
        saved[key] = textOf(loaded, key);
    const Points points = pointsOf(loaded);
    saved[u"E"_s] = roundedArray(points.energies);
    saved[u"I"_s] = roundedArray(points.intensities);
    return saved;
}

QStringList expectedDatasetKeys(const QJsonObject &file)
{
    QStringList keys;
    for (const QString &key : file.keys()) {
        const bool isNumbered = key.size() > 7
                                && std::all_of(key.begin() + 7, key.end(),
                                               [](QChar c) { return c >= u'0' && c <= u'9'; });
        if (key.startsWith("Dataset"_L1) && isNumbered)
            keys.append(key);
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

QJsonObject expectedSpeciesFile(const QJsonObject &loaded)
{
    QJsonObject saved{{u"Type"_s, u"Species v1"_s},
                      {u"Species"_s, expectedSpecies(loaded["Species"_L1].toObject())}};
    int number = 0;
    for (const QString &key : expectedDatasetKeys(loaded))
        saved[u"Dataset%1"_s.arg(++number)] = expectedSpectrum(loaded[key].toObject());
    return saved;
}

QJsonObject withoutByteOrderMarks(QJsonObject object)
{
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QJsonValue value = member.value();
        if (value.isObject()) {
            member.value() = withoutByteOrderMarks(value.toObject());
        } else if (value.isString()) {
            QString text = value.toString();
            while (text.startsWith(QChar::ByteOrderMark))
                text.remove(0, 1);
            member.value() = text;
        }
    }
    return object;
}

QImage expectedImage(const QJsonObject &species)
{
    const QByteArray bytes =
        QByteArray::fromBase64(textOf(species, u"StructuralFormula"_s).toUtf8());
    // Drawings are not taken, nor what is compressed as a whole.
    if (bytes.startsWith("\x1f\x8b") || bytes.trimmed().startsWith('<'))
        return {};
    return QImage::fromData(bytes).convertToFormat(QImage::Format_RGBA64);
}

std::optional<QJsonObject> expectedSpeciesFileIn(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    const bool isSpeciesFile = error.error == QJsonParseError::NoError && document.isObject()
                               && document.object()["Type"_L1] == QJsonValue(u"Species v1"_s);
    return isSpeciesFile ? std::optional(document.object()) : std::nullopt;
}

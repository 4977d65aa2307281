// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/savecheck.h"

#include "check/recordcheck.h"
#include "check/writtenform.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/assaved.h"
#include "spectrum/spectrumobject.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QList>
#include <QPointF>

#include <algorithm>
#include <array>

namespace
{

QByteArray shown(const QJsonValue &value)
{
    constexpr qsizetype longest = 40;
    switch (value.type()) {
    case QJsonValue::Array:
        return "an array";
    case QJsonValue::Object:
        return "an object";
    default:
        break;
    }
    QByteArray text = jsonOnOneLine(value);
    if (text.size() > longest)
        text = QString::fromUtf8(text).left(longest).toUtf8() + "...";
    return text;
}

qsizetype countNoNumbers(const QJsonObject &spectrum)
{
    qsizetype count = 0;
    const auto look = [&](const QJsonValue &value) { count += value.isDouble() ? 0 : 1; };
    if (spectrum.contains(pointObjectsKey)) {
        const QJsonArray points = spectrum.value(pointObjectsKey).toArray();
        for (const auto &point : points) {
            look(point.toObject().value(energiesKey));
            look(point.toObject().value(intensitiesKey));
        }
        return count;
    }
    for (const QLatin1String key : {energiesKey, intensitiesKey}) {
        const QJsonArray values = spectrum.value(key).toArray();
        for (const auto &value : values)
            look(value);
    }
    return count;
}

class Losses
{
public:
    // Compares the members of an object that the record under path knows, and those that it does
    // not.
    void compareMembers(const QByteArray &path, const QJsonObject &before, const QJsonObject &after)
    {
        for (auto member = before.begin(); member != before.end(); ++member) {
            const QByteArray place = path + '/' + member.key().toUtf8();
            const QJsonValue kept = after.value(member.key());
            const bool sameLines =
                kept.isString()
                && convertNewlinesToBr(member.value().toString()) == kept.toString();
            if (member.value() == kept || (member.value().isString() && sameLines))
                continue;
            if (kept.isUndefined())
                add(place, shown(member.value()));
            else if (kept.type() == member.value().type())
                add(place, shown(member.value()) + " becomes " + shown(kept));
            else
                add(place, shown(member.value()) + " is read as " + shown(kept));
        }
    }

    void compareSpecies(const QJsonValue &before, const QJsonObject &after)
    {
        if (!before.isObject() && !before.isUndefined())
            return add("/Species", shown(before));
        QJsonObject rest = before.toObject();
        // Only the decoder can compare pictures: a lost one cannot be decoded.
        const QLatin1String imageKey = keyOf(SpeciesColumn::Image);
        const QJsonValue picture = rest.take(imageKey);
        const bool isEmpty = picture.isUndefined() || picture == QJsonValue(QString());
        if (!isEmpty && !after.contains(imageKey))
            add(QByteArray("/Species/") + imageKey.data(), "a picture that cannot be decoded");
        compareMembers("/Species", rest, after);
    }

    void compareSpectrum(const QByteArray &path, const QJsonValue &before, const QJsonObject &after)
    {
        if (!before.isObject())
            return add(path, shown(before));
        QJsonObject rest = before.toObject();
        comparePoints(path, rest, after);
        for (const QLatin1String key : {energiesKey, intensitiesKey, pointObjectsKey})
            rest.remove(key);
        compareMembers(path, rest, after);
    }

    QByteArrayList lines;

private:
    void add(const QByteArray &place, const QByteArray &what)
    {
        // A spectrum file is one spectrum.
        lines.append((place.isEmpty() ? QByteArray("Spectrum") : place) + ": " + what);
    }

    void comparePoints(const QByteArray &path, const QJsonObject &before, const QJsonObject &after)
    {
        const QList<QPointF> old = storedPoints(before);
        const QList<QPointF> kept = storedPoints(after);
        for (const QByteArray &reason : {whyPointsAreLost(before), whatElsePointsHold(before)}) {
            if (!reason.isEmpty())
                add(path, reason);
        }
        qsizetype changed = 0;
        for (qsizetype i = 0; i < old.size(); ++i) {
            const bool same =
                i < kept.size() && old[i].x() == kept[i].x() && old[i].y() == kept[i].y();
            changed += same ? 0 : 1;
        }
        if (changed > 0)
            add(path, "digits behind the sixth of " + QByteArray::number(changed) + " of "
                          + QByteArray::number(old.size()) + " points");
    }
};

// The innermost value that saving changes or removes; for a missing member, the value that holds
// it.
JsonValue firstChange(const JsonValue &value, const QJsonValue &before, const QJsonValue &after)
{
    qsizetype index = 0;
    if (before.type() != after.type())
        return value;
    for (JsonValue child = value.firstChild(); child; child = child.nextSibling()) {
        const auto childOf = [&](const QJsonValue &whole) {
            return child.hasKey() ? whole[child.key()] : whole[index];
        };
        if (childOf(before) != childOf(after))
            return firstChange(child, childOf(before), childOf(after));
        ++index;
    }
    return value;
}

// The offset of the first byte that the editor would write differently, in the layout or in a
// value. Nothing, too, for a text that it cannot read.
std::optional<qsizetype> placeThatSavingChanges(const JsonText &text)
{
    if (const std::optional<qsizetype> place = firstOtherByte(text))
        return place;
    const QJsonObject before = QJsonDocument::fromJson(text.bytes()).object();
    const std::optional<QJsonObject> after = asSavedFile(before);
    if (!after || *after == before)
        return std::nullopt;
    return firstChange(text.root(), before, *after).begin();
}

} // namespace

bool saysWhySavingChanges(Check check)
{
    constexpr std::array causes{Check::DuplicateKey,  Check::UnknownKey,  Check::ValueType,
                                Check::DigitsLost,    Check::MarkupTag,   Check::ForeignField,
                                Check::UnequalArrays, Check::ImageDecode, Check::NumberRange,
                                Check::TextLost};
    return std::find(causes.begin(), causes.end(), check) != causes.end();
}

void checkSaving(const JsonText &text, FindingList &findings)
{
    if (!findings.isAsked(Check::WouldChange) || findings.hasAny(saysWhySavingChanges))
        return;
    if (const std::optional<qsizetype> place = placeThatSavingChanges(text))
        findings.addAt(Check::WouldChange, *place,
                       QStringLiteral("The editor would write the file in another way from here"),
                       QStringLiteral("zoravel format --in-place writes it as the editor does."));
}

QByteArrayList lossesBetween(const QJsonObject &before, const QJsonObject &after)
{
    Losses losses;
    if (!after.contains(speciesKey)) {
        losses.compareSpectrum({}, before, after);
        return losses.lines;
    }
    QJsonObject rest = before;
    losses.compareSpecies(rest.take(speciesKey), after.value(speciesKey).toObject());
    int number = 0;
    for (const QString &key : datasetKeys(before)) {
        const QJsonObject kept = after.value(QStringLiteral("Dataset%1").arg(++number)).toObject();
        losses.compareSpectrum('/' + key.toUtf8(), rest.take(key), kept);
    }
    losses.compareMembers({}, rest, after);
    return losses.lines;
}

QByteArrayList lossesInReading(const QByteArray &json)
{
    const JsonText text(json);
    QByteArrayList losses;
    if (text.error())
        return losses;
    FindingList findings({}, json, CheckSet().set());
    checkDuplicateKeys(text.root(), findings);
    const QList<Finding> repeated = findings.take();
    for (const Finding &finding : repeated)
        losses.append(finding.pointer.toUtf8() + ": the key is written again below");
    return losses;
}

QByteArray whyPointsAreLost(const QJsonObject &spectrum)
{
    for (const QLatin1String key : {pointObjectsKey, energiesKey, intensitiesKey}) {
        const QJsonValue value = spectrum.value(key);
        if (!value.isUndefined() && !value.isArray())
            return QByteArray(key.data()) + " is no array";
    }
    const qsizetype energies = spectrum.value(energiesKey).toArray().size();
    const qsizetype intensities = spectrum.value(intensitiesKey).toArray().size();
    const bool hasObjects = spectrum.contains(pointObjectsKey);
    if (!hasObjects && energies != intensities)
        return QByteArray::number(energies) + " energies and " + QByteArray::number(intensities)
               + " intensities";
    if (hasObjects && energies + intensities > 0)
        return "the points under E and I, besides those under Spectrum";
    if (const qsizetype count = countNoNumbers(spectrum))
        return QByteArray::number(count) + " values that are no numbers";
    return {};
}

QByteArray whatElsePointsHold(const QJsonObject &spectrum)
{
    qsizetype count = 0;
    const QJsonArray points = spectrum.value(pointObjectsKey).toArray();
    for (const auto &value : points) {
        const QJsonObject point = value.toObject();
        count += point.size() - (point.contains(energiesKey) ? 1 : 0)
                 - (point.contains(intensitiesKey) ? 1 : 0);
    }
    return count == 0 ? QByteArray()
                      : QByteArray::number(count) + " values besides E and I in points";
}

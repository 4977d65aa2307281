// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/jsonlosses.h"

#include "check/findinglist.h"
#include "check/jsontext.h"
#include "check/recordcheck.h"
#include "cli/pickspectrum.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumobject.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

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
    // The only element of an array, without its brackets.
    QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).chopped(1);
    text.remove(0, 1);
    if (text.size() > longest)
        text = QString::fromUtf8(text).left(longest).toUtf8() + "...";
    return text;
}

class Losses
{
public:
    // The members of an object that the record under path knows, and those that it does not.
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
        // Whether the picture is the same is for the decoder to say: what is lost is one that
        // cannot be decoded.
        const QLatin1String imageKey = speciesFields[speciesImageColumn].key;
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
        // A spectrum file is its only spectrum.
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

} // namespace

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

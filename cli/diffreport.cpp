// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/diffreport.h"

#include "cli/filenames.h"
#include "files/jsonfile.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace
{

// A value in a message: JSON on one line.
QByteArray shown(const QJsonValue &value, bool isDescribed)
{
    if (value.isUndefined())
        return "nothing";
    if (isDescribed)
        return value.toString().toUtf8();
    return jsonOnOneLine(value);
}

QByteArray heading(const QByteArray &before, const QByteArray &after, const QByteArray &name)
{
    QByteArray names = before.isEmpty() ? after : before;
    if (!before.isEmpty() && !after.isEmpty() && before != after)
        names += " -> " + after;
    return name.isEmpty() ? names : QByteArray(names + " (" + shownName(name) + ')');
}

QByteArrayList fieldLines(const QList<FieldDifference> &fields)
{
    QByteArrayList lines;
    for (const FieldDifference &field : fields)
        lines.append("  " + shownName(field.key.toUtf8()) + ": "
                     + shown(field.before, field.isDescribed) + " -> "
                     + shown(field.after, field.isDescribed));
    return lines;
}

QByteArray pointLine(const PointDifference &difference)
{
    if (difference.reordered)
        return "points: the same in another order";
    QByteArray text = "points: " + QByteArray::number(difference.added) + " added, "
                      + QByteArray::number(difference.removed) + " removed, "
                      + QByteArray::number(difference.changed) + " changed";
    if (difference.changed > 0)
        text += ", by up to " + QByteArray::number(difference.largest) + " at "
                + QByteArray::number(difference.largestAtEv, 'g', 10) + " eV";
    return text;
}

QByteArrayList spectrumLines(const SpectrumDifference &spectrum)
{
    QByteArrayList lines{heading(spectrum.before, spectrum.after, spectrum.title)};
    if (spectrum.before.isEmpty() || spectrum.after.isEmpty())
        lines.append(QByteArray("  ") + (spectrum.after.isEmpty() ? "removed" : "added") + ", with "
                     + QByteArray::number(spectrum.count) + " points");
    else if (!spectrum.points.isNone())
        lines.append("  " + pointLine(spectrum.points));
    return lines + fieldLines(spectrum.fields);
}

QByteArrayList section(const QByteArray &name, const QList<FieldDifference> &fields)
{
    return fields.isEmpty() ? QByteArrayList() : QByteArrayList{name} + fieldLines(fields);
}

QByteArrayList entryLines(const EntryDifference &difference)
{
    QByteArrayList lines =
        section("Profile", difference.profile) + section("File", difference.rest);
    for (const SpectrumDifference &spectrum : difference.spectra)
        lines += spectrumLines(spectrum);
    return lines;
}

void insertNames(QJsonObject &object, const QByteArray &before, const QByteArray &after)
{
    if (!before.isEmpty())
        object.insert(QLatin1String("before"), QString::fromUtf8(before));
    if (!after.isEmpty())
        object.insert(QLatin1String("after"), QString::fromUtf8(after));
}

QJsonArray arrayOf(const QList<FieldDifference> &fields)
{
    QJsonArray array;
    for (const FieldDifference &field : fields) {
        QJsonObject object{{QStringLiteral("key"), field.key}};
        if (!field.before.isUndefined())
            object.insert(QLatin1String("before"), field.before);
        if (!field.after.isUndefined())
            object.insert(QLatin1String("after"), field.after);
        array.append(object);
    }
    return array;
}

QJsonObject objectOf(const PointDifference &points)
{
    QJsonObject object{{QStringLiteral("added"), points.added},
                       {QStringLiteral("removed"), points.removed},
                       {QStringLiteral("changed"), points.changed},
                       {QStringLiteral("reordered"), points.reordered}};
    if (points.changed > 0) {
        object.insert(QLatin1String("largest"), points.largest);
        object.insert(QLatin1String("largestAtEv"), points.largestAtEv);
    }
    return object;
}

QJsonObject objectOf(const SpectrumDifference &spectrum)
{
    QJsonObject object{{QStringLiteral("title"), QString::fromUtf8(spectrum.title)}};
    insertNames(object, spectrum.before, spectrum.after);
    if (spectrum.before.isEmpty() || spectrum.after.isEmpty()) {
        object.insert(QLatin1String("count"), spectrum.count);
        return object;
    }
    object.insert(QLatin1String("points"), objectOf(spectrum.points));
    object.insert(QLatin1String("fields"), arrayOf(spectrum.fields));
    return object;
}

QJsonObject objectOf(const ComparedEntry &entry)
{
    QJsonObject object{{QStringLiteral("species"), QString::fromUtf8(entry.species)}};
    insertNames(object, entry.before, entry.after);
    if (entry.before.isEmpty() || entry.after.isEmpty())
        return object;
    QJsonArray spectra;
    for (const SpectrumDifference &spectrum : entry.difference.spectra)
        spectra.append(objectOf(spectrum));
    object.insert(QLatin1String("profile"), arrayOf(entry.difference.profile));
    object.insert(QLatin1String("file"), arrayOf(entry.difference.rest));
    object.insert(QLatin1String("spectra"), spectra);
    return object;
}

} // namespace

QByteArray diffText(const DiffReport &report)
{
    QByteArray text;
    for (const QByteArray &line : section("Header", report.header))
        text += line + '\n';
    for (const ComparedEntry &entry : report.entries) {
        const QByteArray indent = report.areCollections ? "  " : "";
        if (report.areCollections)
            text += shownName(heading(entry.before, entry.after, entry.species)) + '\n';
        if (entry.before.isEmpty() || entry.after.isEmpty())
            text += indent + (entry.after.isEmpty() ? "removed\n" : "added\n");
        for (const QByteArray &line : entryLines(entry.difference))
            text += indent + line + '\n';
    }
    return text;
}

QByteArray diffJson(const DiffReport &report)
{
    QJsonArray entries;
    for (const ComparedEntry &entry : report.entries)
        entries.append(objectOf(entry));
    QJsonObject object{{QStringLiteral("differences"), entries}};
    insertNames(object, report.before, report.after);
    if (!report.header.isEmpty())
        object.insert(QLatin1String("header"), arrayOf(report.header));
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

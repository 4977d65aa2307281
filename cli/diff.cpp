// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/command.h"
#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/pointdifference.h"
#include "cli/readfile.h"
#include "cli/spectrumpairs.h"
#include "species/jsonfile.h"
#include "species/picture.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumfile.h"
#include "spectrum/spectrumobject.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <optional>

namespace
{

constexpr char details[] =
    R"(Compares two species files or two spectrum files: the fields of the profile and of
each spectrum one by one, and of the points how many are added, removed or
changed, with the largest difference of intensities. Points belong together that
have the same energy. Spectra belong together that are equal, first of all under the
same key, else that have the same title and type, else any; of several, those with
the most points in common, then those under the same key. The status is 1 if there
is a difference.

Examples:
  zoravel diff old/benzene.json benzene.json
)";

// A value as a message shows it: JSON on one line.
QByteArray shown(const QJsonValue &value)
{
    if (value.isUndefined())
        return "nothing";
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return text.sliced(1, text.size() - 2);
}

QStringList allKeys(const QJsonObject &before, const QJsonObject &after)
{
    QStringList keys = before.keys() + after.keys();
    keys.sort();
    keys.removeDuplicates();
    return keys;
}

// The differences of one part of the files; its heading comes before the first one.
class Section
{
public:
    Section(const QByteArray &heading, Console &console) : m_heading(heading), m_console(console) {}

    void line(const QByteArray &text)
    {
        if (!m_found)
            m_console.out(m_heading + '\n');
        m_found = true;
        m_console.out("  " + text + '\n');
    }

    void compareFields(const QJsonObject &before, const QJsonObject &after)
    {
        for (const QString &key : allKeys(before, after)) {
            const QJsonValue old = before.value(key);
            const QJsonValue present = after.value(key);
            if (old != present)
                line(key.toUtf8() + ": " + shown(old) + " -> " + shown(present));
        }
    }

    [[nodiscard]] bool found() const { return m_found; }

private:
    QByteArray m_heading;
    Console &m_console;
    bool m_found = false;
};

QByteArray shown(const QImage &picture, const QJsonValue &value)
{
    if (value.toString().isEmpty())
        return "no picture";
    if (picture.isNull())
        return "a picture that cannot be decoded";
    return "a picture of " + QByteArray::number(picture.width()) + " x "
           + QByteArray::number(picture.height());
}

void comparePictures(Section &section, const QJsonValue &before, const QJsonValue &after)
{
    if (before.toString() == after.toString())
        return;
    const auto decoded = [](const QJsonValue &value) {
        return decodePicture(QByteArray::fromBase64(value.toString().toUtf8()));
    };
    const QImage old = decoded(before);
    const QImage present = decoded(after);
    if (!old.isNull() && isSamePicture(old, present))
        return;
    section.line(QByteArray(speciesFields[speciesImageColumn].key.data()) + ": "
                 + shown(old, before) + " -> " + shown(present, after));
}

void compareProfiles(Section &section, QJsonObject before, QJsonObject after)
{
    const QLatin1String imageKey = speciesFields[speciesImageColumn].key;
    comparePictures(section, before.take(imageKey), after.take(imageKey));
    section.compareFields(before, after);
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

void compareSpectra(Section &section, QJsonObject before, QJsonObject after)
{
    const PointDifference points = differenceOf(storedPoints(before), storedPoints(after));
    if (!points.isNone())
        section.line(pointLine(points));
    // Arrays of points that the program would not read count as they stand.
    const auto takePoints = [](QJsonObject &spectrum) {
        if (storedPoints(spectrum).isEmpty())
            return;
        for (const QLatin1String key : {energiesKey, intensitiesKey, pointObjectsKey})
            spectrum.remove(key);
    };
    takePoints(before);
    takePoints(after);
    section.compareFields(before, after);
}

QList<KeyedSpectrum> spectraIn(const QJsonObject &file)
{
    if (hasType(file, spectrumFileType))
        return {{"Spectrum", file}};
    QList<KeyedSpectrum> spectra;
    for (const QString &key : datasetKeys(file))
        spectra.append({key.toUtf8(), file.value(key).toObject()});
    return spectra;
}

QByteArray headingOf(const KeyedSpectrum &before, const KeyedSpectrum &after)
{
    const QByteArray keys =
        before.key == after.key ? before.key : QByteArray(before.key + " -> " + after.key);
    return before.title.isEmpty() ? keys : QByteArray(keys + " (" + before.title + ')');
}

bool compareAllSpectra(const QList<KeyedSpectrum> &before, const QList<KeyedSpectrum> &after,
                       Console &console)
{
    const SpectrumPairs paired = pairedSpectra(before, after);
    bool found = false;
    for (const auto &[old, present] : paired.pairs) {
        Section section(headingOf(old, present), console);
        compareSpectra(section, old.object, present.object);
        found = found || section.found();
    }
    const auto only = [&](const QList<KeyedSpectrum> &spectra, const char *what) {
        for (const KeyedSpectrum &spectrum : spectra) {
            Section section(headingOf(spectrum, spectrum), console);
            section.line(QByteArray(what) + ", with "
                         + QByteArray::number(storedPoints(spectrum.object).size()) + " points");
            found = true;
        }
    };
    only(paired.removed, "removed");
    only(paired.added, "added");
    return found;
}

// What stands in a species file besides the profile and the spectra.
QJsonObject remainder(QJsonObject file)
{
    file.remove(speciesKey);
    for (const QString &key : datasetKeys(file))
        file.remove(key);
    return file;
}

std::optional<QJsonObject> readComparable(const QByteArray &name, Console &console)
{
    std::optional<QJsonObject> object = readObject({name, libraryPath(name)}, console);
    if (!object || spectraOf(*object))
        return object;
    console.error(shownName(name) + ": neither a species nor a spectrum file");
    return std::nullopt;
}

int run(const Arguments &arguments, Console &console)
{
    const QByteArrayList &names = arguments.operands();
    if (names.size() != 2)
        return usageError(console, diffCommand(), {"two files have to be named", {}});
    const std::optional<QJsonObject> before = readComparable(names[0], console);
    const std::optional<QJsonObject> after = readComparable(names[1], console);
    if (!before || !after)
        return exitFailure;
    if (before->value(typeKey) != after->value(typeKey)) {
        console.error("a species file and a spectrum file cannot be compared");
        return exitFailure;
    }

    bool found = false;
    if (hasType(*before, speciesFileType)) {
        Section profile("Profile", console);
        compareProfiles(profile, before->value(speciesKey).toObject(),
                        after->value(speciesKey).toObject());
        Section rest("File", console);
        rest.compareFields(remainder(*before), remainder(*after));
        found = profile.found() || rest.found();
    }
    found = compareAllSpectra(spectraIn(*before), spectraIn(*after), console) || found;
    return found ? exitFindings : exitFine;
}

} // namespace

const Command &diffCommand()
{
    static constexpr Command command{"diff",  "A B", "Compare two files of the same kind",
                                     details, {},    run};
    return command;
}

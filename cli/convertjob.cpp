// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/convertjob.h"

#include "cli/pickspectrum.h"
#include "exchange/metadata.h"
#include "species/speciesfile.h"

#include <QFileInfo>
#include <QJsonObject>

#include <optional>

namespace
{

QByteArrayList outputFormats()
{
    return {"csv", "tsv", "jcamp", "json"};
}

QByteArrayList inputFormats()
{
    return {"table", "jcamp", "json"};
}

// The suffix of the file's name; empty without a dot.
QByteArray endingOf(const QByteArray &name)
{
    const qsizetype point = name.lastIndexOf('.');
    return point > name.lastIndexOf('/') ? name.sliced(point + 1) : QByteArray();
}

QByteArray formatOfName(const QByteArray &name)
{
    const QByteArray ending = endingOf(name).toLower();
    if (ending == "jdx" || ending == "dx" || ending == "jcm")
        return "jcamp";
    if (ending == "txt" || ending == "tab")
        return "tsv";
    return outputFormats().contains(ending) ? ending : QByteArray();
}

// Reads the options about energies. Returns what is wrong with them.
std::optional<UsageError> readEnergies(const Arguments &arguments, ConvertJob &job)
{
    const QByteArray kind = arguments.value("energy", "photon");
    if (kind != "photon")
        return UsageError{"--energy takes photon, not " + kind, {}};
    job.energies.arePhotonEnergies = arguments.has("energy");
    if (!arguments.has("energy-unit"))
        return std::nullopt;
    const QByteArray name = arguments.value("energy-unit");
    job.energies.unit = energyUnitNamed(name);
    if (!job.energies.unit)
        return UsageError{"the unit " + name + " is none of " + energyUnitNames().join(", "),
                          closestTo(name, energyUnitNames())};
    return std::nullopt;
}

// Reads the fields to set. Returns what is wrong with them.
std::optional<UsageError> readFields(const QByteArrayList &texts, ConvertJob &job)
{
    for (const QByteArray &text : texts) {
        const qsizetype equals = text.indexOf('=');
        const QByteArray name = text.left(qMax<qsizetype>(equals, 0));
        const QByteArray key = metadataKey(name);
        if (equals < 0)
            return UsageError{"--meta " + text + " is not of the form KEY=VALUE", {}};
        if (key.isEmpty())
            return UsageError{"a spectrum has no field " + name, closestTo(name, metadataKeys())};
        QJsonObject trial;
        if (!setMetadata(trial, key, text.sliced(equals + 1)))
            return UsageError{text.sliced(equals + 1) + " is no value of " + key, {}};
        job.fields.append({key, text.sliced(equals + 1)});
    }
    return std::nullopt;
}

} // namespace

std::variant<ConvertJob, UsageError> convertJob(const Arguments &arguments)
{
    if (arguments.operands().size() != 1)
        return UsageError{"one file has to be named", {}};
    const QByteArray &name = arguments.operands().first();
    ConvertJob job;
    job.input = {name, libraryPath(name)};
    job.output = arguments.value("output");
    if (job.output == "-")
        job.output.clear();
    job.to = arguments.value("to", formatOfName(job.output));
    job.from = arguments.value("from");
    job.spectrum = arguments.value("spectrum");
    job.isLenient = arguments.has("lenient");
    if (arguments.has("to") && !outputFormats().contains(job.to))
        return UsageError{"the format " + job.to + " is none of " + outputFormats().join(", "),
                          closestTo(job.to, outputFormats())};
    if (!job.from.isEmpty() && !inputFormats().contains(job.from))
        return UsageError{"the format " + job.from + " is none of " + inputFormats().join(", "),
                          closestTo(job.from, inputFormats())};
    if (!isSpectrumChoice(job.spectrum, false))
        return UsageError{"--spectrum " + job.spectrum + " is not a number", {}};
    const QByteArray decimal = arguments.value("decimal");
    if (!decimal.isEmpty() && decimal != "point" && decimal != "comma")
        return UsageError{"the decimal sign is point or comma, not " + decimal, {}};
    job.decimal = decimal == "comma" ? ',' : decimal == "point" ? '.' : '\0';
    if (const auto error = readEnergies(arguments, job))
        return *error;
    if (arguments.has("columns")) {
        job.columns = arguments.value("columns").split(',');
        if (job.columns.size() != 2)
            return UsageError{"--columns needs two columns, as 1,2", {}};
    }
    if (const auto error = readFields(arguments.values("meta"), job))
        return *error;
    const QFileInfo output(libraryPath(job.output));
    if (!job.output.isEmpty() && output.exists() && output == QFileInfo(job.input.path))
        return UsageError{"OUT is FILE itself", {}};
    if (!job.output.isEmpty() && isSpeciesFile(output.filePath()))
        return UsageError{job.output + " is a species file, which is not overwritten", {}};
    return job;
}

QByteArray whyNoFormat(const ConvertJob &job)
{
    QByteArray missing = "--to FORMAT is missing";
    const QByteArray ending = endingOf(job.output);
    if (job.output.isEmpty())
        return missing;
    if (ending.isEmpty())
        return job.output + " has no ending that tells the format, and " + missing;
    return "the ending ." + ending + " tells no format, and " + missing;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/savecheck.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/convertjob.h"
#include "cli/filenames.h"
#include "cli/pickspectrum.h"
#include "cli/readfile.h"
#include "cli/writefile.h"
#include "exchange/jcampreader.h"
#include "exchange/jcampwriter.h"
#include "exchange/metadata.h"
#include "exchange/tablereader.h"
#include "exchange/tablewriter.h"
#include "files/filebytes.h"
#include "files/jsonfile.h"
#include "spectrum/assaved.h"
#include "spectrum/spectrumfile.h"
#include "spectrum/spectrumobject.h"

#include <QDate>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <optional>

namespace
{

constexpr std::array options{
    Option{"output", 'o', "OUT", "the file to write; standard output if not given, or -"},
    Option{"to", 't', "csv|tsv|jcamp|json", "the format; told by OUT's ending if not given"},
    Option{"from", 'f', "table|jcamp|json", "FILE's format; told by its contents if not given"},
    Option{"spectrum", 's', "N", "the spectrum of a file of several: DatasetN of a species"},
    Option{"decimal", 0, "point|comma", "the decimal sign of the table read, else written"},
    Option{"columns", 0, "E,I", "the columns of energy and intensity, by number or heading"},
    Option{"energy-unit", 0, "eV|meV|keV|nm|A|um|cm-1|Hartree|kJ/mol",
           "the energies' unit, whatever FILE says of it"},
    Option{"energy", 0, "photon", "they are photon energies, whatever FILE calls them"},
    Option{"lenient", 0, nullptr, "take JCAMP-DX with wrong check values, and name them"},
    Option{"meta", 0, "KEY=VALUE", "set a field of the spectrum; may be given several times"},
};

constexpr char details[] =
    R"(Turns one spectrum of FILE, or of standard input where FILE is "-", into another
format: csv and tsv are tables, jcamp is JCAMP-DX 5.01, json is the editor's own
spectrum file. Tables may have commas, semicolons, tabs or white space between the
columns and decimal points or commas; a table that could be read in two ways is
refused, with the line and the reason. Energies in a unit that headings, comments or
XUNITS name become eV, wavelengths in vacuum too, and the points are sorted by them
then. Kinetic and binding energies are refused, and so are other units. All digits
are kept. The fields of the spectrum stand in comments of a table and under labels of
their own in JCAMP-DX. What cannot be kept is named on standard error.

Examples:
  zoravel convert -o scan.json --meta Title="Benzene, 300 K" scan.csv
  zoravel convert --spectrum 2 --to csv --decimal comma furan.json
  zoravel convert --energy-unit nm -o lamp.json lamp.txt
)";

constexpr qsizetype tellingBytes = 4096; // at the start of a file

// The format of a file that begins with these bytes.
QByteArray formatOf(const ConvertJob &job, const QByteArray &bytes)
{
    if (!job.from.isEmpty())
        return job.from;
    QByteArray start = bytes.left(tellingBytes);
    if (start.startsWith("\xef\xbb\xbf"))
        start.remove(0, 3);
    start = start.trimmed();
    if (start.startsWith('{'))
        return "json";
    return start.startsWith("##") || start.startsWith("$$") ? "jcamp" : "table";
}

std::variant<ExchangedSpectrum, ExchangeError> readJson(const QByteArray &bytes,
                                                        const ConvertJob &job)
{
    if (job.energies.unit)
        return ExchangeError{0, "energies in JSON are in eV: --energy-unit is for other files"};
    QJsonParseError error;
    const QJsonObject file = QJsonDocument::fromJson(bytes, &error).object();
    if (error.error != QJsonParseError::NoError)
        return ExchangeError{1 + qsizetype(bytes.first(error.offset).count('\n')),
                             "no JSON: " + error.errorString().toUtf8()};
    const auto picked = pickSpectra(file, job.spectrum);
    if (const auto *reason = std::get_if<QByteArray>(&picked))
        return ExchangeError{0, *reason};
    QJsonObject object = std::get<QList<NumberedSpectrum>>(picked).first().object;
    if (const QByteArray lost = whyPointsAreLost(object); !lost.isEmpty())
        return ExchangeError{0, "the points are not sound: " + lost};
    ExchangedSpectrum spectrum{{}, storedPoints(object), {}};
    for (const QByteArray &loss : lossesInReading(bytes))
        spectrum.warnings.append("not kept: " + loss);
    if (const QByteArray rest = whatElsePointsHold(object); !rest.isEmpty())
        spectrum.warnings.append("not kept: " + rest);
    for (const QLatin1String key : {typeKey, energiesKey, intensitiesKey, pointObjectsKey})
        object.remove(key);
    spectrum.metadata = object;
    return spectrum;
}

std::variant<ExchangedSpectrum, ExchangeError> readSpectrum(const QByteArray &bytes,
                                                            const ConvertJob &job)
{
    const QByteArray from = formatOf(job, bytes);
    if (from == "json")
        return readJson(bytes, job);
    if (from == "jcamp")
        return readJcamp(bytes, {job.spectrum.toInt(), job.energies, job.isLenient});
    if (job.spectrum.toInt() > 1)
        return ExchangeError{0, "a table holds one spectrum"};
    return readTable(bytes, {job.decimal, job.columns, job.energies});
}

// The whole spectrum object: the editor's record decides what belongs into it.
QJsonObject completed(const ExchangedSpectrum &spectrum, const QByteArray &name, Console &console)
{
    QJsonObject object = asSavedSpectrum(spectrum.metadata);
    for (auto member = spectrum.metadata.begin(); member != spectrum.metadata.end(); ++member) {
        const QJsonValue kept = object.value(member.key());
        if (kept == member.value() || member.value() == QJsonValue(QString()))
            continue;
        const bool isPart = member.value().isString() && !kept.toString().isEmpty();
        console.error(name + ": not kept: " + member.key().toUtf8() + ": "
                      + metadataText(member.key(), member.value())
                      + (isPart ? " becomes " + metadataText(member.key(), kept) : QByteArray()));
    }
    storePoints(object, spectrum.points);
    return object;
}

QByteArray written(const QJsonObject &object, const ConvertJob &job, bool inputIsTable)
{
    // If both files are tables, the given decimal sign belongs to the input.
    const char decimal = job.decimal == ',' && !inputIsTable ? ',' : '.';
    if (job.to == "csv")
        return writeTable(object, decimal == ',' ? ';' : ',', decimal);
    if (job.to == "tsv")
        return writeTable(object, '\t', decimal);
    if (job.to == "jcamp")
        return writeJcamp(object);
    return QJsonDocument(spectrumFileObject(object)).toJson(QJsonDocument::Indented);
}

QByteArray startOf(const QString &path)
{
    QByteArray start;
    static_cast<void>(readFilePieces(path, [&](QByteArrayView piece) {
        start = piece.first(std::min(piece.size(), tellingBytes)).toByteArray();
        return false;
    }));
    return start;
}

std::optional<QByteArray> readBytes(const ConvertJob &job, Console &console)
{
    if (job.input.name == "-") {
        std::optional<QByteArray> input = console.readInput();
        if (!input)
            console.error("standard input cannot be read");
        return input;
    }
    FileProblem problem = FileProblem::None;
    std::optional<QByteArray> bytes = formatOf(job, startOf(job.input.path)) == "json"
                                          ? readJsonText(job.input.path, &problem)
                                          : readFileBytes(job.input.path, largestFile, &problem);
    if (!bytes)
        console.error(shownName(job.input.name) + ": " + whyUnreadable(job.input, problem));
    return bytes;
}

int write(const ConvertJob &job, const QByteArray &bytes, Console &console)
{
    if (job.to == "json" && !fitsIntoFile(bytes)) {
        console.error(shownName(job.output.isEmpty() ? "<stdout>" : job.output)
                      + ": not written: it would be too large to be read");
        return exitFailure;
    }
    if (!job.output.isEmpty())
        return writeFile(job.output, bytes, console) ? exitFine : exitFailure;
    console.out(bytes);
    return exitFine;
}

// The option that helps, for the end of a message.
QByteArray optionFor(Remedy remedy)
{
    switch (remedy) {
    case Remedy::None:
        return "";
    case Remedy::NameUnit:
        return "; say the unit by --energy-unit";
    case Remedy::ConfirmPhotons:
        return "; if they are meant, say --energy photon";
    case Remedy::NameUnitConfirmPhotons:
        return "; say their unit by --energy-unit, and --energy photon if they are those of "
               "photons";
    case Remedy::PassOverChecks:
        return "; --lenient takes the file nevertheless";
    }
    Q_UNREACHABLE();
}

int convert(const ConvertJob &job, Console &console)
{
    const std::optional<QByteArray> bytes = readBytes(job, console);
    if (!bytes)
        return exitFailure;
    auto read = readSpectrum(*bytes, job);
    const QByteArray name =
        job.input.name == "-" ? QByteArray("<stdin>") : shownName(job.input.name);
    if (const auto *error = std::get_if<ExchangeError>(&read)) {
        const QByteArray line =
            error->line > 0 ? QByteArray(':' + QByteArray::number(error->line)) : QByteArray();
        console.error(name + line + ": " + shownName(error->reason) + optionFor(error->remedy));
        return exitFailure;
    }
    auto &spectrum = std::get<ExchangedSpectrum>(read);
    for (const QByteArray &warning : std::as_const(spectrum.warnings))
        console.error(name + ": " + shownName(warning));
    for (const auto &[key, value] : job.fields)
        static_cast<void>(setMetadata(spectrum.metadata, key, value));
    // The editor's new spectra have this date too.
    const QString created = keyOf(SpectrumColumn::CreatedDate);
    if (!spectrum.metadata.contains(created))
        spectrum.metadata.insert(created, QDate::currentDate().toString(Qt::ISODate));
    const bool isTable = formatOf(job, *bytes) == "table";
    return write(job, written(completed(spectrum, name, console), job, isTable), console);
}

int run(const Arguments &arguments, Console &console)
{
    const auto read = convertJob(arguments);
    if (const auto *error = std::get_if<UsageError>(&read))
        return usageError(console, convertCommand(), *error);
    const auto &job = std::get<ConvertJob>(read);
    if (!job.to.isEmpty())
        return convert(job, console);
    // A mistyped name is the likelier error if the only file does not exist.
    if (job.input.name == "-" || QFileInfo::exists(job.input.path))
        return usageError(console, convertCommand(), {whyNoFormat(job), {}});
    console.error(shownName(job.input.name) + ": "
                  + whyUnreadable(job.input, FileProblem::Inaccessible));
    return exitFailure;
}

} // namespace

const Command &convertCommand()
{
    static constexpr Command command{"convert", "FILE",  "Turn a spectrum into another format",
                                     details,   options, run};
    return command;
}

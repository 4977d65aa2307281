// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/checker.h"
#include "check/memberreader.h"
#include "check/report.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/interruption.h"
#include "cli/readfile.h"
#include "cli/writefile.h"
#include "database/databasecompiler.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"

#include <QDate>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <array>
#include <optional>
#include <thread>
#include <vector>

namespace
{

// The defaults of the editor's dialog.
constexpr char defaultVersion[] = "1.0";
constexpr char defaultRelease[] = "3.0";
constexpr char defaultTitle[] =
    "ZORAVEL collection of molecular photoionisation spectra, Tarnwick Institute, 2020-2026";

constexpr std::array options{
    Option{"output", 'o', "DB.json", "the database file; has to be given"},
    Option{"compact", 0, nullptr, "without white space"},
    Option{"db-version", 0, "V", "the database's version, 1.0 if not given"},
    Option{"release", 0, "R", "the data release, 3.0 if not given"},
    Option{"title", 0, "T", "the title, the editor's own if not given"},
    Option{"strict", 0, nullptr, "refuse files in which \"zoravel check\" finds errors"},
    Option{"check", 0, nullptr, "write nothing; say whether DB.json is up to date"},
};

constexpr char details[] =
    R"(The entries are the files in the order in which they are named; a folder stands
for all its files *.json and then those of its subfolders, each in natural order.
DB.json itself is left out where it lies in such a folder. The file is, byte for
byte, what the editor writes of the same files on the same day. If there is
anything wrong with a file, all such files are named and nothing is written.

Errors that "zoravel check" finds in the files are counted in one line; with --strict
they are named, nothing is written and the status is 1.

With --check the status is 1 if DB.json is missing or is not what would be written
with the same options, apart from its date.

Examples:
  zoravel compile -o collection.json species/
  zoravel compile --check -o collection.json species/
)";

struct Job {
    QByteArray output;
    QList<InputFile> inputs;
    QStringList paths; // of the inputs
    DatabaseHeader header;
    QJsonDocument::JsonFormat format;
};

// Names every input that is no species file. Returns whether there was one.
bool nameBadInputs(const Job &job, Console &console)
{
    bool found = false;
    Progress progress(console, "Reading again", job.inputs.size());
    for (qsizetype i = 0; i < job.inputs.size(); ++i) {
        progress.advance(i);
        const InputFile &input = job.inputs[i];
        FileProblem problem = FileProblem::None;
        const std::optional<QJsonObject> object = readJsonObject(input.path, &problem);
        if (object && hasType(*object, speciesFileType))
            continue;
        found = true;
        progress.clear();
        console.error(
            shownName(input.name) + ": "
            + (object ? QByteArray("not a species file") : whyUnreadable(input, problem)));
    }
    return found;
}

int fail(const Job &job, const CompileError &error, Console &console)
{
    switch (error.kind) {
    case CompileError::UnreadableInput:
    case CompileError::InvalidInput:
        // The file may have become valid since, but too late.
        if (!nameBadInputs(job, console))
            console.error(error.file.toUtf8()
                          + (error.isTooLarge ? ": too large" : ": changed while it was read"));
        break;
    case CompileError::UnreadableOutput:
        console.error(shownName(job.output) + ": cannot be read");
        break;
    case CompileError::UnwritableOutput: // is said where it is found
    case CompileError::Cancelled:
        break;
    }
    return exitFailure;
}

// The errors that the checks find in the inputs.
Report errorsIn(const Job &job, Console &console)
{
    std::vector<CheckInput> inputs;
    for (const InputFile &input : job.inputs)
        inputs.push_back({QString::fromUtf8(input.name), input.path, std::nullopt});
    Progress progress(console, "Checking", job.inputs.size());
    CheckOptions checking;
    checking.jobs = std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
    // This check takes most of the time and never reports errors.
    checking.file.enabled.reset(static_cast<std::size_t>(Check::WouldChange));
    checking.progress = [&](qsizetype done) {
        progress.advance(done);
        return true;
    };
    Report report{checkFiles(inputs, checking), job.inputs.size(), {}};
    report.findings.removeIf(
        [](const Finding &finding) { return finding.severity != Severity::Error; });
    return report;
}

QByteArray counted(qsizetype count, const char *what)
{
    return QByteArray::number(count) + ' ' + what + (count == 1 ? "" : "s");
}

void sayHowManyErrors(const Report &errors, Console &console)
{
    QSet<QString> files;
    for (const Finding &finding : errors.findings)
        files.insert(finding.path);
    if (!files.isEmpty())
        console.error(counted(errors.findings.size(), "error") + " in "
                      + counted(files.size(), "file") + ", which \"zoravel check\" names");
}

int refuse(const Job &job, const Report &errors, bool isComparison, Console &console)
{
    console.err(textReport(errors, false));
    console.error(shownName(job.output) + (isComparison ? ": not compared" : ": not written"));
    return nameBadInputs(job, console) ? exitFailure : exitFindings;
}

std::optional<CompileError> write(const Job &job, Console &console)
{
    const InterruptionHold hold;
    OutputFile output(job.output);
    Progress progress(console, "Compiling", job.inputs.size());
    const auto advance = [&](int done, int) {
        progress.advance(done);
        return !InterruptionHold::isRequested();
    };
    std::optional<CompileError> error =
        compileDatabase(job.paths, output.path(), job.header, job.format, advance);
    progress.clear();
    if (error && error->kind != CompileError::UnwritableOutput)
        return error;
    if (!error && output.putInPlace())
        return std::nullopt;
    sayUnwritable(job.output, console);
    return CompileError{CompileError::UnwritableOutput};
}

int compile(const Job &job, Console &console)
{
    // An interruption during the write ends the program before bad inputs are named, which takes
    // long.
    const std::optional<CompileError> error = write(job, console);
    return error ? fail(job, *error, console) : exitFine;
}

int compare(const Job &job, Console &console)
{
    Progress progress(console, "Comparing", job.inputs.size());
    const auto advance = [&](int done, int) {
        progress.advance(done);
        return true;
    };
    const std::variant<bool, CompileError> result =
        isDatabaseUpToDate(job.paths, libraryPath(job.output), job.header, job.format, advance);
    progress.clear();
    if (const auto *error = std::get_if<CompileError>(&result))
        return fail(job, *error, console);
    if (std::get<bool>(result))
        return exitFine;
    console.out(shownName(job.output) + ": not up to date\n");
    return exitFindings;
}

// Why the output must not be overwritten; nothing if it may be.
QByteArray whyNotOverwritten(const Job &job)
{
    // The first keys decide, even for a file that is broken further down. A database may be large.
    QFile file(libraryPath(job.output));
    const bool isRead = QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly);
    return isRead && kindByFirstKeys(file) == FileKind::Species
               ? "is a species file, which is not overwritten"
               : "";
}

int run(const Arguments &arguments, Console &console)
{
    const auto text = [&](const char *option, const char *absent) {
        return QString::fromUtf8(arguments.value(option, absent));
    };
    if (!arguments.has("output"))
        return usageError(console, compileCommand(), {"-o DB.json is missing", {}});
    if (arguments.value("output") == "-")
        return usageError(console, compileCommand(), {"DB.json has to be a file", {}});
    if (arguments.operands().isEmpty())
        return usageError(console, compileCommand(), {"no species file is named", {}});

    Job job{arguments.value("output"),
            {},
            {},
            {text("db-version", defaultVersion), text("release", defaultRelease),
             text("title", defaultTitle), QDate::currentDate()},
            arguments.has("compact") ? QJsonDocument::Compact : QJsonDocument::Indented};
    const InputList list = listInputs(arguments.operands(), job.output);
    const bool hasBadFolders = nameBadFolders(list, console);
    job.inputs = list.files;
    for (const InputFile &input : list.files)
        job.paths.append(input.path);
    if (hasBadFolders) {
        nameBadInputs(job, console);
        return exitFailure;
    }
    const bool isComparison = arguments.has("check");
    const bool isStrict = arguments.has("strict");
    if (const QByteArray reason = whyNotOverwritten(job); !isComparison && !reason.isEmpty())
        return usageError(console, compileCommand(), {job.output + ' ' + reason, {}});
    const Report errors = isStrict || !isComparison ? errorsIn(job, console) : Report();
    if (isStrict && !errors.findings.isEmpty())
        return refuse(job, errors, isComparison, console);
    if (isComparison)
        return compare(job, console);
    const int status = compile(job, console);
    if (status == exitFine)
        sayHowManyErrors(errors, console);
    return status;
}

} // namespace

const Command &compileCommand()
{
    static constexpr Command command{
        "compile", "PATH...", "Compile species files into a database file", details, options,
        run,       true};
    return command;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/checker.h"
#include "check/overrides.h"
#include "check/report.h"
#include "cli/checkinputs.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/interruption.h"
#include "cli/readfile.h"
#include "files/filebytes.h"

#include <algorithm>
#include <array>
#include <optional>
#include <thread>
#include <variant>

namespace
{

constexpr std::array options{
    Option{"format", 'f', "text|json|github|sarif", "text if not given"},
    Option{"fail-on", 0, "error|warning|note|never", "error if not given"},
    Option{"min-severity", 0, "note|warning|error", "leave out what is milder"},
    Option{"only", 0, "ID,...", "run these checks alone"},
    Option{"skip", 0, "ID,...", "leave these checks out"},
    Option{"overrides", 0, "FILE", "findings that are known and right"},
    Option{"files-from", 0, "FILE", "check the files that FILE lists too; - is standard input"},
    Option{"null", '0', nullptr, "the names in that list end with zero bytes, not lines"},
    Option{"jobs", 'j', "N", "check N files at a time; as many as there are processors"},
    Option{"color", 0, "auto|always|never", "auto heeds NO_COLOR"},
};

constexpr char details[] =
    R"(A folder stands for all its files *.json and those of its subfolders; - is a file on
standard input. Findings are printed in the order of the files, then of their
lines, the same for every number of jobs. There is no output if there is nothing to
say. "zoravel explain ID" explains a check.

A file of overrides has a line "GLOB ID REASON" for each finding that was looked at
and found to be right; lines that nothing needs any more are reported.

What cannot be read is said whatever is asked for, also a link "*.json" in a folder that
leads nowhere.

The status is 1 if something at or above the level of --fail-on is reported, and 3 if
a file or folder cannot be read, a folder has no file, or checks that were asked for
could not be made, as the file is no JSON.

Examples:
  zoravel check species/
  zoravel check --only cas-check-digit --format json species/
)";

// An error of the command line or of what it names.
struct Refusal {
    int status;
};

struct Settings {
    QByteArray format;
    std::optional<Severity> failOn; // nothing for "never"
    Severity minSeverity = Severity::Note;
    bool coloured = false;
    CheckSet asked = CheckSet().set();
    CheckOptions check;
    QList<Override> overrides;
    QString overridesName;
};

// The checks that report unreadable files, for which no other check runs.
CheckSet checksOfReading()
{
    CheckSet set;
    for (const Check check :
         {Check::Unreadable, Check::NotUtf8, Check::JsonSyntax, Check::NumberRange})
        set.set(static_cast<std::size_t>(check));
    return set;
}

class SettingsReader
{
public:
    SettingsReader(const Arguments &arguments, Console &console)
        : m_arguments(arguments), m_console(console)
    {
    }

    std::variant<Settings, Refusal> read()
    {
        Settings settings;
        settings.format = word("format", {"text", "json", "github", "sarif"});
        const QByteArray failOn = word("fail-on", {"error", "warning", "note", "never"});
        settings.failOn = severityOfName(QString::fromLatin1(failOn));
        settings.minSeverity =
            severityOfName(QString::fromLatin1(word("min-severity", {"note", "warning", "error"})))
                .value_or(Severity::Note);
        const QByteArray colour = word("color", {"auto", "always", "never"});
        settings.coloured = colour == "always"
                            || (colour == "auto" && m_console.isOutTerminal()
                                && qEnvironmentVariableIsEmpty("NO_COLOR"));
        if (m_arguments.has("only"))
            settings.asked = checks("only");
        settings.asked &= ~checks("skip");
        settings.check.file.enabled = settings.asked | checksOfReading();
        settings.check.jobs = jobs();
        readOverrides(settings);
        if (m_refusal)
            return *m_refusal;
        return settings;
    }

private:
    void refuse(int status)
    {
        if (!m_refusal)
            m_refusal = Refusal{status};
    }

    // The value of an option that takes one of a few words; the first word without the option.
    QByteArray word(const char *option, const QByteArrayList &possible)
    {
        QByteArray value = m_arguments.value(option, possible.first());
        if (!possible.contains(value) && !m_refusal)
            refuse(
                usageError(m_console, checkCommand(), QByteArray("--") + option, value, possible));
        return value;
    }

    CheckSet checks(const char *option)
    {
        CheckSet set;
        const QByteArrayList values = m_arguments.values(option);
        for (const QByteArray &value : values) {
            for (const QByteArray &word : value.split(',')) {
                const QByteArray id = word.trimmed();
                if (id.isEmpty() && !m_refusal)
                    refuse(usageError(m_console, checkCommand(),
                                      {QByteArray("--") + option + " needs ids of checks", {}}));
                const std::optional<Check> check = checkOfId(QString::fromUtf8(id));
                if (check)
                    set.set(static_cast<std::size_t>(*check));
                else if (!m_refusal)
                    refuse(usageError(m_console, checkCommand(),
                                      {"there is no check " + id, closestTo(id, checkIds())}));
            }
        }
        return set;
    }

    int jobs()
    {
        constexpr int most = 256;
        const int processors = static_cast<int>(std::thread::hardware_concurrency());
        const QByteArray value =
            m_arguments.value("jobs", QByteArray::number(std::max(processors, 1)));
        bool ok = false;
        const int number = value.toInt(&ok);
        if ((!ok || number < 1 || number > most) && !m_refusal)
            refuse(usageError(m_console, checkCommand(),
                              {"--jobs takes a number from 1 to 256, not " + value, {}}));
        return number;
    }

    void readOverrides(Settings &settings)
    {
        if (m_refusal || !m_arguments.has("overrides"))
            return;
        const QByteArray name = m_arguments.value("overrides");
        const InputFile file{name, libraryPath(name)};
        FileProblem problem = FileProblem::None;
        const std::optional<QByteArray> bytes = readFileBytes(file.path, largestFile, &problem);
        if (!bytes) {
            m_console.error(shownName(name) + ": " + whyUnreadable(file, problem));
            refuse(exitFailure);
            return;
        }
        auto parsed = parseOverrides(*bytes);
        if (const auto *error = std::get_if<OverrideError>(&parsed)) {
            m_console.error(shownName(name) + ':' + QByteArray::number(error->line) + ": "
                            + error->message.toUtf8());
            refuse(exitUsage);
            return;
        }
        settings.overrides = std::get<QList<Override>>(std::move(parsed));
        settings.overridesName = QString::fromUtf8(name);
    }

    const Arguments &m_arguments;
    Console &m_console;
    std::optional<Refusal> m_refusal;
};

QByteArray reportAs(const QByteArray &format, const Report &report, bool coloured)
{
    if (format == "json")
        return jsonReport(report);
    if (format == "github")
        return githubReport(report);
    if (format == "sarif")
        return sarifReport(report);
    return textReport(report, coloured);
}

bool isAsked(const Settings &settings, const Finding &finding)
{
    return settings.asked.test(static_cast<std::size_t>(finding.check));
}

QList<Finding> findingsOf(const CheckInputs &inputs, Settings &settings, Console &console)
{
    const auto total = static_cast<qsizetype>(inputs.files.size());
    Progress progress(console, "Checking", total);
    settings.check.progress = [&](qsizetype done) {
        progress.advance(done);
        return !console.isOutputClosed();
    };
    QList<Finding> findings = checkFiles(inputs.files, settings.check);
    progress.clear();
    applyOverrides(settings.overrides, settings.overridesName, findings);
    findings.removeIf([&](const Finding &finding) {
        return finding.severity < settings.minSeverity
               || (!finding.endsReading && !isAsked(settings, finding));
    });
    return findings;
}

int run(const Arguments &arguments, Console &console)
{
    auto read = SettingsReader(arguments, console).read();
    if (const auto *refusal = std::get_if<Refusal>(&read))
        return refusal->status;
    auto &settings = std::get<Settings>(read);
    if (arguments.operands().isEmpty() && !arguments.has("files-from"))
        return usageError(console, checkCommand(), {"no file or folder is named", {}});
    const CheckInputs inputs = checkInputs(arguments, console);
    Report report;
    report.findings = findingsOf(inputs, settings, console);
    report.files = static_cast<qsizetype>(inputs.files.size());
    report.toolVersion = ZORAVEL_VERSION;
    console.out(reportAs(settings.format, report, settings.coloured));

    const auto has = [&](auto predicate) {
        return std::any_of(report.findings.cbegin(), report.findings.cend(), predicate);
    };
    // A file that is no JSON is a finding if that check is asked for. If only others are asked for,
    // they could not run.
    const auto isUnread = [&](const Finding &finding) {
        return finding.endsReading
               && (finding.check == Check::Unreadable || !isAsked(settings, finding));
    };
    if (inputs.failed || has(isUnread))
        return exitFailure;
    const bool fails = settings.failOn && has([&](const Finding &finding) {
                           return finding.severity >= *settings.failOn;
                       });
    return fails ? exitFindings : exitFine;
}

} // namespace

QByteArrayList checkIds()
{
    QByteArrayList ids;
    for (const CheckInfo &info : allChecks())
        ids.append(QByteArray(info.id.data(), info.id.size()));
    return ids;
}

const Command &checkCommand()
{
    static const Command command{
        "check", "PATH...", "Say everything that is wrong in files", details, options, run, true};
    return command;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/savecheck.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/readfile.h"
#include "cli/writefile.h"
#include "files/filebytes.h"
#include "files/jsonfile.h"
#include "spectrum/assaved.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <optional>

namespace
{

constexpr std::array options{
    Option{"check", 0, nullptr, "write nothing; name the files that would change"},
    Option{"in-place", 'i', nullptr, "write each file that would change anew"},
    Option{"lossy", 0, nullptr, "with --in-place: write also what loses something, and name it"},
};

constexpr char details[] =
    R"(Writes a species or spectrum file exactly as the editor does that has opened it and
saves it: to standard output, or with --in-place in its own place, as a whole or
not at all. What gets lost on the way is named on standard error: keys that the
editor does not know or that are written twice, values of another type than it
expects, points that it cannot read, digits behind the sixth of a point. With
--in-place a file that would lose something stays as it is, and the status is 1;
--lossy writes it nevertheless.

With --check the status is 1 if a file would change. A folder stands for all its
files *.json and those of its subfolders but databases.

Examples:
  zoravel format --check species/
  zoravel format --in-place benzene.json
)";

int replace(const InputFile &input, const QByteArray &after, bool mayLose, Console &console)
{
    const auto refuse = [&](const char *why) {
        console.error(shownName(input.name) + ": left as it is: " + why);
        return exitFindings;
    };
    if (!mayLose)
        return refuse("--lossy writes it nevertheless");
    if (!fitsIntoFile(after))
        return refuse("it would be too large to be read again");
    return writeFile(input.name, after, console) ? exitFine : exitFailure;
}

// Handles one file and reports on standard error what it loses. Returns the status for this file
// alone.
int formatFile(const InputFile &input, const Arguments &arguments, Console &console)
{
    const std::optional<QJsonObject> object = readObject(input, console);
    if (!object)
        return exitFailure;
    if (isPassedOver(input, *object, PassOver::Databases))
        return exitFine;
    const std::optional<QJsonObject> saved = asSavedFile(*object);
    if (!saved) {
        console.error(shownName(input.name) + ": neither a species nor a spectrum file");
        return exitFailure;
    }
    FileProblem problem = FileProblem::None;
    const std::optional<QByteArray> before = readJsonText(input.path, &problem);
    if (!before) {
        console.error(shownName(input.name) + ": " + whyUnreadable(input, problem));
        return exitFailure;
    }
    const QByteArrayList losses = lossesInReading(*before) + lossesBetween(*object, *saved);
    for (const QByteArray &loss : losses)
        console.error(shownName(input.name) + ": not kept: " + shownName(loss));
    const QByteArray after = QJsonDocument(*saved).toJson(QJsonDocument::Indented);
    const bool changes = *before != after;
    if (arguments.has("check")) {
        if (changes)
            console.out(shownName(input.name) + '\n');
        return changes ? exitFindings : exitFine;
    }
    if (arguments.has("in-place"))
        return changes ? replace(input, after, losses.isEmpty() || arguments.has("lossy"), console)
                       : exitFine;
    console.out(after);
    return exitFine;
}

int run(const Arguments &arguments, Console &console)
{
    const bool check = arguments.has("check");
    const bool inPlace = arguments.has("in-place");
    if (check && inPlace)
        return usageError(console, formatCommand(),
                          {"--check and --in-place exclude each other", {}});
    if (arguments.has("lossy") && !inPlace)
        return usageError(console, formatCommand(), {"--lossy needs --in-place", {}});
    if (arguments.operands().isEmpty())
        return usageError(console, formatCommand(), {"no file is named", {}});
    const InputList list = listInputs(arguments.operands());
    if (!check && !inPlace && list.files.size() > 1)
        return usageError(console, formatCommand(),
                          {"several files need --check or --in-place", {}});

    int status = nameBadFolders(list, console) ? exitFailure : exitFine;
    Progress progress(console, "Formatting", list.files.size());
    for (qsizetype i = 0; i < list.files.size() && !console.isOutputClosed(); ++i) {
        progress.advance(i);
        status = std::max(status, formatFile(list.files[i], arguments, console));
    }
    return status;
}

} // namespace

const Command &formatCommand()
{
    static constexpr Command command{
        "format", "PATH...", "Write files as the editor saves them", details, options, run, true};
    return command;
}

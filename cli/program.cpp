// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/program.h"

#include "cli/command.h"
#include "cli/console.h"
#include "cli/filenames.h"

#include <algorithm>
#include <array>

namespace
{

constexpr char helpDetails[] =
    R"(Shows the commands, or what "zoravel COMMAND --help" shows.

Examples:
  zoravel help convert
)";

int runHelp(const Arguments &arguments, Console &console);

constexpr Command helpCommand{"help",      "[COMMAND]", "Say more about a command",
                              helpDetails, {},          runHelp};

const std::array commands{
    &compileCommand(), &checkCommand(), &explainCommand(), &plotCommand(), &convertCommand(),
    &formatCommand(),  &listCommand(),  &diffCommand(),    &helpCommand,
};

constexpr char programDetails[] =
    R"(The status is 0 if all went well, 1 if there are findings or differences, 2 if the
command line is wrong and 3 if something could not be read or written.
)";

void printVersion(Console &console)
{
    console.out("zoravel " ZORAVEL_VERSION "\n");
}

// A line of two columns; a first column that is too wide gets its own line.
QByteArray columns(const QByteArray &first, const QByteArray &second)
{
    constexpr qsizetype width = 24;
    const QByteArray left = "  " + first;
    if (left.size() + 2 > width)
        return left + '\n' + QByteArray(width, ' ') + second + '\n';
    return left.leftJustified(width) + second + '\n';
}

QByteArray optionLine(const Option &option)
{
    QByteArray forms(option.letter ? "-?, --" : "    --");
    forms.replace('?', option.letter);
    forms += option.name;
    if (option.value)
        forms += QByteArray(" ") + option.value;
    return columns(forms, option.help);
}

void printProgramHelp(Console &console)
{
    QByteArray help = "Usage: zoravel COMMAND [OPTION...] [OPERAND...]\n"
                      "Works on a collection of photoionisation spectra: species files and the\n"
                      "database compiled of them.\n\nCommands:\n";
    for (const Command *command : commands)
        help += columns(command->name, command->summary);
    help += "\nOptions:\n" + optionLine(helpOption)
            + optionLine({"version", 0, nullptr, "show the version and end"})
            + "\n\"zoravel help COMMAND\" says more about a command.\n" + programDetails;
    console.out(help);
}

void printHelp(Console &console, const Command &command)
{
    QByteArray help = QByteArray("Usage: zoravel ") + command.name + " [OPTION...] "
                      + command.operands + '\n' + command.summary + ".\n\nOptions:\n";
    for (const Option &option : command.options)
        help += optionLine(option);
    console.out(help + optionLine(helpOption) + '\n' + command.details);
}

QByteArrayList commandNames()
{
    QByteArrayList names;
    for (const Command *command : commands)
        names.append(command->name);
    return names;
}

const Command *commandNamed(const QByteArray &name)
{
    const auto it = std::find_if(commands.begin(), commands.end(),
                                 [&](const Command *command) { return name == command->name; });
    return it != commands.end() ? *it : nullptr;
}

int say(Console &console, const QByteArray &program, const UsageError &error)
{
    QByteArray text = program + ": " + shownName(error.what);
    if (!error.hint.isEmpty())
        text += "; did you mean " + error.hint + '?';
    console.err(text + "\nSee \"" + program + " --help\".\n");
    return exitUsage;
}

UsageError unknownCommand(const QByteArray &name)
{
    return {"unknown command " + name, closestTo(name, commandNames())};
}

int runHelp(const Arguments &arguments, Console &console)
{
    const QByteArrayList &names = arguments.operands();
    if (names.size() > 1)
        return usageError(console, helpCommand, {"one command can be named", {}});
    if (names.isEmpty()) {
        printProgramHelp(console);
        return exitFine;
    }
    const Command *command = commandNamed(names.first());
    if (!command)
        return usageError(console, helpCommand, unknownCommand(names.first()));
    printHelp(console, *command);
    return exitFine;
}

int runCommand(const Command &command, const QByteArrayList &words, Console &console)
{
    const std::variant<Arguments, UsageError> parsed = Arguments::parse(words, command.options);
    if (const auto *error = std::get_if<UsageError>(&parsed))
        return usageError(console, command, *error);
    const auto &arguments = std::get<Arguments>(parsed);
    if (!arguments.has(helpOption.name))
        return command.run(arguments, console);
    printHelp(console, command);
    return exitFine;
}

int dispatch(const QByteArrayList &words, Console &console)
{
    if (words.isEmpty())
        return say(console, "zoravel", {"a command is missing", {}});
    const QByteArray &first = words.first();
    if (first == "--version") {
        printVersion(console);
        return exitFine;
    }
    if (first == "--help" || first == "-h") {
        printProgramHelp(console);
        return exitFine;
    }
    if (const Command *command = findCommand(words))
        return runCommand(*command, words.sliced(1), console);
    if (first.startsWith('-'))
        return say(console, "zoravel",
                   {"unknown option " + first, closestTo(first, {"--help", "--version"})});
    return say(console, "zoravel", unknownCommand(first));
}

} // namespace

const Command *findCommand(const QByteArrayList &words)
{
    return words.isEmpty() ? nullptr : commandNamed(words.first());
}

int usageError(Console &console, const Command &command, const UsageError &error)
{
    return say(console, QByteArray("zoravel ") + command.name, error);
}

int usageError(Console &console, const Command &command, const QByteArray &what,
               const QByteArray &word, const QByteArrayList &possible)
{
    return usageError(
        console, command,
        {what + ' ' + word + " is none of " + possible.join(", "), closestTo(word, possible)});
}

int runProgram(const QByteArrayList &words, Console &console)
{
    const int status = dispatch(words, console);
    return console.flush() ? status : exitFailure;
}

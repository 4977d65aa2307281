// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commandline.h"

#include <QByteArray>
#include <QByteArrayView>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace
{

constexpr char helpText[] =
    R"(Usage: zoravel-entry-edit [OPTION...] [--] [FILE]
Edit the entries of a collection of photoionisation spectra.

FILE is the species file (JSON) of an entry to open. After "--" it may begin
with a dash.

  -h, --help     show this help and exit
  -v, --version  show the version and exit

The options of the Qt toolkit, such as -style, work as well.
)";

constexpr char versionText[] = "zoravel-entry-edit " ZORAVEL_VERSION "\n";

constexpr char refusalHint[] = "Try 'zoravel-entry-edit --help'.\n";

// The options that QApplication and its platform plugins take out of the arguments. Each begins
// with one dash or two; a value is the next argument or, for some options, follows an equals sign.
enum class Value { None, Next, NextOrEquals };

struct QtOption {
    QByteArrayView name;
    Value value;
};

constexpr QtOption qtOptions[] = {
    {"display", Value::Next},
    {"dograb", Value::None},
    {"geometry", Value::Next},
    {"icon", Value::Next},
    {"name", Value::Next},
    {"nograb", Value::None},
    {"platform", Value::Next},
    {"platformpluginpath", Value::Next},
    {"platformtheme", Value::Next},
    {"plugin", Value::Next},
    {"qdebug", Value::None},
    {"qdevel", Value::None},
    {"qmljsdebugger", Value::NextOrEquals},
    {"qwindowgeometry", Value::Next},
    {"qwindowicon", Value::Next},
    {"qwindowtitle", Value::Next},
    {"reverse", Value::None},
    {"session", Value::Next},
    {"style", Value::NextOrEquals},
    {"stylesheet", Value::NextOrEquals},
    {"testability", Value::None},
    {"title", Value::Next},
    {"visual", Value::Next},
    {"widgetcount", Value::None},
};

// How many arguments an option of Qt takes, itself included; nothing if Qt does not know it.
std::optional<int> qtOptionLength(QByteArrayView argument)
{
    const QByteArrayView word = argument.sliced(argument.startsWith("--") ? 2 : 1);
    const qsizetype equals = word.indexOf('=');
    const QByteArrayView name = equals < 0 ? word : word.first(equals);
    const auto *option = std::find_if(std::begin(qtOptions), std::end(qtOptions),
                                      [name](const QtOption &known) { return known.name == name; });
    if (option == std::end(qtOptions))
        return std::nullopt;
    if (equals >= 0)
        return option->value == Value::NextOrEquals ? std::optional(1) : std::nullopt;
    return option->value == Value::None ? 1 : 2;
}

CommandLine refusal(const QString &problem)
{
    return {CommandLine::Request::Refusal, {}, problem, 0};
}

bool isWritten(std::FILE *stream, const char *text)
{
    return std::fputs(text, stream) >= 0 && std::fflush(stream) == 0;
}

} // namespace

CommandLine readCommandLine(int argc, const char *const *argv)
{
    CommandLine result{CommandLine::Request::Window, {}, {}, argc};
    bool optionsEnded = false;
    for (int i = 1; i < argc; ++i) {
        const QByteArrayView argument(argv[i]);
        const QString text = QString::fromLocal8Bit(argument);
        if (!optionsEnded && argument.size() > 1 && argument.startsWith('-')) {
            if (argument == "--") {
                optionsEnded = true;
                result.qtArguments = i;
            } else if (argument == "-h" || argument == "--help") {
                return {CommandLine::Request::Help, {}, {}, 0};
            } else if (argument == "-v" || argument == "--version") {
                return {CommandLine::Request::Version, {}, {}, 0};
            } else if (const std::optional<int> length = qtOptionLength(argument)) {
                i += *length - 1;
                if (i >= argc)
                    return refusal(QStringLiteral("option '%1' needs a value").arg(text));
            } else {
                return refusal(QStringLiteral("unknown option '%1'").arg(text));
            }
        } else if (!result.file.isNull()) {
            return refusal(QStringLiteral("more than one file: '%1'").arg(text));
        } else {
            result.file = text;
        }
    }
    return result;
}

int answerOnTerminal(const CommandLine &commandLine)
{
    switch (commandLine.request) {
    case CommandLine::Request::Help:
        return isWritten(stdout, helpText) ? 0 : 1;
    case CommandLine::Request::Version:
        return isWritten(stdout, versionText) ? 0 : 1;
    default: {
        const QByteArray problem = commandLine.problem.toLocal8Bit();
        std::fprintf(stderr, "zoravel-entry-edit: %s\n%s", problem.constData(), refusalHint);
        return 2;
    }
    }
}

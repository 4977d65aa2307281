// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/checkinputs.h"

#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/readfile.h"
#include "files/filebytes.h"

#include <QFileInfo>
#include <QSet>

#include <optional>
#include <utility>

namespace
{

const char standardInput[] = "-";

class InputCollector
{
public:
    InputCollector(const Arguments &arguments, Console &console)
        : m_arguments(arguments), m_console(console)
    {
    }

    CheckInputs collect()
    {
        for (const QByteArray &operand : m_arguments.operands())
            take(operand);
        const QByteArrayList lists = m_arguments.values("files-from");
        for (const QByteArray &list : lists)
            takeList(list);
        return std::move(m_inputs);
    }

private:
    void fail(const QByteArray &what)
    {
        m_console.error(what);
        m_inputs.failed = true;
    }

    void take(const QByteArray &operand)
    {
        if (operand == standardInput)
            return takeStandardInput();
        const InputList list = listInputs({operand});
        if (nameBadFolders(list, m_console))
            m_inputs.failed = true;
        for (const InputFile &file : list.files)
            takeFile(file);
    }

    void takeFile(const InputFile &file)
    {
        // A file that is named twice, even by different paths, is checked once.
        const QString canonical = QFileInfo(file.path).canonicalFilePath();
        if (!canonical.isEmpty() && m_seen.contains(canonical))
            return;
        m_seen.insert(canonical);
        m_inputs.files.push_back({QString::fromUtf8(file.name), file.path, std::nullopt});
    }

    void takeStandardInput()
    {
        if (std::exchange(m_inputTaken, true))
            return;
        if (std::optional<QByteArray> bytes = m_console.readInput())
            m_inputs.files.push_back({QStringLiteral("<stdin>"), QString(), *std::move(bytes)});
        else
            fail("standard input: cannot be read");
    }

    void takeList(const QByteArray &name)
    {
        std::optional<QByteArray> bytes;
        FileProblem problem = FileProblem::None;
        const InputFile file{name, libraryPath(name)};
        if (name != standardInput)
            bytes = readFileBytes(file.path, largestFile, &problem);
        else if (!std::exchange(m_inputTaken, true))
            bytes = m_console.readInput();
        if (!bytes)
            return fail(name == standardInput
                            ? QByteArray("standard input: cannot be read")
                            : shownName(name) + ": " + whyUnreadable(file, problem));
        const QByteArrayList names = bytes->split(m_arguments.has("null") ? '\0' : '\n');
        for (QByteArray each : names) {
            // Lists from Windows end lines with CR; a name that ends with CR needs --null.
            if (!m_arguments.has("null") && each.endsWith('\r'))
                each.chop(1);
            if (!each.isEmpty())
                take(each);
        }
    }

    const Arguments &m_arguments;
    Console &m_console;
    CheckInputs m_inputs;
    QSet<QString> m_seen;
    bool m_inputTaken = false;
};

} // namespace

CheckInputs checkInputs(const Arguments &arguments, Console &console)
{
    return InputCollector(arguments, console).collect();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/command.h"
#include "cli/console.h"
#include "cli/interruption.h"
#include "cli/program.h"

#include <QCoreApplication>

#include <memory>

#ifndef Q_OS_WIN
#include <clocale>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#endif

namespace
{

#ifdef Q_OS_WIN
void openClosedStreams() {}
void chooseLocale() {}

QByteArrayList commandLine(int, char **)
{
    QByteArrayList words;
    for (const QString &word : QCoreApplication::arguments())
        words.append(word.toUtf8());
    return words.sliced(1);
}
#else
// A standard stream that the parent has closed would be the first file that is opened, and take
// what is written to the stream. What stands in for it refuses to be used instead.
void openClosedStreams()
{
    for (const int fd : {0, 1, 2}) {
        if (fcntl(fd, F_GETFD) == -1)
            static_cast<void>(open("/dev/null", fd == 0 ? O_WRONLY : O_RDONLY));
    }
}

// The toolkit takes all bytes of the system for UTF-8, and says so where the locale has another
// encoding. The user has nothing to do about it: the names of files go through as they are.
void chooseLocale()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

QByteArrayList commandLine(int argc, char **argv)
{
    return QByteArrayList(argv + qMin(argc, 1), argv + argc);
}
#endif

} // namespace

int main(int argc, char *argv[])
{
    openClosedStreams();
    catchInterruptions();
    chooseLocale();
    // The toolkit would take options of its own from the command line.
    int toolkitArgc = qMin(argc, 1);
#ifdef Q_OS_WIN
    toolkitArgc = argc;
#endif
    const QCoreApplication application(toolkitArgc, argv);
    ProcessConsole console;
    return runProgram(commandLine(argc, argv), console);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/command.h"
#include "cli/console.h"
#include "cli/interruption.h"
#include "cli/program.h"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>

#ifndef Q_OS_WIN
#include <clocale>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>
#endif

namespace
{

#ifdef Q_OS_WIN
void openClosedStreams() {}
void chooseLocale() {}

QByteArrayList commandLine(int argc, char **argv)
{
    QByteArrayList words;
    for (int i = 1; i < argc; ++i)
        words.append(QString::fromLocal8Bit(argv[i]).toUtf8());
    return words;
}
#else
// A closed standard stream would be replaced by the first opened file, which would get the stream's
// output. A descriptor that cannot be used takes its place.
void openClosedStreams()
{
    for (const int fd : {0, 1, 2}) {
        if (fcntl(fd, F_GETFD) == -1)
            static_cast<void>(open("/dev/null", fd == 0 ? O_WRONLY : O_RDONLY));
    }
}

// Qt takes all file names for UTF-8 and warns if the locale has another encoding. The user need not
// act: names pass unchanged.
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

// Qt's own messages, such as those about desktop folders, mean nothing to the user.
void dropRemarks(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "zoravel: %s\n", qUtf8Printable(text));
}

#ifdef __GLIBC__
// libpng writes to standard error about a broken picture without naming its file. The commands name
// it.
ssize_t writeButForDecoder(void *, const char *bytes, std::size_t size)
{
    constexpr std::string_view remark = "libpng ";
    return std::string_view(bytes, size).starts_with(remark)
               ? static_cast<ssize_t>(size)
               : std::max<ssize_t>(0, write(STDERR_FILENO, bytes, size));
}

void dropDecoderRemarks()
{
    cookie_io_functions_t functions = {};
    functions.write = writeButForDecoder;
    if (std::FILE *stream = fopencookie(nullptr, "w", functions)) {
        static_cast<void>(std::setvbuf(stream, nullptr, _IOLBF, 0));
        stderr = stream;
    }
}
#else
void dropDecoderRemarks() {}
#endif

// Pictures and widgets are drawn in memory, without the desktop.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv, bool draws)
{
    if (!draws)
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char *name : {"QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME",
                             "QT_FONT_DPI", "QT_SCREEN_SCALE_FACTORS"})
        qunsetenv(name);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace

int main(int argc, char *argv[])
{
    openClosedStreams();
    catchInterruptions();
    chooseLocale();
    qInstallMessageHandler(dropRemarks);
    dropDecoderRemarks();
    const QByteArrayList words = commandLine(argc, argv);
    const Command *command = findCommand(words);
    // Qt must not take options from the command line.
    int qtArgc = qMin(argc, 1);
    const auto application = makeApplication(qtArgc, argv, command && command->draws);
    ProcessConsole console;
    return runProgram(words, console);
}

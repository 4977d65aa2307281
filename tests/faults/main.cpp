// SPDX-License-Identifier: GPL-3.0-or-later
// Drives the editor's window while files cannot be written. Usage:
//   faultdriver calls|ends [--quick] FOLDER
//   faultdriver kills COUNT FOLDER
//   faultdriver places FOLDER
//   faultdriver prepared NAME=FOLDER...
//   faultdriver sharing SECONDS FOLDER
#include "faults/campaigns.h"

#include <QApplication>

#include <csignal>
#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

void Tally::count(const QString &what, const QString &complaint)
{
    ++m_tried;
    m_survived += int(complaint.isEmpty());
    if (!complaint.isEmpty())
        std::fprintf(stderr, "%s: %s\n", qPrintable(what), qPrintable(complaint));
}

bool Tally::print(const QString &remark) const
{
    std::printf("%s\t%d\t%d\t%s\n", qPrintable(m_operation), m_tried, m_survived,
                qPrintable(remark));
    std::fflush(stdout);
    return m_tried > 0 && m_tried == m_survived;
}

int inOtherProcess(const std::function<void()> &function)
{
    const pid_t process = fork();
    if (process < 0)
        qFatal("no more processes");
    if (process == 0) {
        function();
        _exit(0);
    }
    int status = 0;
    waitpid(process, &status, 0);
    return status;
}

namespace
{

// The offscreen platform says at every window what it lacks.
void sayAllButThat(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith("This plugin does not support "_L1))
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
}

} // namespace

int main(int argc, char *argv[])
{
    // As the editor's own main() does.
    std::signal(SIGXFSZ, SIG_IGN);
    qInstallMessageHandler(sayAllButThat);
    const QApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().sliced(1);
    const bool quick = arguments.removeAll(u"--quick"_s) > 0;
    const QString command = arguments.value(0);
    const QString first = arguments.value(1);
    const QString second = arguments.value(2);

    bool survived = false;
    if (command == "calls"_L1 && arguments.size() == 2)
        survived = failEveryCall(first, quick);
    else if (command == "ends"_L1 && arguments.size() == 2)
        survived = endAtEveryCall(first, quick);
    else if (command == "kills"_L1 && arguments.size() == 3)
        survived = killAtRandom(second, first.toInt());
    else if (command == "places"_L1 && arguments.size() == 2)
        survived = visitPlaces(first);
    else if (command == "prepared"_L1 && arguments.size() >= 2)
        survived = visitPreparedPlaces(arguments.sliced(1));
    else if (command == "sharing"_L1 && arguments.size() == 3)
        survived = shareFolder(second, first.toInt());
    else
        std::fprintf(stderr, "see the beginning of main.cpp for the arguments\n");
    return survived ? 0 : 1;
}

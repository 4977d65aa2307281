// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commandline.h"
#include "app/downloadnotice.h"
#include "app/endrequests.h"
#include "app/interfacescale.h"
#include "app/mainwindow.h"
#include "app/translation.h"
#include "files/pathnames.h"
#include "widgets/contrast.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QLocale>
#include <QScreen>
#include <QTimer>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

namespace
{

// A window that does not fit on the screen fills it instead.
void showOnScreen(QWidget &window)
{
    constexpr QSize frame(10, 30); // about what window managers put around a window
    window.show();
    const QSize needed = window.size() + frame;
    const QSize available = window.screen()->availableSize();
    if (needed.width() > available.width() || needed.height() > available.height())
        window.showMaximized();
}

// A write beyond the user's limit of file sizes, or to a closed terminal, fails like any other
// write: by default it would end the program and lose the user's work.
void letWritesFail()
{
#ifdef Q_OS_UNIX
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    const CommandLine commandLine = readCommandLine(argc, argv);
    if (commandLine.request != CommandLine::Request::Window)
        return answerOnTerminal(commandLine);
    argc = commandLine.qtArguments;

    letWritesFail();
    qputenv("QT_SCALE_FACTOR", QByteArray::number(interfaceScale));
    const InterfaceShrink shrink = prepareScreens(argc, argv);
    const QApplication application(argc, argv);
    shrinkInterface(shrink);
    installTranslation(translationFolder(), QLocale());
    QGuiApplication::setDesktopFileName(QStringLiteral(ZORAVEL_DESKTOP_ID));
    QApplication::setPalette(readableSelection(QApplication::palette()));
    QApplication::setPalette(outlinedBoxes(QApplication::palette()), "QCheckBox");
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/zoravel.icns")));

    MainWindow window;
    const EndRequests endRequests(&window);
    new DownloadNotice(&window);
    showOnScreen(window);
    if (!commandLine.file.isNull()) {
        const QString file = QFileInfo(withoutParentSteps(commandLine.file)).absoluteFilePath();
        // A timer of 0 ms is an event that waits with others, which loading looks through: while
        // one of them is delivered none is taken out of their list.
        QTimer::singleShot(1, &window, [&window, file] { window.loadSpeciesFile(file); });
    }
    return QApplication::exec();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

int main(int argc, char *argv[])
{
    qputenv("QT_SCALE_FACTOR", "0.85");
    const QApplication application(argc, argv);
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/zoravel.icns")));

    MainWindow window;
    window.show();
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 1)
        QTimer::singleShot(0, &window, [&] { window.loadSpeciesFile(arguments[1]); });
    return QApplication::exec();
}

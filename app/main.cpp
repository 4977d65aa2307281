// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/interfacescale.h"
#include "app/mainwindow.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

int main(int argc, char *argv[])
{
    qputenv("QT_SCALE_FACTOR", QByteArray::number(interfaceScale));
    const InterfaceShrink rest = prepareScreens(argc, argv);
    const QApplication application(argc, argv);
    shrinkInterface(rest);
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/zoravel.icns")));

    MainWindow window;
    window.show();
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 1)
        QTimer::singleShot(0, &window, [&] { window.loadSpeciesFile(arguments[1]); });
    return QApplication::exec();
}

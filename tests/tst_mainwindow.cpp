// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include <QTest>

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void rightAfterStartTheTitleIsThePlainName()
    {
        MainWindow window;
        QCOMPARE(window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit"));
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"

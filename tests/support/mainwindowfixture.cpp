// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/mainwindowfixture.h"

#include "species/speciesfile.h"
#include "spectrum/spectrumwindow.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QJsonArray>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTest>
#include <QUrl>

MainWindowFixture::MainWindowFixture()
{
    QSettings(QStringLiteral("Tarnwick Institute"), QStringLiteral("ZORAVEL")).clear();
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        QTest::qFail("the window does not become active", __FILE__, __LINE__);
}

MainWindowFixture::~MainWindowFixture()
{
    // The next turn of the event loop deletes closed spectrum windows.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

CleanTextEdit *MainWindowFixture::field(const QString &name) const
{
    return find<CleanTextEdit>(name);
}

void MainWindowFixture::trigger(const QString &name) const
{
    auto *action = find<QAction>(name);
    QVERIFY2(action->isEnabled(), qPrintable(name));
    action->trigger();
}

QMdiArea *MainWindowFixture::area() const
{
    return find<QMdiArea>(QStringLiteral("mdiArea"));
}

QList<SpectrumWindow *> MainWindowFixture::spectra() const
{
    QList<SpectrumWindow *> windows;
    for (const QMdiSubWindow *subWindow : area()->subWindowList())
        windows.append(qobject_cast<SpectrumWindow *>(subWindow->widget()));
    return windows;
}

CleanTextEdit *MainWindowFixture::field(const SpectrumWindow *spectrum, const QString &name)
{
    return spectrum->findChild<CleanTextEdit *>(name);
}

QPlainTextEdit *MainWindowFixture::points(const SpectrumWindow *spectrum)
{
    return spectrum->findChild<QPlainTextEdit *>(QStringLiteral("textEditSpect"));
}

void MainWindowFixture::typePoints(const SpectrumWindow *spectrum, const QString &text)
{
    QPlainTextEdit *editor = points(spectrum);
    for (const QChar c : text) {
        if (c == QLatin1Char('\n'))
            QTest::keyClick(editor, Qt::Key_Return);
        else
            QTest::keyClick(editor, c.toLatin1());
    }
}

void MainWindowFixture::letPointsBeRead(SpectrumWindow *spectrum)
{
    spectrum->readPendingPoints();
}

bool MainWindowFixture::isModified() const
{
    return window.windowTitle().endsWith(QLatin1String(" *"));
}

QJsonObject speciesFileWith(const QString &name, const QStringList &titles)
{
    QList<QJsonObject> datasets;
    for (const QString &title : titles)
        datasets.append({{QStringLiteral("Title"), title},
                         {QStringLiteral("E"), QJsonArray{10.5, 11.25}},
                         {QStringLiteral("I"), QJsonArray{1, 2}}});
    return speciesFileObject({{QStringLiteral("Name"), name}}, datasets);
}

bool isCovered(const QWidget *widget)
{
    for (; !widget->isWindow(); widget = widget->parentWidget()) {
        const auto *subWindow = qobject_cast<const QMdiSubWindow *>(widget);
        if (subWindow && subWindow->mdiArea())
            return subWindow != subWindow->mdiArea()->currentSubWindow();
    }
    return false;
}

bool dropFiles(QWidget *target, const QStringList &paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    data.setUrls(urls);
    while (target && !target->acceptDrops())
        target = target->isWindow() ? nullptr : target->parentWidget();
    if (!target)
        return false;
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                    Qt::NoModifier);
    QCoreApplication::sendEvent(target, &drop);
    return true;
}

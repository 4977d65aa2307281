// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/quietarea.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGraphicsObject>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>

#include <utility>

namespace
{

// The current tab stays visible: hiding it would choose another. Showing a visible tab again would
// make the bar forget that others wait for their layout.
void showTab(QTabBar *tabs, int tab, bool shown)
{
    const bool visible = shown || tab == tabs->currentIndex();
    if (tabs->isTabVisible(tab) != visible)
        tabs->setTabVisible(tab, visible);
}

void showTabs(QTabBar *tabs, bool shown)
{
    for (int i = 0; i < tabs->count(); ++i)
        showTab(tabs, i, shown);
}

bool isQuiet(const QMdiArea *area)
{
    return !area->updatesEnabled();
}

// Each new widget and graphics item posts requests to be styled, laid out and painted. What is
// shown has been styled, and the rest will be when it is shown. What others asked for was done when
// the area became quiet.
void forgetRequests(QMdiSubWindow *subWindow)
{
    QCoreApplication::removePostedEvents(nullptr, QEvent::PolishRequest);
    QObjectList parts{subWindow};
    const QList<QWidget *> widgets = subWindow->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        parts.append(widget);
        const auto *view = qobject_cast<QGraphicsView *>(widget);
        const QList<QGraphicsItem *> items =
            view ? view->scene()->items() : QList<QGraphicsItem *>();
        for (QGraphicsItem *item : items) {
            if (item->toGraphicsObject())
                parts.append(item->toGraphicsObject());
        }
    }
    for (QObject *part : std::as_const(parts)) {
        QCoreApplication::removePostedEvents(part, QEvent::LayoutRequest);
        QCoreApplication::removePostedEvents(part, QEvent::UpdateLater);
    }
}

} // namespace

HiddenTabs::HiddenTabs(const QMdiArea *area) : m_tabs(area->findChild<QTabBar *>())
{
    if (!m_tabs)
        return;
    m_tabs->hide();
    showTabs(m_tabs, false);
}

HiddenTabs::~HiddenTabs()
{
    if (!m_tabs)
        return;
    showTabs(m_tabs, true);
    m_tabs->show();
}

QuietArea::QuietArea(QMdiArea *area) : m_area(area), m_tabs(area)
{
    m_area->setUpdatesEnabled(false);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::PolishRequest);
}

QuietArea::~QuietArea()
{
    m_area->setUpdatesEnabled(true);
}

QMdiSubWindow *addSubWindow(QMdiArea *area, QWidget *widget)
{
    auto *subWindow = new QMdiSubWindow(area->viewport());
    subWindow->setWidget(widget);
    const Qt::WindowFlags flags = subWindow->windowFlags();
    // When it raises a sub-window, QMdiArea searches all others for those that must stay above, for
    // each of them again. It skips this only for one that stays on top.
    subWindow->overrideWindowFlags(flags | Qt::WindowStaysOnTopHint);
    area->addSubWindow(subWindow);
    subWindow->overrideWindowFlags(flags | Qt::SubWindow);
    // The area must not compare its place with those of all others either.
    subWindow->setAttribute(Qt::WA_Moved, false);
    return subWindow;
}

void showSubWindow(QMdiSubWindow *subWindow)
{
    const QMdiArea *area = subWindow->mdiArea();
    if (!isQuiet(area)) {
        subWindow->widget()->show();
        return;
    }
    // A disabled sub-window does not become active. Only the sub-window itself is asked:
    // setEnabled() would notify all of its parts, twice.
    subWindow->setAttribute(Qt::WA_Disabled);
    subWindow->widget()->show();
    subWindow->setAttribute(Qt::WA_Disabled, false);
    forgetRequests(subWindow);
    if (auto *tabs = area->findChild<QTabBar *>())
        showTab(tabs, tabs->count() - 1, false);
}

void closeQuietly(QMdiArea *area)
{
    const HiddenTabs tabs(area);
    const QMdiSubWindow *current = area->currentSubWindow();
    const QList<QMdiSubWindow *> subWindows = area->subWindowList();
    for (QMdiSubWindow *subWindow : subWindows) {
        if (subWindow != current)
            subWindow->close();
    }
    area->closeAllSubWindows();
}

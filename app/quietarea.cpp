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

// The current one always is shown: to hide it would choose another. To show one that is shown would
// make the bar forget that it has others to lay out.
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

// Every new widget and graphics item asks to be styled, laid out and painted in the next turn of
// the event loop. What is shown has been, and the rest will be when it is. All that others asked
// for the style of was styled when the area became quiet.
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
    // The area looks through all others for those that one must stay below, each time for each.
    // Only one that stays on top is raised without.
    subWindow->overrideWindowFlags(flags | Qt::WindowStaysOnTopHint);
    area->addSubWindow(subWindow);
    subWindow->overrideWindowFlags(flags | Qt::SubWindow);
    // Nor shall it compare its place with those of all that have one.
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
    // What cannot be used does not become active. Only the sub-window itself asks for that:
    // setEnabled() would tell all of its parts, twice.
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

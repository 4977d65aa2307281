// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/quietarea.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>

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
}

QuietArea::~QuietArea()
{
    m_area->setUpdatesEnabled(true);
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
    // Every new widget asks to be styled in the next turn of the event loop. What is shown has
    // been, and the rest will be when it is.
    QCoreApplication::removePostedEvents(nullptr, QEvent::PolishRequest);
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/quietarea.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>

namespace
{

// The tabs of an area, none of which is shown for as long as it lives but the current one: the area
// has all that are shown laid out with each that goes.
class HiddenTabs
{
    Q_DISABLE_COPY_MOVE(HiddenTabs)

public:
    explicit HiddenTabs(const QMdiArea *area) : m_tabs(area->findChild<QTabBar *>())
    {
        if (!m_tabs)
            return;
        m_tabs->hide();
        showTabs(false);
    }
    ~HiddenTabs()
    {
        if (!m_tabs)
            return;
        showTabs(true);
        m_tabs->show();
    }

private:
    // The current one always is: to hide it would choose another.
    void showTabs(bool shown)
    {
        for (int i = 0; i < m_tabs->count(); ++i)
            m_tabs->setTabVisible(i, shown || i == m_tabs->currentIndex());
    }

    QTabBar *m_tabs;
};

} // namespace

QuietArea::QuietArea(QMdiArea *area) : m_area(area)
{
    m_area->setUpdatesEnabled(false);
    // What cannot be used does not become active.
    m_area->viewport()->setEnabled(false);
}

QuietArea::~QuietArea()
{
    m_area->viewport()->setEnabled(true);
    m_area->setUpdatesEnabled(true);
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/quietarea.h"

#include <QMdiArea>
#include <QMdiSubWindow>

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
    const QMdiSubWindow *current = area->currentSubWindow();
    const QList<QMdiSubWindow *> subWindows = area->subWindowList();
    for (QMdiSubWindow *subWindow : subWindows) {
        if (subWindow != current)
            subWindow->close();
    }
    area->closeAllSubWindows();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/latecontents.h"

#include <QEvent>
#include <QLayout>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <utility>

namespace
{

void takeRoomWhenHidden(QWidget *widget, bool take)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(take);
    widget->setSizePolicy(policy);
}

// Of a sub-window that is on top, if this one is in an area.
QSize sizeOnTop(const QWidget *widget)
{
    const auto *subWindow = qobject_cast<QMdiSubWindow *>(widget->parentWidget());
    const QMdiArea *area = subWindow ? subWindow->mdiArea() : nullptr;
    return area ? area->viewport()->size() : widget->size();
}

} // namespace

LateContents::LateContents(QWidget *widget)
    : QObject(widget),
      m_widget(widget),
      m_hidden(widget->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
{
    for (QWidget *part : std::as_const(m_hidden))
        part->hide();
    widget->installEventFilter(this);
}

bool LateContents::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_widget && event->type() == QEvent::ParentChange)
        followSubWindow();
    else if (watched == m_widget && event->type() == QEvent::Paint)
        showParts(m_widget->size()); // it can be seen, however it came up
    return QObject::eventFilter(watched, event);
}

// Before a sub-window comes up, its area looks for the part of it that takes the keyboard. Then it
// makes it fill the area.
void LateContents::followSubWindow()
{
    auto *subWindow = qobject_cast<QMdiSubWindow *>(m_widget->parentWidget());
    if (!subWindow)
        return;
    connect(subWindow, &QMdiSubWindow::aboutToActivate, this,
            [this] { showParts(sizeOnTop(m_widget)); });
}

void LateContents::showParts(const QSize &size)
{
    const QList<QWidget *> hidden = std::exchange(m_hidden, {});
    if (hidden.isEmpty())
        return;
    m_widget->removeEventFilter(this);
    deleteLater();
    // All get their sizes before the first is shown: a chart that is shown is drawn anew for each.
    for (QWidget *part : hidden)
        takeRoomWhenHidden(part, true);
    QLayout *layout = m_widget->layout();
    layout->activate();
    layout->setGeometry({QPoint(), size});
    // Each that is shown would lay all of them out again.
    layout->setEnabled(false);
    for (QWidget *part : hidden) {
        part->show();
        takeRoomWhenHidden(part, false);
    }
    layout->setEnabled(true);
}

void showContents(const QWidget *widget)
{
    if (auto *late = widget->findChild<LateContents *>({}, Qt::FindDirectChildrenOnly))
        late->showParts(sizeOnTop(widget));
}

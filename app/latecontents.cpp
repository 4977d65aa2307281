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

// The size of the sub-window when it is on top; the widget's own size outside an area.
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

// Before a sub-window comes up, its area looks for a part that takes the keyboard; then it
// maximises the sub-window.
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
    // All parts get their sizes first: a visible chart is redrawn at each change.
    for (QWidget *part : hidden)
        takeRoomWhenHidden(part, true);
    QLayout *layout = m_widget->layout();
    layout->activate();
    layout->setGeometry({QPoint(), size});
    // Each part that is shown would lay out all of them again.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/spectrumtabs.h"

#include "spectrum/spectrumwindow.h"
#include "widgets/tabchain.h"

#include <QApplication>
#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QToolButton>

#include <algorithm>

namespace
{

constexpr int widestTab = 48; // letters of average width
// In characters: Qt elides the whole text again and again.
constexpr qsizetype longestTitle = 500;

QString tabText(const QTabBar *tabs, const QString &title)
{
    const QFontMetrics metrics = tabs->fontMetrics();
    QString text =
        metrics.elidedText(title, Qt::ElideMiddle, widestTab * metrics.averageCharWidth());
    // A single "&" would underline the next letter.
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

SpectrumTabs::SpectrumTabs(QMdiArea *area)
    : QObject(area),
      m_area(area),
      m_viewport(area->viewport()),
      m_tabs(area->findChild<QTabBar *>())
{
    connect(m_area, &QMdiArea::subWindowActivated, this, &SpectrumTabs::settleFocus);
    area->viewport()->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget * /*before*/, QWidget *now) { noteFocus(now); });
    // These buttons scroll the tabs; the keyboard scrolls them by choosing one.
    const QList<QToolButton *> scrollers = m_tabs->findChildren<QToolButton *>();
    for (QToolButton *scroller : scrollers)
        scroller->setFocusPolicy(Qt::NoFocus);
}

void SpectrumTabs::follow(QMdiSubWindow *subWindow)
{
    QWidget *spectrum = subWindow->widget();
    connect(subWindow, &QMdiSubWindow::aboutToActivate, this,
            [this, spectrum] { m_comingUp = m_lastFocused.value(spectrum); });
    connect(spectrum, &QObject::destroyed, this,
            [this, spectrum] { m_lastFocused.remove(spectrum); });
    spectrum->installEventFilter(this);
    showTitle(subWindow);
}

bool SpectrumTabs::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_viewport) {
        // An area that is being destroyed is no QMdiArea any more.
        if (event->type() == QEvent::ChildRemoved && qobject_cast<QMdiArea *>(watched->parent()))
            showNeighbourOf(static_cast<QChildEvent *>(event)->child());
        return QObject::eventFilter(watched, event);
    }
    // QMdiSubWindow ignores an empty title and shows all of a long one.
    auto *subWindow = qobject_cast<QMdiSubWindow *>(watched->parent());
    if (event->type() != QEvent::WindowTitleChange || !subWindow)
        return QObject::eventFilter(watched, event);
    showTitle(subWindow);
    return true;
}

// QMdiArea goes to the first sub-window when the last is closed.
void SpectrumTabs::showNeighbourOf(const QObject *closed)
{
    const QList<QMdiSubWindow *> subWindows = m_area->subWindowList();
    const QList<QMdiSubWindow *> history = m_area->subWindowList(QMdiArea::ActivationHistoryOrder);
    if (subWindows.size() < 2 || subWindows.last() != closed || history.last() != closed)
        return;
    QMdiSubWindow *neighbour = subWindows.at(subWindows.size() - 2);
    m_area->setActiveSubWindow(neighbour);
    neighbour->showMaximized();
}

void SpectrumTabs::showTitle(QMdiSubWindow *subWindow) const
{
    const QString title = subWindow->widget()->windowTitle().left(longestTitle);
    // Each new text lays out all tabs.
    if (subWindow->windowTitle() != title)
        subWindow->setWindowTitle(title);
    const auto index = static_cast<int>(m_area->subWindowList().indexOf(subWindow));
    const QString text = tabText(m_tabs, title);
    // QMdiArea's own text for an untitled tab stays.
    if (!title.isEmpty() && m_tabs->tabText(index) != text)
        m_tabs->setTabText(index, text);
    m_tabs->setTabToolTip(
        index, title.isEmpty() ? title : QStringLiteral("<qt>%1</qt>").arg(title.toHtmlEscaped()));
    m_tabs->setAccessibleTabName(index, title);
}

// QMdiSubWindow forgets its focused widget when another one comes up: it is hidden for a moment,
// and Qt first moves the keyboard to the next field.
void SpectrumTabs::noteFocus(QWidget *focused)
{
    for (QWidget *widget = focused; widget && widget != m_area; widget = widget->parentWidget()) {
        if (qobject_cast<SpectrumWindow *>(widget) && widget != focused
            && widget->isVisibleTo(m_area))
            m_lastFocused.insert(widget, focused);
    }
}

// Qt gives the keyboard to the field after the one that had it, or to the sub-window.
void SpectrumTabs::settleFocus(const QMdiSubWindow *subWindow) const
{
    const QWidget *focused = QApplication::focusWidget();
    if (subWindow && (focused == subWindow || subWindow->isAncestorOf(focused)))
        enter(subWindow);
}

void SpectrumTabs::enter(const QMdiSubWindow *subWindow) const
{
    auto *spectrum = qobject_cast<SpectrumWindow *>(subWindow->widget());
    if (!spectrum)
        return;
    if (m_comingUp && spectrum->isAncestorOf(m_comingUp))
        m_comingUp->setFocus();
    else
        spectrum->focusTitle();
    scrollIntoSight(QApplication::focusWidget());
}

void SpectrumTabs::goToPrevious()
{
    const QList<QMdiSubWindow *> history = m_area->subWindowList(QMdiArea::ActivationHistoryOrder);
    if (history.isEmpty())
        return;
    QMdiSubWindow *subWindow = history.at(std::max<qsizetype>(0, history.size() - 2));
    m_comingUp = m_lastFocused.value(subWindow->widget());
    m_area->setActiveSubWindow(subWindow);
    if (!subWindow->isAncestorOf(QApplication::focusWidget()))
        enter(subWindow);
}

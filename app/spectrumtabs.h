// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

class QMdiArea;
class QMdiSubWindow;
class QTabBar;

// The tabs of an area of spectra: what they say, and where the keyboard is in the spectrum that
// comes up. For the area, which owns it.
class SpectrumTabs : public QObject
{
    Q_OBJECT

public:
    explicit SpectrumTabs(QMdiArea *area);

    // Keeps up with a sub-window that was just added, which holds a spectrum.
    void follow(QMdiSubWindow *subWindow);

    // Brings up the spectrum that was on top before, and gives it the keyboard.
    void goToPrevious();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showNeighbourOf(const QObject *closed);
    void showTitle(QMdiSubWindow *subWindow) const;
    void noteFocus(QWidget *focused);
    void settleFocus(const QMdiSubWindow *subWindow) const;
    void enter(const QMdiSubWindow *subWindow) const;

    QMdiArea *m_area;
    const QObject *m_viewport;
    QTabBar *m_tabs;
    QHash<const QObject *, QPointer<QWidget>> m_lastFocused; // by spectrum
    QPointer<QWidget> m_comingUp; // what had the keyboard when the spectrum that comes up was left
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

class QMdiArea;
class QMdiSubWindow;
class QTabBar;

// Manages the tabs of an area of spectra: their texts, and which widget has the keyboard in the
// spectrum that comes up. Owned by the area.
class SpectrumTabs : public QObject
{
    Q_OBJECT

public:
    explicit SpectrumTabs(QMdiArea *area);

    // Starts to follow a sub-window that was just added and holds a spectrum.
    void follow(QMdiSubWindow *subWindow);

    // Brings up the previous spectrum and gives it the keyboard.
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

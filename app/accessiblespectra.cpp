// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/accessiblespectra.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace
{

class AccessibleSpectrum final : public QAccessibleWidget
{
public:
    explicit AccessibleSpectrum(QMdiSubWindow *window)
        : QAccessibleWidget(window, QAccessible::Window)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        const auto *window = qobject_cast<QMdiSubWindow *>(widget());
        if (kind != QAccessible::Name || !window->mdiArea())
            return QAccessibleWidget::text(kind);
        const qsizetype number = window->mdiArea()->subWindowList().indexOf(window) + 1;
        if (window->windowTitle().isEmpty())
            return QCoreApplication::translate("MainWindow", "Spectrum %1").arg(number);
        return QCoreApplication::translate("MainWindow", "Spectrum %1: %2")
            .arg(QString::number(number), window->windowTitle());
    }

    // // Only one tab is shown; Qt says that all are.
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        const auto *window = qobject_cast<QMdiSubWindow *>(widget());
        if (window->mdiArea() && window->mdiArea()->currentSubWindow() != window)
            state.invisible = true;
        return state;
    }
};

QAccessibleInterface *interfaceOf(const QString &className, QObject *object)
{
    if (className == QLatin1String("QMdiArea")) {
        if (auto *area = qobject_cast<QMdiArea *>(object))
            return new QAccessibleWidget(area, QAccessible::LayeredPane);
    } else if (className == QLatin1String("QMdiSubWindow")) {
        if (auto *window = qobject_cast<QMdiSubWindow *>(object))
            return new AccessibleSpectrum(window);
    }
    return nullptr;
}

} // namespace

void describeSpectraToAssistiveTechnology()
{
    QAccessible::installFactory(interfaceOf);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/interfacescale.h"

#include <QAbstractAxis>
#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QFont>
#include <QMainWindow>
#include <QScreen>
#include <QTextEdit>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace
{

constexpr char screenFactorsVariable[] = "QT_SCREEN_SCALE_FACTORS";

// The factor that cancels interfaceScale.
constexpr double fullFactor = 1 / interfaceScale;

// Screens that may come later and are provided for, more than any desktop has.
constexpr int listedScreens = 32;

// Keeps a variable out of the environment for as long as it lives.
class HiddenVariable
{
    Q_DISABLE_COPY_MOVE(HiddenVariable)

public:
    explicit HiddenVariable(const char *name)
        : m_name(name), m_set(qEnvironmentVariableIsSet(name)), m_value(qgetenv(name))
    {
        qunsetenv(m_name);
    }

    ~HiddenVariable()
    {
        if (m_set)
            qputenv(m_name, m_value);
    }

private:
    const char *m_name;
    bool m_set;
    QByteArray m_value;
};

// A screen's factor beside QT_SCALE_FACTOR.
double factorOf(const ScreenRatio &screen, bool shrinking)
{
    if (!shrinking)
        return screen.ownFactor;
    // Below one device pixel per unit nothing is drawn right, whoever asks for it.
    return std::max(screen.ownFactor, 1.0) / interfaceScale;
}

QFont shrunkFont(QFont font, double scale)
{
    if (font.pixelSize() > 0)
        font.setPixelSize(std::max(1, qRound(font.pixelSize() * scale)));
    else
        font.setPointSizeF(font.pointSizeF() * scale);
    return font;
}

bool isToolkitClass(const QWidget *widget)
{
    return widget->metaObject()->className()[0] == 'Q';
}

// Whether the widget's sizes come from a form of this program: the toolkit names none of the widgets
// that it puts in by itself, or with its prefix.
bool isDesigned(const QWidget *widget)
{
    const QString name = widget->objectName();
    return !isToolkitClass(widget->window()) && !name.isEmpty()
           && !name.startsWith(QLatin1String("qt_"));
}

} // namespace

bool needsShrinking(const QList<ScreenRatio> &screens)
{
    return std::any_of(screens.begin(), screens.end(), [](const ScreenRatio &screen) {
        return screen.ratio * interfaceScale < 1;
    });
}

// Read by the toolkit whenever a screen is added: the factors without a name go to its screens in their
// order, those with a name to the screen of that name, the last one counts. Each screen keeps its factor
// by its name here, since the order changes when a screen comes or goes. A screen that is not known yet
// gets the least factor of the known ones, which is exact on X11, where one setting is for all screens;
// but never one with which it could not be drawn.
QByteArray screenScaleFactors(const QList<ScreenRatio> &screens)
{
    const bool shrinking = needsShrinking(screens);
    QList<QByteArray> inOrder;
    QList<QByteArray> byName;
    double least = 0;
    for (const ScreenRatio &screen : screens) {
        const double factor = factorOf(screen, shrinking);
        const QByteArray text = QByteArray::number(factor, 'g', 17);
        least = least > 0 ? std::min(least, factor) : factor;
        inOrder.append(text);
        if (!screen.name.isEmpty())
            byName.append(screen.name.toLocal8Bit() + '=' + text);
    }
    const QByteArray unknown = QByteArray::number(std::max(least, fullFactor), 'g', 17);
    while (inOrder.size() < listedScreens)
        inOrder.append(unknown);
    return (inOrder + byName).join(';');
}

InterfaceShrink prepareScreens(int argc, char **argv)
{
    QList<ScreenRatio> screens;
    InterfaceShrink rest;
    {
        // The session and the start-up notification are for the application to come.
        const HiddenVariable scale("QT_SCALE_FACTOR");
        const HiddenVariable session("SESSION_MANAGER");
        const HiddenVariable startup("DESKTOP_STARTUP_ID");
        std::vector<char *> arguments(argv, argv + argc);
        arguments.push_back(nullptr);
        const QGuiApplication application(argc, arguments.data());
        // There the window system has a ratio of its own for each screen, which the toolkit multiplies.
        const QString platform = QGuiApplication::platformName();
        const bool systemScales =
            platform == QLatin1String("cocoa") || platform.startsWith(QLatin1String("wayland"));
        for (const QScreen *screen : QGuiApplication::screens()) {
            const double ratio = screen->devicePixelRatio();
            screens.append({screen->name(), ratio, systemScales ? 1 : ratio});
        }
        if (const QScreen *screen = QGuiApplication::primaryScreen())
            rest.logicalDpi = screen->logicalDotsPerInch();
    }
    qputenv(screenFactorsVariable, screenScaleFactors(screens));
    if (needsShrinking(screens))
        rest.scale = interfaceScale;
    return rest;
}

void shrinkInterface(const InterfaceShrink &rest)
{
    if (rest.scale == 1)
        return;
    // Without high-resolution scaling, which a user can turn off, a screen's factor shrinks the fonts.
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double dpi = screen ? screen->logicalDotsPerInch() : rest.logicalDpi;
    const double fontScale = rest.scale * rest.logicalDpi / dpi;
    QApplication::setStyle(new ShrinkingStyle(rest.scale, fontScale));
    // After the style, which sets the desktop's fonts of single classes again: this drops them.
    QApplication::setFont(shrunkFont(QApplication::font(), fontScale));
}

ShrinkingStyle::ShrinkingStyle(double lengthScale, double fontScale)
    : m_lengthScale(lengthScale), m_fontScale(fontScale)
{
}

// Zero and negative lengths have meanings of their own; a line must not vanish.
int ShrinkingStyle::shrunk(int length) const
{
    return length > 0 ? std::max(1, qRound(length * m_lengthScale)) : length;
}

QSize ShrinkingStyle::shrunk(const QSize &size) const
{
    return {shrunk(size.width()), shrunk(size.height())};
}

QSize ShrinkingStyle::shrunkLimit(const QSize &limit, bool heightToo) const
{
    const auto side = [this](int length) {
        return length < QWIDGETSIZE_MAX ? shrunk(length) : length;
    };
    return {side(limit.width()), heightToo ? side(limit.height()) : limit.height()};
}

int ShrinkingStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                                const QWidget *widget) const
{
    return shrunk(QProxyStyle::pixelMetric(metric, option, widget));
}

int ShrinkingStyle::layoutSpacing(QSizePolicy::ControlType control1,
                                  QSizePolicy::ControlType control2, Qt::Orientation orientation,
                                  const QStyleOption *option, const QWidget *widget) const
{
    return shrunk(QProxyStyle::layoutSpacing(control1, control2, orientation, option, widget));
}

QSize ShrinkingStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                       const QSize &contents, const QWidget *widget) const
{
    if (type != CT_PushButton)
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    // Styles fix a least width of buttons, which no metric tells.
    const QSize full(std::lround(contents.width() / m_lengthScale),
                     std::lround(contents.height() / m_lengthScale));
    return shrunk(QProxyStyle::sizeFromContents(type, option, full, widget)).expandedTo(contents);
}

void ShrinkingStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    // Called again when a style sheet changes.
    static constexpr char done[] = "fixedSizesShrunk";
    if (!isDesigned(widget) || widget->property(done).toBool())
        return;
    widget->setProperty(done, true);
    shrinkFixedSizes(widget);
}

void ShrinkingStyle::shrinkFixedSizes(QWidget *widget) const
{
    const bool isOneLineEditor =
        qobject_cast<QTextEdit *>(widget) && widget->minimumHeight() == widget->maximumHeight();
    widget->setMinimumSize(shrunkLimit(widget->minimumSize(), !isOneLineEditor));
    widget->setMaximumSize(shrunkLimit(widget->maximumSize(), !isOneLineEditor));
    if (auto *window = qobject_cast<QMainWindow *>(widget))
        window->setIconSize(shrunk(window->iconSize()));
    if (widget->isWindow() && widget->testAttribute(Qt::WA_Resized))
        widget->resize(shrunk(widget->size()));
    if (auto *view = qobject_cast<QChartView *>(widget)) {
        QChart *chart = view->chart();
        chart->setMargins(chart->margins() * m_lengthScale);
        for (QAbstractAxis *axis : chart->axes()) {
            axis->setLabelsFont(shrunkFont(axis->labelsFont(), m_fontScale));
            axis->setTitleFont(shrunkFont(axis->titleFont(), m_fontScale));
        }
    }
}

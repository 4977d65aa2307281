// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/interfacescale.h"

#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QFont>
#include <QFontInfo>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QScreen>
#include <QTextEdit>
#include <QWidget>

#include <algorithm>
#include <limits>
#include <vector>

namespace
{

constexpr char screenFactorsVariable[] = "QT_SCREEN_SCALE_FACTORS";

// The factor that cancels interfaceScale.
constexpr double fullFactor = 1 / interfaceScale;

// Room for screens that are added later, more than any desktop has.
constexpr int spareScreens = 16;

// Fonts are not made smaller than this, in pixels.
constexpr double leastFontPixels = 9;

// Sets or removes an environment variable for as long as it lives.
class TemporaryVariable
{
    Q_DISABLE_COPY_MOVE(TemporaryVariable)

public:
    explicit TemporaryVariable(const char *name, const QByteArray &value = {})
        : m_name(name), m_set(qEnvironmentVariableIsSet(name)), m_value(qgetenv(name))
    {
        assign(!value.isEmpty(), value);
    }

    ~TemporaryVariable() { assign(m_set, m_value); }

private:
    void assign(bool set, const QByteArray &value)
    {
        set ? qputenv(m_name, value) : qunsetenv(m_name);
    }

    const char *m_name;
    bool m_set;
    QByteArray m_value;
};

// A screen's factor, which Qt multiplies with QT_SCALE_FACTOR.
double factorOf(const ScreenRatio &screen, bool shrinking)
{
    if (!shrinking)
        return screen.ownFactor;
    // Below one device pixel per unit drawing fails, even if the user asks for it.
    return std::max(screen.ownFactor, 1.0) / interfaceScale;
}

// What a short-lived application finds.
struct Probe {
    QList<ScreenRatio> screens;
    double logicalDpi = 96; // of the first screen
};

Probe probeScreens(int argc, char **argv)
{
    // The session and the start-up notification belong to the real application.
    const TemporaryVariable noScale("QT_SCALE_FACTOR");
    const TemporaryVariable noSession("SESSION_MANAGER");
    const TemporaryVariable noStartup("DESKTOP_STARTUP_ID");
    std::vector<char *> arguments(argv, argv + argc);
    arguments.push_back(nullptr);
    const QGuiApplication application(argc, arguments.data());

    Probe probe;
    for (const QScreen *screen : QGuiApplication::screens())
        probe.screens.append({screen->name(), screen->devicePixelRatio(), 1});
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        probe.logicalDpi = screen->logicalDotsPerInch();
    return probe;
}

// Zero and negative lengths have special meanings; a line must not vanish.
int shrunk(int length)
{
    return length > 0 ? std::max(1, qRound(length * interfaceScale)) : length;
}

QSize shrunk(const QSize &size)
{
    return {shrunk(size.width()), shrunk(size.height())};
}

QFont shrunk(QFont font, double pointScale)
{
    if (font.pixelSize() > 0)
        font.setPixelSize(shrunk(font.pixelSize()));
    else
        font.setPointSizeF(font.pointSizeF() * pointScale);
    return font;
}

// A minimum or maximum size, whose height may follow from the font.
QSize shrunkLimit(const QSize &limit, bool heightToo)
{
    const auto side = [](int length) { return length < QWIDGETSIZE_MAX ? shrunk(length) : length; };
    return {side(limit.width()), heightToo ? side(limit.height()) : limit.height()};
}

bool isQtClass(const QWidget *widget)
{
    return widget->metaObject()->className()[0] == 'Q';
}

// Whether a form of this program made the widget: Qt's own widgets have no name or one with Qt's
// prefix.
bool isDesigned(const QWidget *widget)
{
    const QString name = widget->objectName();
    return !isQtClass(widget->window()) && !name.isEmpty()
           && !name.startsWith(QLatin1String("qt_"));
}

} // namespace

bool needsShrinking(const QList<ScreenRatio> &screens)
{
    return std::any_of(screens.begin(), screens.end(),
                       [](const ScreenRatio &screen) { return screen.ratio * interfaceScale < 1; });
}

// Qt goes through this list again whenever a screen is added. Factors without a name go to its
// screens in order, those with a name to the screen of that name, and the last one counts. So each
// screen keeps its factor by its name, and the nameless factors are for screens that are not known
// yet. They get the smallest known factor, which is exact on X11, where one resolution serves all
// screens, but never one too small to draw with.
QByteArray screenScaleFactors(const QList<ScreenRatio> &screens)
{
    const bool shrinking = needsShrinking(screens);
    double least = std::numeric_limits<double>::infinity();
    for (const ScreenRatio &screen : screens)
        least = std::min(least, factorOf(screen, shrinking));
    const double unknown = screens.isEmpty() ? fullFactor : std::max(least, fullFactor);

    constexpr int allDigits = std::numeric_limits<double>::max_digits10;
    QList<QByteArray> factors(screens.size() + spareScreens,
                              QByteArray::number(unknown, 'g', allDigits));
    factors.reserve(factors.size() + screens.size());
    for (qsizetype i = 0; i < screens.size(); ++i) {
        const QByteArray name = screens[i].name.toLocal8Bit();
        const QByteArray factor =
            QByteArray::number(factorOf(screens[i], shrinking), 'g', allDigits);
        if (name.isEmpty())
            factors[i] = factor;
        else
            factors.append(name + '=' + factor);
    }
    return factors.join(';');
}

InterfaceShrink prepareScreens(int argc, char **argv)
{
    Probe probe = probeScreens(argc, argv);
    const auto isPlain = [](const ScreenRatio &screen) { return screen.ratio == 1; };
    if (!std::all_of(probe.screens.begin(), probe.screens.end(), isPlain)) {
        // A second look without Qt's own factors tells them from the window system's.
        const TemporaryVariable noScaling("QT_ENABLE_HIGHDPI_SCALING", "0");
        const TemporaryVariable noFactors(screenFactorsVariable);
        const Probe system = probeScreens(argc, argv);
        const qsizetype count = std::min(probe.screens.size(), system.screens.size());
        for (qsizetype i = 0; i < count; ++i)
            probe.screens[i].ownFactor = probe.screens[i].ratio / system.screens.at(i).ratio;
    }
    qputenv(screenFactorsVariable, screenScaleFactors(probe.screens));
    return {needsShrinking(probe.screens), probe.logicalDpi};
}

void shrinkInterface(const InterfaceShrink &shrink)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!shrink.needed || !screen)
        return;
    // If its high-DPI scaling is off, Qt divides the resolution of fonts by the screen's factor,
    // which must not count twice. A small font of the user stays readable.
    const double scale = interfaceScale * shrink.logicalDpi / screen->logicalDotsPerInch();
    const double readable = leastFontPixels / QFontInfo(QApplication::font()).pixelSize();
    const double pointScale = std::min(1.0, std::max(scale, readable));
    QApplication::setStyle(new ShrinkingStyle);
    // Set after the style: the style restores the desktop's fonts of single classes, and this drops
    // them.
    QApplication::setFont(shrunk(QApplication::font(), pointScale));
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
    // Styles fix a minimum width of buttons that no metric tells.
    const QSize full = contents / interfaceScale;
    return shrunk(QProxyStyle::sizeFromContents(type, option, full, widget)).expandedTo(contents);
}

QIcon ShrinkingStyle::standardIcon(StandardPixmap icon, const QStyleOption *option,
                                   const QWidget *widget) const
{
    if (!qobject_cast<const QMdiSubWindow *>(widget))
        return QProxyStyle::standardIcon(icon, option, widget);
    QIcon &shared = m_subWindowIcons[icon];
    if (shared.isNull())
        shared = QProxyStyle::standardIcon(icon, option, widget);
    return shared;
}

void ShrinkingStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    // Polishing is repeated when a style sheet changes.
    static constexpr char done[] = "fixedSizesShrunk";
    if (!isDesigned(widget) || widget->property(done).toBool())
        return;
    widget->setProperty(done, true);
    shrinkFixedSizes(widget);
}

void ShrinkingStyle::shrinkFixedSizes(QWidget *widget)
{
    const bool isOneLineEditor =
        qobject_cast<QTextEdit *>(widget) && widget->minimumHeight() == widget->maximumHeight();
    widget->setMinimumSize(shrunkLimit(widget->minimumSize(), !isOneLineEditor));
    widget->setMaximumSize(shrunkLimit(widget->maximumSize(), !isOneLineEditor));
    if (auto *window = qobject_cast<QMainWindow *>(widget))
        window->setIconSize(shrunk(window->iconSize()));
    if (widget->isWindow() && widget->testAttribute(Qt::WA_Resized))
        widget->resize(shrunk(widget->size()));
    // A chart's fonts are the application's; only its margins shrink.
    if (const auto *view = qobject_cast<QChartView *>(widget))
        view->chart()->setMargins(view->chart()->margins() * interfaceScale);
}

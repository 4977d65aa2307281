// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QIcon>
#include <QList>
#include <QProxyStyle>
#include <QString>

// The scale at which the user sees the interface, of what the toolkit shows by itself.
inline constexpr double interfaceScale = 0.85;

// The toolkit takes this scale from QT_SCALE_FACTOR, but its painter never draws at less than one
// device pixel per unit: on a screen that has one, only windows and clips would shrink, and texts
// would be cut off. There it is made to draw at the screen's own ratio, and a style and a smaller
// font shrink the interface instead. All of it is for a program's start; widgets alone are as their
// forms say.

// A screen as the toolkit shows it without any scale of this program.
struct ScreenRatio {
    QString name;         // may be empty
    double ratio = 1;     // device pixels per unit of length
    double ownFactor = 1; // the part of it that the toolkit, not the window system, multiplies with
};

// Whether the toolkit cannot draw at interfaceScale on one of the screens.
[[nodiscard]] bool needsShrinking(const QList<ScreenRatio> &screens);

// The value of QT_SCREEN_SCALE_FACTORS for these screens with which no screen, known or not, is
// drawn at less than one device pixel per unit while QT_SCALE_FACTOR is interfaceScale.
[[nodiscard]] QByteArray screenScaleFactors(const QList<ScreenRatio> &screens);

// What the toolkit's own scale leaves to be done.
struct InterfaceShrink {
    bool needed = false;    // whether the interface has to be shrunk to interfaceScale
    double logicalDpi = 96; // pixels per inch of fonts on the first screen before any scale
};

// Asks short-lived applications, started with the same arguments, for the screens and sets
// QT_SCREEN_SCALE_FACTORS for the application to come. Call it while there is none. Factors that
// the user has set by himself count as ratios of the screens. Without a display it ends the process
// with the toolkit's message, as that application would.
[[nodiscard]] InterfaceShrink prepareScreens(int argc, char **argv);

// Gives the application the style and the font that shrink the interface, or does nothing if that
// is not needed. Call it before there are widgets.
void shrinkInterface(const InterfaceShrink &shrink);

// The desktop's style with all its lengths, in pixels, shrunk. It shrinks what forms fix, too: when
// a widget of one of this program's windows is first shown, its least and greatest size, a window's
// initial size, the size of its tool bars' icons and a chart's margins. The heights of one-line
// editors come from their fonts and stay; so do the sizes of the toolkit's own dialogs, which come
// from the style.
class ShrinkingStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int layoutSpacing(QSizePolicy::ControlType control1, QSizePolicy::ControlType control2,
                      Qt::Orientation orientation, const QStyleOption *option,
                      const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    // Each sub-window asks for the pictures of its frame and its menu: they share them.
    QIcon standardIcon(StandardPixmap icon, const QStyleOption *option,
                       const QWidget *widget) const override;
    using QProxyStyle::polish;
    void polish(QWidget *widget) override;

private:
    static void shrinkFixedSizes(QWidget *widget);

    mutable QHash<StandardPixmap, QIcon> m_subWindowIcons;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QIcon>
#include <QList>
#include <QProxyStyle>
#include <QString>

// The scale at which the user sees the interface, relative to Qt's own sizes.
inline constexpr double interfaceScale = 0.85;

// Qt takes this scale from QT_SCALE_FACTOR, but its painter never draws at less than one device
// pixel per unit: on a screen with a ratio of 1, windows and clips would shrink but texts would
// not, and be cut off. There Qt draws at the screen's own ratio, and a style and a smaller font
// shrink the interface. This happens when a program starts; a widget alone keeps the sizes of its
// form.

// A screen as Qt shows it without any scale of this program.
struct ScreenRatio {
    QString name;         // may be empty
    double ratio = 1;     // device pixels per unit of length
    double ownFactor = 1; // the part of the ratio that Qt, not the window system, multiplies with
};

// Whether Qt cannot draw at interfaceScale on one of the screens.
[[nodiscard]] bool needsShrinking(const QList<ScreenRatio> &screens);

// The value of QT_SCREEN_SCALE_FACTORS with which every screen, known or not, is drawn at one
// device pixel per unit or more while QT_SCALE_FACTOR is interfaceScale.
[[nodiscard]] QByteArray screenScaleFactors(const QList<ScreenRatio> &screens);

// What remains to be done beside Qt's own scaling.
struct InterfaceShrink {
    bool needed = false;    // whether the interface has to be shrunk to interfaceScale
    double logicalDpi = 96; // pixels per inch of fonts on the first screen before any scale
};

// Starts short-lived applications with the same arguments to learn the screens, and sets
// QT_SCREEN_SCALE_FACTORS for the application to come. Call it while there is none. Factors that
// the user sets count as ratios of the screens. Without a display Qt ends the process with its own
// message.
[[nodiscard]] InterfaceShrink prepareScreens(int argc, char **argv);

// Gives the application the style and font that shrink the interface if that is needed. Call it
// before there are widgets.
void shrinkInterface(const InterfaceShrink &shrink);

// The desktop's style with all its lengths, in pixels, shrunk. When a widget of one of this
// program's windows is first shown, it also shrinks what forms fix: minimum and maximum sizes, a
// window's initial size, the icon size of tool bars and a chart's margins. The heights of one-line
// editors follow from their fonts and stay; Qt's own dialogs get their sizes from the style.
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

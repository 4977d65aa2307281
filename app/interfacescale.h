// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QProxyStyle>
#include <QString>

// The scale at which the user sees the interface, of what the toolkit shows by itself.
inline constexpr double interfaceScale = 0.85;

// The toolkit takes this scale from QT_SCALE_FACTOR, but its painter never draws at less than one device
// pixel per unit: where a screen has one, only windows and clips would shrink, and texts would be cut
// off. There it is made to draw at the screen's own ratio, and the interface is shrunk by a style and a
// font instead. All of it is for a program's start and does nothing to widgets that never see it.

// A screen as the toolkit shows it without any scale of this program.
struct ScreenRatio {
    QString name;         // may be empty
    double ratio = 1;     // device pixels per unit of length
    double ownFactor = 1; // the part of it that the toolkit, not the window system, multiplies with
};

// Whether the toolkit cannot draw at interfaceScale on one of the screens.
[[nodiscard]] bool needsShrinking(const QList<ScreenRatio> &screens);

// The value of QT_SCREEN_SCALE_FACTORS for these screens with which no screen, known or not, is drawn at
// less than one device pixel per unit while QT_SCALE_FACTOR is interfaceScale.
[[nodiscard]] QByteArray screenScaleFactors(const QList<ScreenRatio> &screens);

// What the toolkit's own scale leaves to be done.
struct InterfaceShrink {
    double scale = 1;       // of lengths: 1 where the toolkit does it all
    double logicalDpi = 96; // of the first screen before any scale: what font sizes have to be seen in
};

// Asks a short-lived application, as the arguments would start it, for the screens and sets
// QT_SCREEN_SCALE_FACTORS for the application to come. Call it while there is none, with QT_SCALE_FACTOR
// set. Factors that the user has set count as the screens' own ratios.
[[nodiscard]] InterfaceShrink prepareScreens(int argc, char **argv);

// Gives the application the style and the font that do the rest of the scale. Call it before there are
// widgets. Does nothing where nothing is left.
void shrinkInterface(const InterfaceShrink &rest);

// The desktop's style with all its lengths shrunk. Shrinks what a form fixes, in pixels, too: when a
// widget of one of this program's windows is first shown, its minimum and maximum size, a window's
// initial size, its tool bars' icons and a chart's margins and fonts. The heights of one-line editors are
// taken from their fonts and stay; so do the toolkit's own dialogs, which take theirs from the style.
class ShrinkingStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    // Both between 0 and 1: of lengths in pixels, and of sizes of fonts that are given in points.
    ShrinkingStyle(double lengthScale, double fontScale);

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int layoutSpacing(QSizePolicy::ControlType control1, QSizePolicy::ControlType control2,
                      Qt::Orientation orientation, const QStyleOption *option,
                      const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    using QProxyStyle::polish;
    void polish(QWidget *widget) override;

private:
    [[nodiscard]] int shrunk(int length) const;
    [[nodiscard]] QSize shrunk(const QSize &size) const;
    [[nodiscard]] QSize shrunkLimit(const QSize &limit, bool heightToo) const;
    void shrinkFixedSizes(QWidget *widget) const;

    double m_lengthScale;
    double m_fontScale;
};

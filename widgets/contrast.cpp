// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/contrast.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QChildEvent>
#include <QColor>
#include <QImage>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace
{

// Relative luminance, from 0 for black to 1 for white.
double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
           + 0.0722 * linear(colour.blueF());
}

// Whether the application's style draws buttons in the palette's colours. A style with colours of
// its own needs the theme's texts.
bool drawsButtonsIn(const QPalette &palette)
{
    QImage picture(60, 30, QImage::Format_RGB32);
    picture.fill(palette.color(QPalette::Button));
    QStyleOptionButton button;
    button.rect = picture.rect();
    button.palette = palette;
    button.state = QStyle::State_Enabled | QStyle::State_Active | QStyle::State_Raised;
    QPainter painter(&picture);
    QApplication::style()->drawControl(QStyle::CE_PushButtonBevel, &button, &painter);
    painter.end();
    const QColor drawn = picture.pixelColor(picture.rect().center());
    return contrast(drawn, palette.color(QPalette::ButtonText)) >= leastTextContrast;
}

// Catches the menus of the filtered widgets when they are first shown.
class MenuFilter final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ChildPolished) {
            QObject *child = static_cast<QChildEvent *>(event)->child();
            // A menu is complete once it is polished.
            if (auto *menu = qobject_cast<QMenu *>(child)) // clazy:exclude=child-event-qobject-cast
                keepTextDark(menu);
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

double contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QPalette readableSelection(const QPalette &palette)
{
    constexpr int step = 4; // of 255
    // Thin letters are drawn paler than their colour.
    constexpr double leastOnSelection = leastTextContrast + 1;
    QPalette selection;
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor text = palette.color(group, QPalette::HighlightedText);
        QColor background = palette.color(group, QPalette::Highlight);
        const int away = luminance(text) > 0.18 ? -step : step; // where black and white are alike
        while (contrast(text, background) < leastOnSelection) {
            const int lightness = background.lightness() + away;
            if (lightness < 0 || lightness > 255)
                break;
            background.setHsl(background.hslHue(), background.hslSaturation(), lightness);
        }
        selection.setColor(group, QPalette::Highlight, background);
        selection.setColor(group, QPalette::HighlightedText, text);
    }
    return selection;
}

QPalette outlinedBoxes(const QPalette &palette)
{
    // The 3 of criterion 1.4.11, and a margin for lines that lie between two pixels.
    constexpr double least = 3 + 1;
    constexpr double drawn = 1.1 / 1.4; // of the colour of windows, by the Fusion style
    constexpr int step = 4;             // of 255
    const QColor window = palette.color(QPalette::Window);
    const bool isDark = luminance(window) < 0.18; // where black and white are alike
    int grey = window.lightness();
    while (grey >= 0 && grey <= 255 && contrast(QColor(grey, grey, grey), window) < least)
        grey += isDark ? step : -step;
    QPalette boxes;
    const int source = qBound(0, qRound(grey / drawn), 255);
    boxes.setColor(QPalette::Window, QColor(source, source, source));
    return boxes;
}

void keepTextDark(QWidget *widget)
{
    // Shared by all widgets: a colour of its own takes memory in every palette.
    static const QBrush black(Qt::black);
    static const QBrush white(Qt::white);
    static const QBrush button(QColor(0xe4, 0xe4, 0xe4));
    static const QBrush faint(QColor(0x4d, 0x4d, 0x4d)); // readable on all these backgrounds
    static const QBrush midlight(QColor(0xf0, 0xf0, 0xf0));
    static const QBrush mid(QColor(0xb0, 0xb0, 0xb0));
    static const QBrush dark(QColor(0x90, 0x90, 0x90));
    static const QBrush shadow(QColor(0x60, 0x60, 0x60));
    QPalette palette = widget->palette();
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setBrush(role, black);
    palette.setBrush(QPalette::PlaceholderText, faint);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setBrush(QPalette::Disabled, role, faint);
    palette.setBrush(QPalette::Base, white);
    palette.setBrush(QPalette::Window, button);
    palette.setBrush(QPalette::Button, button);
    palette.setBrush(QPalette::Light, white);
    palette.setBrush(QPalette::Midlight, midlight);
    palette.setBrush(QPalette::Mid, mid);
    palette.setBrush(QPalette::Dark, dark);
    palette.setBrush(QPalette::Shadow, shadow);
    if (qobject_cast<QAbstractButton *>(widget) && !drawsButtonsIn(palette))
        palette.setColor(QPalette::ButtonText, QApplication::palette().color(QPalette::ButtonText));
    widget->setPalette(palette);

    static MenuFilter menus;
    widget->installEventFilter(&menus);
    // A text editor's menu belongs to its viewport.
    if (const auto *area = qobject_cast<QAbstractScrollArea *>(widget))
        area->viewport()->installEventFilter(&menus);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "spectrum/axisticks.h"

#include <QGraphicsObject>
#include <QList>
#include <QMargins>
#include <QRectF>

class QChart;
class QGraphicsTextItem;
class QValueAxis;

// The axes of a chart with one horizontal and one vertical QValueAxis: lines, grid, titles and
// labels at round values of the current ranges, zoomed or not. They are drawn here because a
// QValueAxis divides its range evenly and rounds its labels; with ticks at an interval it adds that
// up, which loses the last tick of 0 to 0.3 and writes 3e-21 for 0. Fonts, colours and texts come
// from the QValueAxis objects, which are hidden.
//
// Belongs to the chart and sets its margins to make room for itself.
class ChartAxes final : public QGraphicsObject
{
    Q_OBJECT

public:
    // The chart must have its axes.
    explicit ChartAxes(QChart *chart);

    [[nodiscard]] QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    struct Axis {
        QGraphicsTextItem *title = nullptr;
        QList<QGraphicsTextItem *> labels; // of the ticks; those beyond them are hidden
        AxisTicks ticks;
    };

    void layOut();
    void makeTitles(); // when the chart first has a size
    [[nodiscard]] QValueAxis *valueAxis(Qt::Orientation orientation) const;
    [[nodiscard]] QMargins neededMargins();
    double fitTicks(Axis &axis, Qt::Orientation orientation, double length);
    void placeLabels(Axis &axis, Qt::Orientation orientation, const QRectF &plot);
    void placeTitles(const QRectF &plot);

    QChart *m_chart;
    QRectF m_bounds;
    Axis m_x;
    Axis m_y;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGraphicsObject>

class QChart;
class QValueAxis;

// Draws the line series of a chart whose points have all one intensity or all one energy, as
// QLineSeries draws nothing if the range of an axis has no width. The points stand in the middle of
// that axis, as its label does; any other value is far away. Draws nothing if the series draws
// itself.
//
// Belongs to the chart, which must have its axes and its series.
class FlatCurve final : public QGraphicsObject
{
    Q_OBJECT

public:
    explicit FlatCurve(QChart *chart);

    [[nodiscard]] QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    void fit();
    [[nodiscard]] const QValueAxis *valueAxis(Qt::Orientation orientation) const;

    QChart *m_chart;
    QRectF m_bounds;
};

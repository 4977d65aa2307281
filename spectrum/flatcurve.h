// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGraphicsObject>

class QChart;
class QValueAxis;

// Draws the line series of a chart whose points have all one intensity, or all one energy: a
// QLineSeries shows nothing where the range of an axis has no width. They stand in the middle of
// that axis, as its label does, and what lies beside that value is far away. Draws nothing where
// the series does it itself.
//
// Belongs to the chart, which has its axes and its series.
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

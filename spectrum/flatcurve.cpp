// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/flatcurve.h"

#include <QChart>
#include <QLineSeries>
#include <QPainter>
#include <QPolygonF>
#include <QValueAxis>

namespace
{

// The series' own place, above the axes.
constexpr double depth = 5;

double widthOf(const QValueAxis &axis)
{
    return axis.max() - axis.min();
}

// Where along an axis a value is: 0 at its start, 1 at its end.
double shareOf(double value, const QValueAxis &axis)
{
    constexpr double away = 1e6;
    if (widthOf(axis) > 0)
        return (value - axis.min()) / widthOf(axis);
    return value < axis.min() ? -away : value > axis.max() ? away : 0.5;
}

} // namespace

FlatCurve::FlatCurve(QChart *chart) : QGraphicsObject(chart), m_chart(chart)
{
    setZValue(depth);
    for (const auto orientation : {Qt::Horizontal, Qt::Vertical})
        connect(valueAxis(orientation), &QValueAxis::rangeChanged, this, [this] { update(); });
    if (const auto *series = qobject_cast<QLineSeries *>(chart->series().value(0)))
        connect(series, &QXYSeries::pointsReplaced, this, [this] { update(); });
    connect(chart, &QChart::plotAreaChanged, this, &FlatCurve::fit);
    fit();
}

const QValueAxis *FlatCurve::valueAxis(Qt::Orientation orientation) const
{
    return qobject_cast<QValueAxis *>(m_chart->axes(orientation).value(0));
}

QRectF FlatCurve::boundingRect() const
{
    return m_bounds;
}

void FlatCurve::fit()
{
    prepareGeometryChange();
    m_bounds = m_chart->plotArea();
    update();
}

void FlatCurve::paint(QPainter *painter, const QStyleOptionGraphicsItem * /*option*/,
                      QWidget * /*widget*/)
{
    const QValueAxis *x = valueAxis(Qt::Horizontal);
    const QValueAxis *y = valueAxis(Qt::Vertical);
    const auto *series = qobject_cast<QLineSeries *>(m_chart->series().value(0));
    if (!x || !y || !series || (widthOf(*x) > 0 && widthOf(*y) > 0))
        return;
    QPolygonF curve;
    const QList<QPointF> points = series->points();
    for (const QPointF &point : points)
        curve.append({m_bounds.left() + shareOf(point.x(), *x) * m_bounds.width(),
                      m_bounds.bottom() - shareOf(point.y(), *y) * m_bounds.height()});
    painter->setClipRect(m_bounds);
    painter->setPen(series->pen());
    if (widthOf(*x) > 0 || widthOf(*y) > 0) {
        painter->drawPolyline(curve);
        return;
    }
    // All points are the same.
    const double radius = series->pen().widthF();
    painter->setBrush(series->pen().color());
    if (!curve.isEmpty())
        painter->drawEllipse(curve.first(), radius, radius);
}

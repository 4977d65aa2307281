// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/chartaxes.h"

#include <QChart>
#include <QFontMetricsF>
#include <QGraphicsLayout>
#include <QGraphicsTextItem>
#include <QGuiApplication>
#include <QPainter>
#include <QTextDocument>
#include <QValueAxis>
#include <QtMath>

#include <algorithm>

namespace
{

// In pixels.
constexpr double edge = 4; // the window has little height to give
constexpr double markLength = 4;
constexpr double gap = 3;

// The view's read-out: its distance from the lower edge, and its height beyond the text's.
constexpr double readOutInset = 10;
constexpr double readOutPadding = 4;

// Above the background, below the curve.
constexpr double depth = 2;

QGraphicsTextItem *makeText(QGraphicsItem *parent)
{
    auto *text = new QGraphicsTextItem(parent);
    text->document()->setDocumentMargin(0);
    return text;
}

void setText(QGraphicsTextItem *item, const QString &text, const QFont &font, const QColor &colour)
{
    if (item->font() != font)
        item->setFont(font);
    item->setDefaultTextColor(colour);
    if (item->toPlainText() != text)
        item->setPlainText(text);
}

// Where along an axis a value is: 0 at its start, 1 at its end, the middle if the range has no
// width.
double shareOf(double value, const QValueAxis &axis)
{
    const double width = axis.max() - axis.min();
    return width > 0 ? (value - axis.min()) / width : 0.5;
}

double xOf(double value, const QValueAxis &axis, const QRectF &plot)
{
    return plot.left() + shareOf(value, axis) * plot.width();
}

double yOf(double value, const QValueAxis &axis, const QRectF &plot)
{
    return plot.bottom() - shareOf(value, axis) * plot.height();
}

double widestOf(const QStringList &texts, const QFontMetricsF &metrics)
{
    double widest = 0;
    for (const QString &text : texts)
        widest = std::max(widest, metrics.horizontalAdvance(text));
    return widest;
}

} // namespace

ChartAxes::ChartAxes(QChart *chart) : QGraphicsObject(chart), m_chart(chart)
{
    setZValue(depth);
    for (const auto orientation : {Qt::Horizontal, Qt::Vertical}) {
        QValueAxis *axis = valueAxis(orientation);
        axis->hide();
        connect(axis, &QValueAxis::rangeChanged, this, &ChartAxes::layOut);
    }
    connect(chart, &QChart::plotAreaChanged, this, &ChartAxes::layOut);
    layOut();
}

QValueAxis *ChartAxes::valueAxis(Qt::Orientation orientation) const
{
    return qobject_cast<QValueAxis *>(m_chart->axes(orientation).value(0));
}

QRectF ChartAxes::boundingRect() const
{
    return m_bounds;
}

void ChartAxes::layOut()
{
    const QValueAxis *x = valueAxis(Qt::Horizontal);
    const QValueAxis *y = valueAxis(Qt::Vertical);
    if (!x || !y || m_chart->size().isEmpty())
        return;
    if (!m_x.title)
        makeTitles();
    prepareGeometryChange();
    m_bounds = m_chart->rect();
    setText(m_x.title, x->titleText(), x->titleFont(), x->titleBrush().color());
    setText(m_y.title, y->titleText(), y->titleFont(), y->titleBrush().color());
    m_chart->setMargins(neededMargins());
    m_chart->layout()->activate(); // comes back here if it changes the plot's area
    const QRectF plot = m_chart->plotArea();
    fitTicks(m_x, Qt::Horizontal, plot.width());
    fitTicks(m_y, Qt::Vertical, plot.height());
    placeLabels(m_x, Qt::Horizontal, plot);
    placeLabels(m_y, Qt::Vertical, plot);
    placeTitles(plot);
    update();
}

// Texts take more memory than the rest of a chart, so a chart that was never shown has none.
void ChartAxes::makeTitles()
{
    m_x.title = makeText(this);
    m_y.title = makeText(this);
    m_y.title->setRotation(-90);
}

// Depends on the chart's size only: the plot's size follows from the margins.
QMargins ChartAxes::neededMargins()
{
    const double labelHeight = QFontMetricsF(valueAxis(Qt::Horizontal)->labelsFont()).height();
    const double title = edge + m_x.title->boundingRect().height() + gap;
    const double readOut =
        readOutInset + readOutPadding + QFontMetricsF(QGuiApplication::font()).height();
    const double below = std::max(title, readOut) + labelHeight + markLength;
    const double above = edge + labelHeight / 2;
    const QSizeF size = m_chart->size();
    const double left = edge + m_y.title->boundingRect().height() + gap
                        + fitTicks(m_y, Qt::Vertical, size.height() - above - below) + gap
                        + markLength;
    const double right = edge + fitTicks(m_x, Qt::Horizontal, size.width() - left - edge) / 2;
    return {qCeil(left), qCeil(above), qCeil(right), qCeil(below)};
}

// Chooses as many ticks as the labels leave room for. Returns the width of the widest label.
double ChartAxes::fitTicks(Axis &axis, Qt::Orientation orientation, double length)
{
    const QValueAxis &source = *valueAxis(orientation);
    const QFontMetricsF metrics(source.labelsFont());
    double widest = 0;
    for (int most = mostTicks; most >= leastTicks; --most) {
        axis.ticks = axisTicks(source.min(), source.max(), most);
        widest = widestOf(axis.ticks.labels, metrics);
        const QList<double> &values = axis.ticks.values;
        const double room =
            length * (shareOf(values.value(1), source) - shareOf(values.value(0), source));
        const double needed =
            orientation == Qt::Horizontal ? widest + 3 * gap : metrics.height() + gap;
        if (values.size() < 2 || room >= needed)
            break;
        most = std::min(most, int(values.size()));
    }
    return widest;
}

// Hides a label that would touch the one before it.
void ChartAxes::placeLabels(Axis &axis, Qt::Orientation orientation, const QRectF &plot)
{
    const QValueAxis &source = *valueAxis(orientation);
    while (axis.labels.size() < axis.ticks.labels.size())
        axis.labels.append(makeText(this));
    QRectF before;
    for (qsizetype i = 0; i < axis.labels.size(); ++i) {
        QGraphicsTextItem *label = axis.labels[i];
        label->setVisible(i < axis.ticks.labels.size());
        if (!label->isVisible())
            continue;
        const double value = axis.ticks.values[i];
        setText(label, axis.ticks.labels[i], source.labelsFont(), source.labelsBrush().color());
        QRectF place = label->boundingRect();
        if (orientation == Qt::Horizontal) {
            place.moveCenter({xOf(value, source, plot), 0});
            place.moveTop(plot.bottom() + markLength);
        } else {
            place.moveCenter({0, yOf(value, source, plot)});
            place.moveRight(plot.left() - markLength - gap);
        }
        label->setPos(place.topLeft());
        label->setVisible(!place.intersects(before));
        if (label->isVisible())
            before = place;
    }
}

// Centres the titles on the plot, or on the chart if they are longer.
void ChartAxes::placeTitles(const QRectF &plot)
{
    const QSizeF x = m_x.title->boundingRect().size();
    const QSizeF y = m_y.title->boundingRect().size();
    m_x.title->setPos(plot.center().x() - x.width() / 2, m_bounds.bottom() - edge - x.height());
    const double middle = (y.width() > plot.height() ? m_bounds : plot).center().y();
    m_y.title->setPos(edge, middle + y.width() / 2);
}

void ChartAxes::paint(QPainter *painter, const QStyleOptionGraphicsItem * /*option*/,
                      QWidget * /*widget*/)
{
    const QValueAxis *x = valueAxis(Qt::Horizontal);
    const QValueAxis *y = valueAxis(Qt::Vertical);
    if (!x || !y)
        return;
    const QRectF plot = m_chart->plotArea();
    painter->setRenderHint(QPainter::Antialiasing, false);
    // Each tick starts at the lower left corner of the plot.
    const QPointF corner = plot.bottomLeft();
    const auto drawTo = [&](const QPointF &end) {
        for (const double value : m_x.ticks.values) {
            const double at = xOf(value, *x, plot);
            painter->drawLine(QPointF(at, corner.y()), QPointF(at, end.y()));
        }
        for (const double value : m_y.ticks.values) {
            const double at = yOf(value, *y, plot);
            painter->drawLine(QPointF(corner.x(), at), QPointF(end.x(), at));
        }
    };
    painter->setPen(x->gridLinePen());
    drawTo(plot.topRight());
    painter->setPen(x->linePen());
    drawTo(corner + QPointF(-markLength, markLength));
    painter->drawLine(corner, plot.topLeft());
    painter->drawLine(corner, plot.bottomRight());
}

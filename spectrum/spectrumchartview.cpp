// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumchartview.h"

#include "spectrum/chartwords.h"
#include "spectrum/points.h"
#include "widgets/contrast.h"
#include "widgets/waitcursor.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QChart>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QXYSeries>

#include <algorithm>
#include <cmath>
#include <optional>

namespace
{

// Corners of a line; that many in a line spectrum take about a second to paint.
constexpr int manyCorners = 500'000;

bool takesLongToPaint(const QChart *chart)
{
    const QList<QAbstractSeries *> all = chart->series();
    return std::any_of(all.begin(), all.end(), [](QAbstractSeries *series) {
        const auto *line = qobject_cast<QXYSeries *>(series);
        return line && line->count() > manyCorners;
    });
}

QAccessibleInterface *chartInterface(const QString &className, QObject *object)
{
    if (className != QLatin1String("SpectrumChartView"))
        return nullptr;
    auto *view = qobject_cast<QWidget *>(object);
    return view ? new QAccessibleWidget(view, QAccessible::Chart) : nullptr;
}

// Moves a rectangle no further than needed to be within a larger one.
QRectF movedInto(const QRectF &area, QRectF part)
{
    const QPointF most = area.bottomRight() - QPointF(part.width(), part.height());
    part.moveLeft(std::max(area.left(), std::min(part.left(), most.x())));
    part.moveTop(std::max(area.top(), std::min(part.top(), most.y())));
    return part;
}

} // namespace

SpectrumChartView::SpectrumChartView(QWidget *parent)
    : QChartView(new QChart, parent), mousePositionLabel(new QLabel(this))
{
    QAccessible::installFactory(chartInterface);
    // The view takes the focus, not its viewport.
    viewport()->setFocusProxy(nullptr);
    viewport()->setFocusPolicy(Qt::NoFocus);
    setRenderHint(QPainter::Antialiasing);
    setMouseTracking(true);
    // A chart without a size would be laid out at its preferred or minimum size, visible or not.
    chart()->setAttribute(Qt::WA_Resized);
    chart()->setMinimumSize(0, 0);
    mousePositionLabel->setStyleSheet(
        QStringLiteral("background-color: rgba(255, 255, 255, 150); padding: 2px;"));
    keepTextDark(mousePositionLabel);
    mousePositionLabel->setAlignment(Qt::AlignCenter);
    // The label lies over the chart: zoom and read-out must work under it.
    mousePositionLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    mousePositionLabel->show();
    setSpectrumPoints({});
}

void SpectrumChartView::updateMousePositionLabel(const QPointF &value)
{
    const QString x = QString::number(value.x(), 'f', 4);
    const QString y = QString::number(value.y(), 'f', 2);
    mousePositionLabel->setText(QStringLiteral("hν: %1, I: %2").arg(x, y));
    mousePositionLabel->adjustSize();
    updateLabelPosition();
}

void SpectrumChartView::updateLabelPosition()
{
    constexpr int inset = 10;
    mousePositionLabel->move(std::max(width() - mousePositionLabel->width(), inset) - inset,
                             std::max(height() - mousePositionLabel->height(), inset) - inset);
}

void SpectrumChartView::setSpectrumPoints(const QList<QPointF> &points)
{
    m_points = finitePoints(points);
    m_point = std::min(m_point, m_points.size() - 1);
    m_summary = pointsInWords(points);
    describe();
}

void SpectrumChartView::setSpectrumTitle(const QString &title)
{
    m_title = title;
    describe();
}

void SpectrumChartView::describe()
{
    setAccessibleDescription(spectrumInWords(m_title, m_summary));
}

void SpectrumChartView::readOut(qsizetype point)
{
    if (m_points.isEmpty())
        return;
    m_point = std::clamp<qsizetype>(point, 0, m_points.size() - 1);
    const QPointF &value = m_points[m_point];
    updateMousePositionLabel(value);

    const QRectF area = chart()->plotArea();
    const QPointF at = chart()->mapToPosition(value);
    // A zoomed chart scrolls to the point.
    const QPointF off(at.x() - std::clamp(at.x(), area.left(), area.right()),
                      std::clamp(at.y(), area.top(), area.bottom()) - at.y());
    if (isFinite(off) && std::max(std::abs(off.x()), std::abs(off.y())) > 1)
        chart()->scroll(off.x(), off.y());
    viewport()->update();
}

void SpectrumChartView::zoomAtPoint()
{
    QRectF area = chart()->plotArea();
    const QPointF place = m_point < 0 ? area.center() : chart()->mapToPosition(m_points[m_point]);
    QRectF part(QPointF(), area.size() / 2);
    part.moveCenter(isFinite(place) ? place : area.center());
    chart()->zoomIn(movedInto(area, part));
}

void SpectrumChartView::zoomOut()
{
    const QRectF whole = placeOfPoints();
    const QRectF area = chart()->plotArea();
    QRectF part(QPointF(), (area.size() * 2).boundedTo(whole.size()));
    part.moveCenter(area.center());
    const bool isPart = part.width() < whole.width() || part.height() < whole.height();
    if (isPart && std::isfinite(whole.width()) && std::isfinite(whole.height()))
        chart()->zoomIn(movedInto(whole, part)); // to a rectangle larger than what is shown
    else
        chart()->zoomReset();
}

QRectF SpectrumChartView::placeOfPoints() const
{
    if (m_points.isEmpty())
        return {};
    const auto [left, right] =
        std::minmax_element(m_points.begin(), m_points.end(),
                            [](auto &one, auto &other) { return one.x() < other.x(); });
    const auto [low, high] =
        std::minmax_element(m_points.begin(), m_points.end(),
                            [](auto &one, auto &other) { return one.y() < other.y(); });
    return {chart()->mapToPosition({left->x(), high->y()}),
            chart()->mapToPosition({right->x(), low->y()})};
}

void SpectrumChartView::paintEvent(QPaintEvent *event)
{
    std::optional<WaitCursor> waitCursor;
    if (takesLongToPaint(chart()))
        waitCursor.emplace();
    QChartView::paintEvent(event);
}

void SpectrumChartView::keyPressEvent(QKeyEvent *event)
{
    const qsizetype page = std::max<qsizetype>(1, m_points.size() / 20);
    switch (event->key()) {
    case Qt::Key_Left:
        return readOut(m_point - 1);
    case Qt::Key_Right:
        return readOut(m_point + 1);
    case Qt::Key_PageUp:
        return readOut(m_point - page);
    case Qt::Key_PageDown:
        return readOut(m_point + page);
    case Qt::Key_Home:
        return readOut(0);
    case Qt::Key_End:
        return readOut(m_points.size() - 1);
    case Qt::Key_Plus:
        return zoomAtPoint();
    case Qt::Key_Minus:
        return zoomOut();
    case Qt::Key_0:
        return chart()->zoomReset();
    default:
        QChartView::keyPressEvent(event);
    }
}

// Draws a line at the energy that the keyboard reads out.
void SpectrumChartView::drawForeground(QPainter *painter, const QRectF &rect)
{
    QChartView::drawForeground(painter, rect);
    if (m_point < 0 || !hasFocus())
        return;
    const QRectF area = chart()->plotArea();
    const double x = chart()->mapToPosition(m_points[m_point]).x();
    if (x < area.left() - 1 || x > area.right() + 1)
        return;
    painter->setPen(QPen(Qt::darkGray, 1, Qt::DashLine));
    painter->drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
}

void SpectrumChartView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        chart()->zoomReset();
        return;
    }
    QChartView::mouseReleaseEvent(event);
}

void SpectrumChartView::mouseMoveEvent(QMouseEvent *event)
{
    updateMousePositionLabel(chart()->mapToValue(event->position().toPoint()));
    QChartView::mouseMoveEvent(event);
}

void SpectrumChartView::resizeEvent(QResizeEvent *event)
{
    QChartView::resizeEvent(event);
    chart()->setMinimumSize(QSizeF());
    mousePositionLabel->adjustSize();
    updateLabelPosition();
}

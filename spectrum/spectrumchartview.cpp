// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumchartview.h"

#include <QChart>
#include <QLabel>
#include <QMouseEvent>

#include <algorithm>

SpectrumChartView::SpectrumChartView(QWidget *parent)
    : QChartView(new QChart, parent), mousePositionLabel(new QLabel(this))
{
    setRenderHint(QPainter::Antialiasing);
    setMouseTracking(true);
    mousePositionLabel->setStyleSheet(
        QStringLiteral("background-color: rgba(255, 255, 255, 150); padding: 2px;"));
    mousePositionLabel->setAlignment(Qt::AlignCenter);
    // The label lies over the chart, whose zoom and read-out work under it as elsewhere.
    mousePositionLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    mousePositionLabel->show();
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
    mousePositionLabel->adjustSize();
    updateLabelPosition();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumchart.h"

#include "spectrum/chartaxes.h"
#include "spectrum/flatcurve.h"

#include <QCoreApplication>
#include <QGraphicsLayout>
#include <QLegend>
#include <QLineSeries>
#include <QValueAxis>

namespace
{

QValueAxis *makeAxis(const QString &title)
{
    auto *axis = new QValueAxis;
    axis->setTitleText(title);
    axis->setLabelFormat(QStringLiteral("%.2f"));
    return axis;
}

} // namespace

void setUpSpectrumChart(QChart *chart)
{
    chart->legend()->hide();
    chart->layout()->setContentsMargins(0, 0, 0, 0);
    QValueAxis *axisX = makeAxis(QCoreApplication::translate("SpectrumWindow", "hν / eV"));
    QValueAxis *axisY =
        makeAxis(QCoreApplication::translate("SpectrumWindow", "Intensity / arb. unit"));
    chart->addAxis(axisX, Qt::AlignBottom);
    chart->addAxis(axisY, Qt::AlignLeft);
    auto *series = new QLineSeries;
    chart->addSeries(series);
    series->attachAxis(axisX);
    series->attachAxis(axisY);
    new ChartAxes(chart);
    new FlatCurve(chart);
}

void drawSpectrum(QChart *chart, const QList<QPointF> &points, bool isLineSpectrum)
{
    drawSpectrum(chart, points, isLineSpectrum, finiteRange(points));
}

void drawSpectrum(QChart *chart, const QList<QPointF> &points, bool isLineSpectrum,
                  const std::optional<PointRange> &range)
{
    auto *series = qobject_cast<QLineSeries *>(chart->series().value(0));
    if (!series)
        return;
    // Each change of an axis lays out the curve again, so it is empty while the ranges are set.
    series->clear();
    auto *axisX = qobject_cast<QValueAxis *>(chart->axes(Qt::Horizontal).value(0));
    auto *axisY = qobject_cast<QValueAxis *>(chart->axes(Qt::Vertical).value(0));
    if (axisX && axisY && range) {
        // Otherwise the chart would later return to the range from before the zoom.
        chart->zoomReset();
        axisX->setRange(range->minX, range->maxX);
        axisY->setRange(range->minY, range->maxY);
    }
    const QList<QPointF> shown = finitePoints(points);
    series->replace(isLineSpectrum ? stickPlot(shown) : shown);
    chart->update();
}

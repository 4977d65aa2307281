// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plotfile.h"

#include "spectrum/points.h"
#include "spectrum/spectrumchart.h"

#include <QBuffer>
#include <QChart>
#include <QCoreApplication>
#include <QGraphicsLayout>
#include <QGraphicsScene>
#include <QImage>
#include <QMarginsF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

constexpr double pixelsPerInch = 96;
constexpr double pointsPerInch = 72;
constexpr double inchesPerMetre = 1 / 0.0254;

// Widens a range by a twentieth on both sides. A single value gets some room too, or nothing would
// be drawn.
void addRoom(double &least, double &most)
{
    constexpr double share = 0.05;
    double width = most - least;
    if (width == 0)
        width = most == 0 ? 1 : std::abs(most);
    if (!std::isfinite((1 + 2 * share) * width))
        return;
    least -= share * width;
    most += share * width;
}

// The intensities within the range of energies fill the height, as if these were all points.
PointRange shownRange(const QList<QPointF> &points, const PlotFormat &format)
{
    PointRange shown = finiteRange(points).value_or(PointRange{0, 1, 0, 1});
    if (format.range) {
        const EnergyRange range = *format.range;
        QList<QPointF> within;
        std::copy_if(
            points.begin(), points.end(), std::back_inserter(within),
            [&](const QPointF &p) { return p.x() >= range.fromEv && p.x() <= range.toEv; });
        shown = finiteRange(within).value_or(shown);
        shown.minX = range.fromEv;
        shown.maxX = range.toEv;
    } else {
        addRoom(shown.minX, shown.maxX);
    }
    addRoom(shown.minY, shown.maxY);
    return shown;
}

// The scene of the chart, which it owns.
class ChartScene
{
public:
    ChartScene(const QList<QPointF> &points, bool isLineSpectrum, const PlotFormat &format)
        : m_chart(new QChart)
    {
        m_scene.addItem(m_chart);
        m_chart->resize(format.size);
        setUpSpectrumChart(m_chart);
        m_chart->setTitle(format.title);
        settle();
        drawSpectrum(m_chart, points, isLineSpectrum, shownRange(points, format));
        settle();
        m_scene.setSceneRect(QRectF(QPointF(), QSizeF(format.size)));
    }

    void render(QPaintDevice &device, const QRectF &target)
    {
        QPainter painter(&device);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(target, Qt::white);
        m_scene.render(&painter, target, m_scene.sceneRect());
    }

private:
    // A window would process these events, in which the chart is laid out.
    void settle()
    {
        QCoreApplication::sendPostedEvents();
        m_chart->layout()->activate();
        QCoreApplication::sendPostedEvents();
    }

    QGraphicsScene m_scene;
    QChart *m_chart;
};

QSize pixelSize(const PlotFormat &format)
{
    return (QSizeF(format.size) * (format.dpi / pixelsPerInch)).toSize();
}

void drawPng(ChartScene &scene, const PlotFormat &format, QIODevice &device)
{
    QImage image(pixelSize(format), QImage::Format_RGB32);
    if (image.isNull())
        return;
    const int dotsPerMetre = qRound(format.dpi * inchesPerMetre);
    scene.render(image, QRectF(QPointF(), QSizeF(image.size())));
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    image.save(&device, "PNG");
}

void drawSvg(ChartScene &scene, const PlotFormat &format, QIODevice &device)
{
    QSvgGenerator generator;
    generator.setOutputDevice(&device);
    generator.setResolution(int(pixelsPerInch));
    generator.setSize(format.size);
    generator.setViewBox(QRect(QPoint(), format.size));
    generator.setTitle(QStringLiteral("Spectrum"));
    generator.setDescription({});
    scene.render(generator, QRectF(QPointF(), QSizeF(format.size)));
}

// The generator rounds to millimetres, which makes a picture of 800 pixels slightly too large:
// pages would show part of a pixel as a margin.
void measureInPixels(QByteArray &svg, const QSize &size)
{
    const qsizetype start = svg.indexOf("<svg width=\"");
    const qsizetype end = svg.indexOf("viewBox=", start);
    if (start < 0 || end < 0)
        return;
    const QByteArray measures = "<svg width=\"" + QByteArray::number(size.width()) + "\" height=\""
                                + QByteArray::number(size.height()) + "\" ";
    svg.replace(start, end - start, measures);
}

void drawPdf(ChartScene &scene, const PlotFormat &format, QIODevice &device)
{
    QPdfWriter writer(&device);
    const QSizeF page = QSizeF(format.size) * (pointsPerInch / pixelsPerInch);
    writer.setPageSize(QPageSize(page, QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    writer.setResolution(int(pixelsPerInch) * 10); // fine enough for every curve
    writer.setTitle(QStringLiteral("Spectrum"));
    writer.setCreator(QStringLiteral("zoravel"));
    scene.render(writer, QRectF(QPointF(), QSizeF(writer.width(), writer.height())));
}

} // namespace

bool isDrawable(const PlotFormat &format)
{
    constexpr qint64 mostPixels = 400'000'000;
    const QSize pixels = pixelSize(format);
    return format.kind != PlotFormat::Png || qint64(pixels.width()) * pixels.height() <= mostPixels;
}

QByteArray pictureOf(const QList<QPointF> &points, bool isLineSpectrum, const PlotFormat &format)
{
    ChartScene scene(points, isLineSpectrum, format);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    switch (format.kind) {
    case PlotFormat::Png:
        drawPng(scene, format, buffer);
        break;
    case PlotFormat::Svg:
        drawSvg(scene, format, buffer);
        measureInPixels(bytes, format.size);
        break;
    case PlotFormat::Pdf:
        drawPdf(scene, format, buffer);
        break;
    }
    return bytes;
}

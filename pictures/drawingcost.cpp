// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/drawingcost.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

namespace
{

// Paints nothing and adds up the cost of painting.
class CostEngine : public QPaintEngine
{
public:
    explicit CostEngine(QSize size) : QPaintEngine(AllFeatures), m_device(QPoint(), size) {}

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState &changed) override
    {
        if (changed.state() & DirtyTransform)
            m_transform = changed.transform();
        if (changed.state() & DirtyPen)
            m_pen = changed.pen().style() == Qt::NoPen ? 0 : changed.pen().widthF();
    }

    void drawPath(const QPainterPath &path) override
    {
        add(path.controlPointRect(), path.elementCount());
    }
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode) override
    {
        QPolygonF polygon;
        for (int i = 0; i < count; ++i)
            polygon.append(points[i]);
        add(polygon.boundingRect(), count);
    }
    void drawPixmap(const QRectF &target, const QPixmap &, const QRectF &) override
    {
        add(target, 4);
    }
    void drawImage(const QRectF &target, const QImage &, const QRectF &,
                   Qt::ImageConversionFlags) override
    {
        add(target, 4);
    }
    void drawTextItem(const QPointF &at, const QTextItem &item) override
    {
        constexpr int cornersOfLetter = 30;
        add({at.x(), at.y() - item.ascent(), item.width(), item.ascent() + item.descent()},
            item.text().size() * cornersOfLetter);
    }

    [[nodiscard]] double cost() const { return m_cost; }

private:
    void add(const QRectF &bounds, qsizetype corners)
    {
        constexpr double costOfShape = 2'000; // as of so many pixels
        constexpr double costOfCorner = 200;
        const QRectF widened = bounds.adjusted(-m_pen, -m_pen, m_pen, m_pen);
        const QRectF shown = m_transform.mapRect(widened) & QRectF(m_device);
        m_cost += costOfShape + costOfCorner * double(corners) + shown.width() * shown.height();
    }

    QRect m_device;
    QTransform m_transform;
    double m_pen = 0;
    double m_cost = 0;
};

class CostDevice : public QPaintDevice
{
public:
    explicit CostDevice(QSize size) : m_size(size), m_engine(size) {}
    QPaintEngine *paintEngine() const override { return &m_engine; }
    [[nodiscard]] double cost() const { return m_engine.cost(); }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmNumColors:
            return 1 << 24;
        case PdmDepth:
            return 32;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        case PdmDevicePixelRatio:
            return 1;
        default:
            return QPaintDevice::metric(metric);
        }
    }

private:
    QSize m_size;
    mutable CostEngine m_engine;
};

} // namespace

bool isCheapDrawing(QSvgRenderer &renderer, QSize size)
{
    constexpr double most = 1e9; // pixels
    CostDevice device(size);
    QPainter painter(&device);
    renderer.render(&painter);
    painter.end();
    return device.cost() <= most;
}

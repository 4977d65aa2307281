// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChartView>

class QLabel;
class QPointF;

// A chart view with a rubber-band zoom, reset by the right button, and a small label in its lower
// right corner that reads out the point under the mouse: photon energy in eV and intensity.
class SpectrumChartView : public QChartView
{
    Q_OBJECT

public:
    explicit SpectrumChartView(QWidget *parent = nullptr);

    // Shows value, a point in the chart's coordinates.
    void updateMousePositionLabel(const QPointF &value);
    // Moves the label 10 pixels in from the lower right corner, but not out of the view.
    void updateLabelPosition();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QLabel *mousePositionLabel;
};

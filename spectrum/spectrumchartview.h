// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChartView>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>

class QLabel;

// A chart view with a rubber-band zoom, reset by the right button, and a small label in its lower
// right corner that reads out the point under the mouse: photon energy in eV and intensity. The
// keyboard reads out the points of the spectrum one by one and zooms: Left, Right, Page Up, Page
// Down, Home, End; +, - and 0. Assistive technology gets a chart that describes its spectrum in
// words.
class SpectrumChartView : public QChartView
{
    Q_OBJECT

public:
    explicit SpectrumChartView(QWidget *parent = nullptr);

    // Shows value, a point in chart coordinates.
    void updateMousePositionLabel(const QPointF &value);
    // Moves the label 10 pixels in from the lower right corner, but never out of the view.
    void updateLabelPosition();

    // Sets the spectrum's points for the read-out and the description; the chart's series may have
    // others.
    void setSpectrumPoints(const QList<QPointF> &points);
    void setSpectrumTitle(const QString &title);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    // Shows the wait cursor if painting takes long.
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void drawForeground(QPainter *painter, const QRectF &rect) override;

private:
    void describe();
    // Reads out the point of this number, or the nearest existing one.
    void readOut(qsizetype point);
    void zoomAtPoint();
    // Zooms out by two, but not beyond the whole spectrum: 0 goes there at once, - keeps the place
    // that a close look has found.
    void zoomOut();
    // The rectangle of the points in the chart's present coordinates; invalid if they span none.
    [[nodiscard]] QRectF placeOfPoints() const;

    QLabel *mousePositionLabel;
    QString m_title;
    QString m_summary; // of the points, in words
    QList<QPointF> m_points;
    qsizetype m_point = -1; // that the keyboard reads out; none at first
};

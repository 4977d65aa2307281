// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumchartview.h"

#include "spectrum/axisticks.h"
#include "spectrum/spectrummodel.h"
#include "spectrum/spectrumwindow.h"
#include "support/warnings.h"

#include <QChart>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QGraphicsItem>
#include <QGraphicsTextItem>
#include <QJsonArray>
#include <QLabel>
#include <QLineSeries>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QValueAxis>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>

using namespace std::chrono_literals;

namespace
{

using Points = QList<QPointF>;

// A spectrum window and the parts of its chart.
struct Fixture {
    SpectrumWindow window;
    SpectrumChartView *view;
    QChart *chart;
    QLineSeries *series;
    QValueAxis *axisX;
    QValueAxis *axisY;

    explicit Fixture(const QJsonObject &spectrum = {}) : window(spectrum)
    {
        view = window.findChild<SpectrumChartView *>(QStringLiteral("chartSpectrum"));
        chart = view->chart();
        series = qobject_cast<QLineSeries *>(chart->series().value(0));
        axisX = qobject_cast<QValueAxis *>(chart->axes(Qt::Horizontal).value(0));
        axisY = qobject_cast<QValueAxis *>(chart->axes(Qt::Vertical).value(0));
    }

    [[nodiscard]] bool show()
    {
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }

    // Makes text the points at once.
    void setPoints(const QString &text)
    {
        window.findChild<QPlainTextEdit *>(QStringLiteral("textEditSpect"))->setPlainText(text);
        window.readPendingPoints();
    }

    void setLine(bool line) { window.findChild<QCheckBox *>()->setChecked(line); }

    [[nodiscard]] QRectF ranges() const
    {
        return {QPointF(axisX->min(), axisY->min()), QPointF(axisX->max(), axisY->max())};
    }

    // Where a value of the chart is painted in the view.
    [[nodiscard]] QPoint place(const QPointF &value) const
    {
        return view->mapFromScene(chart->mapToScene(chart->mapToPosition(value)));
    }

    void zoomInto(const QRect &area) const
    {
        QTest::mousePress(view->viewport(), Qt::LeftButton, {}, area.topLeft());
        QTest::mouseMove(view->viewport(), area.center());
        QTest::mouseMove(view->viewport(), area.bottomRight());
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, area.bottomRight());
    }
};

QJsonObject threePoints(bool line = false)
{
    return {{QStringLiteral("E"), QJsonArray{1, 2, 3}},
            {QStringLiteral("I"), QJsonArray{5, 3, 4}},
            {QStringLiteral("LineSpectrum"), line}};
}

QLabel *readOut(const SpectrumChartView &view)
{
    return view.findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
}

// The texts that can be seen in the chart, but the titles of its axes.
QStringList labelsOf(const Fixture &f)
{
    QStringList labels;
    for (const QGraphicsItem *item : f.view->scene()->items(Qt::AscendingOrder)) {
        const auto *text = qgraphicsitem_cast<const QGraphicsTextItem *>(item);
        const QString label = text && text->isVisible() ? text->toPlainText() : QString();
        if (!label.isEmpty() && label != f.axisX->titleText() && label != f.axisY->titleText())
            labels.append(label);
    }
    return labels;
}

// Paints the view; returns whether that drew more than one colour.
bool isPainted(SpectrumChartView &view)
{
    const QImage picture = view.grab().toImage();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != picture.pixel(0, 0))
                return true;
        }
    }
    return false;
}

// An item in a chart that records the cursor while the chart is painted.
class Witness : public QGraphicsItem
{
public:
    [[nodiscard]] QRectF boundingRect() const override { return {0, 0, 10, 10}; }

    void paint(QPainter * /*painter*/, const QStyleOptionGraphicsItem * /*option*/,
               QWidget * /*widget*/) override
    {
        const QCursor *cursor = QGuiApplication::overrideCursor();
        seen.append(cursor ? cursor->shape() : Qt::ArrowCursor);
    }

    QList<Qt::CursorShape> seen;
};

} // namespace

class TestSpectrumChartView : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    // The chart

    void theChartHasTwoNamedAxesOneSeriesAndNoLegend()
    {
        const Fixture f;
        QVERIFY(!f.chart->legend()->isVisible());
        QCOMPARE(f.chart->series().size(), 1);
        QVERIFY(f.series);
        QCOMPARE(f.chart->axes().size(), 2);
        QVERIFY(f.axisX && f.axisY);
        QCOMPARE(f.axisX->titleText(), QStringLiteral("h\u03BD / eV"));
        QCOMPARE(f.axisY->titleText(), QStringLiteral("Intensity / arb. unit"));
        QCOMPARE(f.axisX->labelFormat(), QStringLiteral("%.2f"));
        QCOMPARE(f.axisY->labelFormat(), QStringLiteral("%.2f"));
        QCOMPARE(f.axisX->alignment(), Qt::AlignBottom);
        QCOMPARE(f.axisY->alignment(), Qt::AlignLeft);
        QCOMPARE(f.series->attachedAxes(), (QList<QAbstractAxis *>{f.axisX, f.axisY}));
        QVERIFY(f.view->renderHints().testFlag(QPainter::Antialiasing));
        QCOMPARE(f.view->rubberBand(), QChartView::RectangleRubberBand);
    }

    void theViewShowsOneChartAndNoReplacedOneIsLeftBehind()
    {
        // Every chart gets events on its way into a scene.
        struct Watcher : QObject {
            QList<QPointer<QChart>> charts;
            bool eventFilter(QObject *watched, QEvent *) override
            {
                auto *chart = qobject_cast<QChart *>(watched);
                if (chart && !charts.contains(chart))
                    charts.append(chart);
                return false;
            }
        } watcher;
        qApp->installEventFilter(&watcher);
        auto f = std::make_unique<Fixture>();
        qsizetype alive = 0;
        for (const QPointer<QChart> &chart : watcher.charts)
            alive += !chart.isNull();
        QVERIFY(!watcher.charts.isEmpty());
        QCOMPARE(alive, 1);
        qsizetype shown = 0;
        for (const QGraphicsItem *item : f->view->scene()->items())
            shown += item == f->chart;
        QCOMPARE(shown, 1);
        f.reset();
        for (const QPointer<QChart> &chart : watcher.charts)
            QVERIFY(chart.isNull());
    }

    void pointsAreDrawnInTextOrderAndTheAxesSpanThemWithoutMargin()
    {
        Fixture f(threePoints());
        QCOMPARE(f.series->points(), (Points{{1, 5}, {2, 3}, {3, 4}}));
        QCOMPARE(f.ranges(), QRectF(QPointF(1, 3), QPointF(3, 5)));
        f.setPoints(QStringLiteral("20 -1\n10 7\n15 2"));
        QCOMPARE(f.series->points(), (Points{{20, -1}, {10, 7}, {15, 2}}));
        QCOMPARE(f.ranges(), QRectF(QPointF(10, -1), QPointF(20, 7)));
    }

    void withoutPointsTheSeriesIsEmptyAndTheAxesStay()
    {
        Fixture f(threePoints());
        const QRectF before = f.ranges();
        f.setPoints(QStringLiteral("no point"));
        QCOMPARE(f.series->count(), 0);
        QCOMPARE(f.ranges(), before);
        f.setLine(true);
        QCOMPARE(f.series->count(), 0);
        QCOMPARE(f.ranges(), before);
    }

    void aSinglePointGivesARangeWithoutWidth()
    {
        Fixture f;
        f.setPoints(QStringLiteral("10.5 7"));
        QCOMPARE(f.series->points(), (Points{{10.5, 7}}));
        QCOMPARE(f.ranges(), QRectF(QPointF(10.5, 7), QPointF(10.5, 7)));
    }

    void pointsOfOneIntensityOrEnergyAreDrawnInTheMiddle_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("line");
        // Shares of the width and of the height of the plot, from its upper left corner.
        QTest::addColumn<Points>("drawn");
        QTest::addColumn<Points>("blank");
        const auto row = [](const char *name, const char *text, bool line, const Points &drawn,
                            const Points &blank) {
            QTest::newRow(name) << QString::fromLatin1(text) << line << drawn << blank;
        };
        row("one intensity", "1 5\n2 5\n3 5", false, {{0.01, 0.5}, {0.37, 0.5}, {0.99, 0.5}},
            {{0.37, 0.3}, {0.37, 0.7}, {0.6, 0.9}});
        row("of zero", "1 0\n2 0", false, {{0.01, 0.5}, {0.99, 0.5}}, {{0.5, 0.7}});
        row("sticks of one intensity", "1 5\n2 5\n3 5", true,
            {{0.001, 0.6}, {0.001, 0.9}, {0.5, 0.6}, {0.5, 0.9}, {0.999, 0.6}},
            {{0.001, 0.4}, {0.5, 0.4}, {0.25, 0.5}, {0.75, 0.6}, {0.75, 0.9}});
        row("one energy", "1 5\n1 7", false, {{0.5, 0.02}, {0.5, 0.37}, {0.5, 0.98}},
            {{0.3, 0.37}, {0.7, 0.9}});
        row("one point", "1 5", false, {{0.5, 0.5}}, {{0.4, 0.5}, {0.5, 0.4}, {0.5, 0.6}});
    }

    void pointsOfOneIntensityOrEnergyAreDrawnInTheMiddle()
    {
        QFETCH(QString, text);
        QFETCH(bool, line);
        QFETCH(Points, drawn);
        QFETCH(Points, blank);
        Fixture f;
        f.setLine(line);
        f.setPoints(text);
        QVERIFY(f.show());
        const QImage picture = f.view->grab().toImage();
        const QRectF plot =
            f.view->mapFromScene(f.chart->mapToScene(f.chart->plotArea()).boundingRect())
                .boundingRect();
        // The curve alone has a colour; lines lie between pixels.
        const auto isColoured = [&](const QPointF &share) {
            const QPointF middle =
                plot.topLeft() + QPointF(share.x() * plot.width(), share.y() * plot.height());
            const QPoint pixel = (middle * picture.devicePixelRatio()).toPoint();
            for (const QPoint by :
                 {QPoint(0, 0), QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
                if (picture.pixelColor(pixel + by).hsvSaturation() > 60)
                    return true;
            }
            return false;
        };
        for (const QPointF &share : drawn)
            QVERIFY2(isColoured(share),
                     qPrintable(QStringLiteral("%1, %2").arg(share.x()).arg(share.y())));
        for (const QPointF &share : blank)
            QVERIFY2(!isColoured(share),
                     qPrintable(QStringLiteral("%1, %2").arg(share.x()).arg(share.y())));
    }

    void aLineSpectrumIsDrawnAsSticks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Points>("drawn");
        QTest::newRow("no point") << QString() << Points{};
        QTest::newRow("one") << QStringLiteral("1 5") << Points{{1, 5}};
        QTest::newRow("two") << QStringLiteral("1 5\n2 3") << Points{{1, 5}, {1, 0}, {2, 3}};
        QTest::newRow("three") << QStringLiteral("1 5\n2 3\n3 4")
                               << Points{{1, 5}, {1, 0}, {2, 0}, {2, 3}, {2, 0}, {3, 4}};
    }

    void aLineSpectrumIsDrawnAsSticks()
    {
        QFETCH(QString, text);
        Fixture f(threePoints());
        f.setPoints(text);
        const Points points = f.series->points();
        const QRectF ranges = f.ranges();
        f.setLine(true);
        QTEST(f.series->points(), "drawn");
        // The ranges are those of the points, not of the sticks.
        QCOMPARE(f.ranges(), ranges);
        f.setLine(false);
        QCOMPARE(f.series->points(), points);
    }

    void aLoadedLineSpectrumIsDrawnAsSticks()
    {
        const Fixture f(threePoints(true));
        QCOMPARE(f.series->points(), (Points{{1, 5}, {1, 0}, {2, 0}, {2, 3}, {2, 0}, {3, 4}}));
        QCOMPARE(f.ranges(), QRectF(QPointF(1, 3), QPointF(3, 5)));
    }

    void aChartWithoutItsSeriesOrAxesIsLeftAlone()
    {
        Fixture f(threePoints());
        f.chart->removeAxis(f.axisY);
        delete f.axisY;
        f.setPoints(QStringLiteral("7 7\n8 8"));
        QCOMPARE(f.series->points(), (Points{{7, 7}, {8, 8}}));
        QCOMPARE(f.axisX->max(), 3.0);
        f.chart->removeAllSeries();
        f.setPoints(QStringLiteral("9 9"));
        QVERIFY(f.chart->series().isEmpty());
    }

    void pointsThatAnAxisCannotShowLeaveItsLastFiniteRange_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("all not a number") << QStringLiteral("nan nan");
        QTest::newRow("none finite") << QStringLiteral("1 -inf\nnan 2\n1 nan");
        QTest::newRow("wider than a double") << QStringLiteral("-1e308 1\n1e308 2");
        QTest::newRow("higher than a double") << QStringLiteral("1 -1e308\n2 1e308");
    }

    void pointsThatAnAxisCannotShowLeaveItsLastFiniteRange()
    {
        QFETCH(QString, text);
        for (const bool line : {false, true}) {
            Fixture f(threePoints(line));
            const QRectF before = f.ranges();
            f.setPoints(text);
            QCOMPARE(f.ranges(), before);
            f.setPoints(QStringLiteral("6 7\n8 9"));
            QCOMPARE(f.ranges(), QRectF(QPointF(6, 7), QPointF(8, 9)));
        }
    }

    void pointsThatAreNotFiniteHideNoOthers_data()
    {
        QTest::addColumn<QString>("bad");
        for (const char *bad : {"9.611 nan", "nan 1", "nan nan", "9.611 inf", "inf 1", "9.611 -inf",
                                "-inf 1", "inf nan"})
            QTest::newRow(bad) << QString::fromLatin1(bad);
    }

    // In a fresh spectrum and in one with a curve, wherever the line stands.
    void pointsThatAreNotFiniteHideNoOthers()
    {
        QFETCH(QString, bad);
        const QStringList good{QStringLiteral("6 9"), QStringLiteral("7 8"), QStringLiteral("8 7")};
        for (qsizetype at = 0; at <= good.size(); ++at) {
            QStringList lines = good;
            lines.insert(at, bad);
            for (const QJsonObject &before : {QJsonObject(), threePoints()}) {
                Fixture f(before);
                f.setPoints(lines.join(QLatin1Char('\n')));
                QCOMPARE(f.ranges(), QRectF(QPointF(6, 7), QPointF(8, 9)));
                QCOMPARE(f.series->points(), (Points{{6, 9}, {7, 8}, {8, 7}}));
                f.setLine(true);
                QCOMPARE(f.series->points(),
                         (Points{{6, 9}, {6, 0}, {7, 0}, {7, 8}, {7, 0}, {8, 7}}));
                QCOMPARE(f.ranges(), QRectF(QPointF(6, 7), QPointF(8, 9)));
            }
        }
    }

    void keysGiveTheAxesFiniteRangesOnly_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("not a number") << QStringLiteral("1 1\n2 nan\nnan 3\n4 4");
        QTest::newRow("infinite") << QStringLiteral("1 1\n2 inf\n-inf 3\n4 4\ninf inf");
        QTest::newRow("alone") << QStringLiteral("nan inf");
        QTest::newRow("wider than a double") << QStringLiteral("-1e308 1\n1e308 2");
        QTest::newRow("higher than a double") << QStringLiteral("1 -1e308\n2 1e308");
    }

    void keysGiveTheAxesFiniteRangesOnly()
    {
        QFETCH(QString, text);
        Fixture f(threePoints());
        QVERIFY(f.show());
        f.setPoints(text);
        for (const int key : {Qt::Key_Home, Qt::Key_Plus, Qt::Key_Right, Qt::Key_Right, Qt::Key_End,
                              Qt::Key_Plus, Qt::Key_Left, Qt::Key_Minus, Qt::Key_Home, Qt::Key_0}) {
            QTest::keyClick(f.view, static_cast<Qt::Key>(key));
            for (const double bound :
                 {f.axisX->min(), f.axisX->max(), f.axisY->min(), f.axisY->max()})
                QVERIFY(std::isfinite(bound));
        }
    }

    void labelsAreRoundValuesWithinTheExactRanges()
    {
        Fixture f;
        QVERIFY(f.show());
        f.setPoints(QStringLiteral("9.1 0.1\n10.03 0.9"));
        QCOMPARE(f.ranges(), QRectF(QPointF(9.1, 0.1), QPointF(10.03, 0.9)));
        const QStringList labels = labelsOf(f);
        for (const char *label : {"9.20", "9.40", "9.60", "9.80", "10.00", "0.20", "0.40", "0.60"})
            QVERIFY2(labels.contains(QLatin1String(label)), qPrintable(labels.join(u' ')));
        f.setPoints(QStringLiteral("9.1 1e-5\n10.03 4e-5"));
        QVERIFY(labelsOf(f).contains(QStringLiteral("2.0×10⁻⁵")));
        f.setPoints(QStringLiteral("10.5 7"));
        QStringList single = labelsOf(f);
        single.sort();
        QCOMPARE(single, (QStringList{QStringLiteral("10.50"), QStringLiteral("7.00")}));
    }

    // The labels are the ticks of the range that is shown, and no two of them are alike.
    void labelsFollowEveryZoom()
    {
        Fixture f;
        QVERIFY(f.show());
        f.setPoints(QStringLiteral("9.12 1e-5\n9.145 2000\n9.16 30"));
        for (int zoom = 0; zoom < 60; ++zoom) {
            const QStringList labels = labelsOf(f);
            QVERIFY(QSet<QString>(labels.cbegin(), labels.cend()).size() > labels.size() - 2);
            for (const QValueAxis *axis : {f.axisX, f.axisY}) {
                int shown = 0;
                for (int most = leastTicks; most <= mostTicks; ++most) {
                    const AxisTicks ticks = axisTicks(axis->min(), axis->max(), most);
                    const bool all =
                        std::all_of(ticks.labels.begin(), ticks.labels.end(),
                                    [&](const QString &label) { return labels.contains(label); });
                    shown = std::max(shown, all ? int(ticks.labels.size()) : 0);
                }
                const bool isTooNarrow = axis->max() - axis->min() < 1e-12 * std::abs(axis->max());
                QVERIFY2((shown >= 3 && shown <= 9) || isTooNarrow, qPrintable(labels.join(u' ')));
            }
            QTest::keyClick(f.view, Qt::Key_Plus);
        }
        QTest::keyClick(f.view, Qt::Key_0);
        QVERIFY(labelsOf(f).contains(QStringLiteral("9.125")));
    }

    void labelsLeaveEachOtherAndTheEdgesRoom_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("text");
        for (const QSize &size : {QSize(300, 200), QSize(900, 200), QSize(1500, 900)}) {
            int row = 0;
            for (const char *text : {"9.1 0\n10.3 1000", "9.12345 1e-5\n9.12346 2e-5",
                                     "9 -1e9\n10 1e9", "-1e-12 1e12\n1e-12 1.001e12"})
                QTest::addRow("%dx%d %d", size.width(), size.height(), ++row)
                    << size << QString::fromLatin1(text);
        }
    }
    void labelsLeaveEachOtherAndTheEdgesRoom()
    {
        QFETCH(QSize, size);
        QFETCH(QString, text);
        Fixture f;
        f.setPoints(text);
        const std::unique_ptr<SpectrumChartView> alone(f.view);
        f.view->setParent(nullptr);
        f.view->setMinimumSize(0, 0);
        f.view->resize(size);
        f.view->show();
        QVERIFY(QTest::qWaitForWindowExposed(f.view));
        QList<QRectF> places;
        for (const QGraphicsItem *item : f.view->scene()->items()) {
            const auto *label = qgraphicsitem_cast<const QGraphicsTextItem *>(item);
            if (!label || !label->isVisible() || label->toPlainText().isEmpty())
                continue;
            const QRectF place = label->sceneBoundingRect();
            QVERIFY2(f.chart->rect().contains(place), qPrintable(label->toPlainText()));
            QVERIFY(!place.intersects(f.chart->plotArea()));
            // The lines of a text have some room above and below its letters.
            for (const QRectF &other : std::as_const(places))
                QVERIFY2(!place.adjusted(0, 3, 0, -3).intersects(other),
                         qPrintable(label->toPlainText()));
            places.append(place);
        }
        QVERIFY(places.size() >= 2 + 3 + 3);
    }

    // Text under the label would make 9.35 look like 9.36.
    void theReadOutLeavesTheLabelsOfTheTicksFree()
    {
        Fixture f;
        QVERIFY(f.show());
        f.setPoints(QStringLiteral("9.1 1\n9.35 3"));
        for (const bool hasText : {false, true}) {
            if (hasText)
                f.view->updateMousePositionLabel({9.3123, 1000});
            const QRect geometry = readOut(*f.view)->geometry();
            QVERIFY(!geometry.isEmpty());
            const QRectF covered = f.view->mapToScene(geometry).boundingRect();
            int labels = 0;
            for (const QGraphicsItem *item : f.view->scene()->items()) {
                const auto *label = qgraphicsitem_cast<const QGraphicsTextItem *>(item);
                const QString text = label && label->isVisible() ? label->toPlainText() : QString();
                if (!text.startsWith(QLatin1String("9.")))
                    continue;
                ++labels;
                QVERIFY2(!label->sceneBoundingRect().intersects(covered), qPrintable(text));
            }
            QVERIFY(labels >= leastTicks);
        }
    }

    void everyNumberIsPaintedWithoutACrashOrAWarning_data()
    {
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const char *text) {
            QTest::newRow(name) << QString::fromLatin1(text);
        };
        row("no point", "");
        row("one point", "10 5");
        row("one point of zeros", "0 0");
        row("one energy", "10 5\n10 6\n10 7");
        row("one intensity", "10 5\n11 5\n12 5");
        row("one point twice", "10 5\n10 5");
        row("neighbouring doubles", "10 5\n10.000000000000002 5.000000000000001");
        row("not a number", "nan 1\n2 nan\n3 3\nnan nan");
        row("infinite", "inf 1\n2 -inf\n3 3\n-inf inf");
        row("all infinite", "inf inf\n-inf -inf");
        row("not finite among finite ones", "1 1\n2 inf\n3 2\nnan 3\n4 4\n-inf 0\n5 1");
        row("huge", "1e308 1e308");
        row("huge energies", "0 1\n1e308 2");
        row("huge intensities", "1 0\n2 1e308\n3 -1");
        row("hugely negative", "-1e308 -1e308\n0 0");
        row("both signs", "-1e308 -1e308\n1e308 1e308");
        row("smallest", "0 0\n5e-324 5e-324");
        row("smallest alone", "5e-324 5e-324");
        row("smallest and huge", "5e-324 1e308\n1e308 5e-324\n-5e-324 0");
        row("denormal", "1e-310 1e-310\n2e-310 3e-310");
        row("huge beside a normal range", "1e300 1\n1.0000001e300 2");
        row("large enough to overflow pixels", "1 1\n2 1e12\n3 -1e12");
    }

    void everyNumberIsPaintedWithoutACrashOrAWarning()
    {
        QFETCH(QString, text);
        // First in the axes that an earlier spectrum left, then in a zoomed chart, then in new
        // axes.
        Fixture f(threePoints());
        QVERIFY(f.show());
        QElapsedTimer time;
        time.start();
        for (const bool line : {false, true}) {
            f.setLine(line);
            f.setPoints(text);
            QVERIFY(isPainted(*f.view));
            f.zoomInto(QRect(f.view->viewport()->rect().center(), QSize(40, 20)));
            QVERIFY(isPainted(*f.view));
            QTest::mouseMove(f.view->viewport(), QPoint(30, 30));
            QTest::mouseMove(f.view->viewport(), f.view->viewport()->rect().center());
            QTest::mouseClick(f.view->viewport(), Qt::RightButton);
            f.window.resize(f.window.size() + QSize(10, 10));
            QVERIFY(isPainted(*f.view));
        }
        Fixture fresh;
        QVERIFY(fresh.show());
        fresh.setPoints(text);
        QVERIFY(isPainted(*fresh.view));
        QVERIFY2(time.elapsed() < 20'000, "painting takes far too long");

        // And the chart still works.
        f.setPoints(QStringLiteral("1 1\n2 2"));
        QVERIFY(isPainted(*f.view));
        QCOMPARE(f.ranges(), QRectF(QPointF(1, 1), QPointF(2, 2)));
    }

    // The view

    void aViewHasAChartOfItsOwnAndTracksTheMouse()
    {
        const SpectrumChartView view;
        QVERIFY(view.chart());
        QVERIFY(view.hasMouseTracking());
        QVERIFY(view.renderHints().testFlag(QPainter::Antialiasing));
    }

    void theReadOutIsAnEmptyTranslucentCentredLabelAtFirst()
    {
        const SpectrumChartView view;
        const QLabel *label = readOut(view);
        QVERIFY(label);
        QCOMPARE(label->text(), QString());
        QCOMPARE(label->alignment(), Qt::AlignCenter);
        QCOMPARE(label->styleSheet(),
                 QStringLiteral("background-color: rgba(255, 255, 255, 150); padding: 2px;"));
        QVERIFY(!label->isHidden());
    }

    void theReadOutHasFourAndTwoDecimals_data()
    {
        QTest::addColumn<QPointF>("value");
        QTest::addColumn<QString>("text");
        const double inf = std::numeric_limits<double>::infinity();
        QTest::newRow("rounded") << QPointF(10.12346, 7.126)
                                 << QStringLiteral("h\u03BD: 10.1235, I: 7.13");
        QTest::newRow("filled up") << QPointF(1, -2) << QStringLiteral("h\u03BD: 1.0000, I: -2.00");
        QTest::newRow("zero") << QPointF(0, 0) << QStringLiteral("h\u03BD: 0.0000, I: 0.00");
        QTest::newRow("large") << QPointF(1e6, 1e9)
                               << QStringLiteral("h\u03BD: 1000000.0000, I: 1000000000.00");
        QTest::newRow("not finite")
            << QPointF(std::nan(""), inf) << QStringLiteral("h\u03BD: nan, I: inf");
    }

    void theReadOutHasFourAndTwoDecimals()
    {
        QFETCH(QPointF, value);
        SpectrumChartView view;
        view.updateMousePositionLabel(value);
        QTEST(readOut(view)->text(), "text");
    }

    void movingTheMouseReadsOutThePointUnderIt()
    {
        Fixture f(threePoints());
        QVERIFY(f.show());
        const QPoint position = f.place({2, 4});
        QTest::mouseMove(f.view->viewport(), position);
        QTRY_VERIFY(!readOut(*f.view)->text().isEmpty());
        const QPointF value = f.chart->mapToValue(position);
        QVERIFY(std::abs(value.x() - 2) < 0.01);
        QVERIFY(std::abs(value.y() - 4) < 0.05);
        QCOMPARE(readOut(*f.view)->text(), QStringLiteral("h\u03BD: %1, I: %2")
                                               .arg(value.x(), 0, 'f', 4)
                                               .arg(value.y(), 0, 'f', 2));
    }

    void theReadOutRoundsThePositionToWholePixels()
    {
        Fixture f(threePoints());
        QVERIFY(f.show());
        const QPoint position = f.place({2, 4});
        QString texts[2];
        for (int i = 0; i < 2; ++i) {
            const QPointF local = QPointF(position) + QPointF(i ? 0.5 : 0.25, i ? -0.25 : 0.25);
            QMouseEvent event(QEvent::MouseMove, local, f.view->viewport()->mapToGlobal(local),
                              Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(f.view->viewport(), &event);
            texts[i] = readOut(*f.view)->text();
        }
        const auto text = [&](const QPoint &pixel) {
            const QPointF value = f.chart->mapToValue(pixel);
            return QStringLiteral("h\u03BD: %1, I: %2")
                .arg(value.x(), 0, 'f', 4)
                .arg(value.y(), 0, 'f', 2);
        };
        QCOMPARE(texts[0], text(position));
        QCOMPARE(texts[1], text(position + QPoint(1, 0)));
        QVERIFY(texts[0] != texts[1]);
    }

    void theReadOutStaysTenPixelsOffTheLowerRightCorner()
    {
        SpectrumChartView view;
        const QLabel *label = readOut(view);
        const auto inset = [&] {
            return QPoint(view.width() - label->x() - label->width(),
                          view.height() - label->y() - label->height());
        };
        view.resize(600, 400);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.updateMousePositionLabel({1, 2});
        QCOMPARE(inset(), QPoint(10, 10));
        const int width = label->width();
        view.updateMousePositionLabel({123456, 123456});
        QVERIFY(label->width() > width);
        QCOMPARE(inset(), QPoint(10, 10));
        for (const QSize &size : {QSize(300, 200), QSize(500, 100), QSize(800, 600)}) {
            view.resize(size);
            QCOMPARE(view.size(), size);
            QTRY_COMPARE(inset(), QPoint(10, 10));
        }
    }

    void theReadOutSitsInTheUpperLeftCornerOfAViewThatIsTooSmallForIt()
    {
        QWidget window;
        SpectrumChartView view(&window);
        QLabel *label = readOut(view);
        QFont large = label->font();
        large.setPixelSize(
            200); // a chart has a least size, and the label is to be larger than that
        label->setFont(large);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        view.updateMousePositionLabel({1, 2});
        QVERIFY(label->width() > view.minimumWidth() && label->height() > view.minimumHeight());

        view.resize(label->size() + QSize(9, 9));
        QCOMPARE(view.size(), label->size() + QSize(9, 9));
        QCOMPARE(label->pos(), QPoint(0, 0));
        view.resize(5, 5);
        QVERIFY(view.width() < label->width() && view.height() < label->height());
        QCOMPARE(label->pos(), QPoint(0, 0));
        view.updateMousePositionLabel({10, 20});
        QCOMPARE(label->pos(), QPoint(0, 0));
        view.resize(label->size() + QSize(10, 10));
        QCOMPARE(label->pos(), QPoint(0, 0));
        view.resize(label->size() + QSize(11, 12));
        QCOMPARE(label->pos(), QPoint(1, 2));
    }

    void theReadOutLetsTheMouseThrough()
    {
        Fixture f(threePoints());
        QVERIFY(f.show());
        f.view->updateMousePositionLabel({1, 2});
        const QLabel *label = readOut(*f.view);
        QVERIFY(label->testAttribute(Qt::WA_TransparentForMouseEvents));
        QCOMPARE(f.view->childAt(label->geometry().center()), f.view->viewport());
    }

    void theRubberBandZoomsAndTheRightButtonResetsAllOfIt()
    {
        Fixture f(threePoints());
        QVERIFY(f.show());
        const QRectF before = f.ranges();
        f.zoomInto(QRect(f.place({1.5, 4.5}), f.place({2.5, 3.5})));
        QVERIFY(f.chart->isZoomed());
        QVERIFY(std::abs(f.axisX->min() - 1.5) < 0.02 && std::abs(f.axisX->max() - 2.5) < 0.02);
        QVERIFY(std::abs(f.axisY->min() - 3.5) < 0.05 && std::abs(f.axisY->max() - 4.5) < 0.05);
        f.zoomInto(QRect(f.place({1.75, 4.25}), f.place({2.25, 3.75})));
        QVERIFY(f.axisX->max() - f.axisX->min() < 0.6);

        QTest::mouseClick(f.view->viewport(), Qt::RightButton);
        QVERIFY(!f.chart->isZoomed());
        QCOMPARE(f.ranges(), before);
        // On a chart that is not zoomed it does nothing, where Qt's own view zooms out.
        QTest::mouseClick(f.view->viewport(), Qt::RightButton);
        QVERIFY(!f.chart->isZoomed());
        QCOMPARE(f.ranges(), before);
    }

    void paintingALongLineShowsTheWaitCursor()
    {
        Fixture f(threePoints());
        QVERIFY(f.show());
        auto *witness = new Witness;
        f.view->scene()->addItem(witness);
        constexpr int mostWithout = 500'000;
        for (const int corners : {mostWithout, mostWithout + 1}) {
            f.series->replace(Points(corners, QPointF(2, 4)));
            witness->seen.clear();
            f.view->viewport()->repaint();
            const auto expected = corners > mostWithout ? Qt::WaitCursor : Qt::ArrowCursor;
            QCOMPARE(witness->seen, QList<Qt::CursorShape>{expected});
            QVERIFY(!QGuiApplication::overrideCursor());
        }
    }

    void newPointsUndoAZoomForGood()
    {
        Fixture f(threePoints());
        QVERIFY(f.show());
        f.zoomInto(QRect(f.place({1.5, 4.5}), f.place({2.5, 3.5})));
        QVERIFY(f.axisX->max() < 3);
        f.setPoints(QStringLiteral("11 15\n12 13\n13 14\n"));
        const QRectF ranges(QPointF(11, 13), QPointF(13, 15));
        QCOMPARE(f.ranges(), ranges);
        // A reset shows the new points, not the range before the zoom into the old ones.
        QTest::mouseClick(f.view->viewport(), Qt::RightButton);
        QCOMPARE(f.ranges(), ranges);
    }
};

QTEST_MAIN(TestSpectrumChartView)
#include "tst_spectrumchartview.moc"

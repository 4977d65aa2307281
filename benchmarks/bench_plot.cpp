// SPDX-License-Identifier: GPL-3.0-or-later
// A picture of a spectrum of 100,000 points by the command-line program against the editor's own
// redraw of its chart and the encoding of what it shows.
#include "benchmarks/measure.h"
#include "cli/plotfile.h"
#include "spectrum/spectrumchartview.h"
#include "spectrum/spectrumobject.h"
#include "spectrum/spectrumwindow.h"

#include <QApplication>
#include <QBuffer>
#include <QJsonObject>
#include <QRandomGenerator>

namespace
{

constexpr int rounds = 5;

QList<QPointF> makePoints(int count)
{
    QRandomGenerator random(1);
    QList<QPointF> points;
    for (int i = 0; i < count; ++i)
        points.append({9 + 0.0001 * i, 1000 * random.generateDouble()});
    return points;
}

bool compare(const char *what, bool isLineSpectrum)
{
    QJsonObject spectrum{{lineSpectrumKey, isLineSpectrum}};
    storePoints(spectrum, makePoints(100'000));
    SpectrumWindow window(spectrum);
    window.resize(900, 900);
    window.show();
    auto *view = window.findChild<SpectrumChartView *>();
    QCoreApplication::processEvents();

    PlotFormat format;
    format.size = view->size();
    const QList<QPointF> points = storedPoints(spectrum);
    const auto redrawAndEncode = [&] {
        window.updateChart();
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        view->grab().save(&buffer, "PNG");
        keep(buffer.data());
    };
    const Ratio ratio = measureSeconds(
        rounds, [&] { return secondsOf([&] { keep(pictureOf(points, isLineSpectrum, format)); }); },
        [&] {
            const double seconds = secondsOf(redrawAndEncode);
            // The window is due to be painted once more, which is neither's work. Left waiting, it
            // would be done within the other's.
            QCoreApplication::processEvents();
            return seconds;
        });
    return report(what, ratio, "the editor's redraw and encoding", 1.3);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    bool kept = compare("plot a curve of 100,000 points", false);
    kept &= compare("plot 100,000 sticks", true);
    return kept ? 0 : 1;
}

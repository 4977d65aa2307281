// SPDX-License-Identifier: GPL-3.0-or-later
// Loading a species file through the main window against what Qt alone needs for the same
// windows, texts and charts, and against loading half as many points.
#include "app/mainwindow.h"
#include "benchmarks/measure.h"
#include "ui_spectrumwindow.h"

#include <QApplication>
#include <QChart>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineSeries>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QValueAxis>

#include <cstdlib>

namespace
{

constexpr int rounds = 7;

// A species file and what its spectra come to, ready-made.
struct Entry {
    QString path;
    QList<QPointF> points;
    QString pointText;
    int spectra;
};

Entry makeEntry(const QString &path, int spectra, int points)
{
    Entry entry{path, {}, {}, spectra};
    QRandomGenerator random(1);
    QJsonArray energies;
    QJsonArray intensities;
    QStringList lines;
    for (int i = 0; i < points; ++i) {
        // Six significant digits, as they come back from the text.
        const double energy = QString::number(5 + 15.0 * i / points, 'g', 6).toDouble();
        const double intensity = QString::number(1000 * random.generateDouble(), 'g', 6).toDouble();
        energies.append(energy);
        intensities.append(intensity);
        entry.points.append(QPointF(energy, intensity));
        lines.append(QStringLiteral("%1; %2").arg(energy).arg(intensity));
    }
    entry.pointText = lines.join(QLatin1Char('\n'));

    const QJsonObject spectrum{{QStringLiteral("Title"), QStringLiteral("a spectrum")},
                               {QStringLiteral("SpectType"), 3},
                               {QStringLiteral("E"), energies},
                               {QStringLiteral("I"), intensities}};
    QJsonObject file{{QStringLiteral("Type"), QStringLiteral("Species v1")},
                     {QStringLiteral("Species"), QJsonObject()}};
    for (int i = 1; i <= spectra; ++i)
        file.insert(QStringLiteral("Dataset%1").arg(i), spectrum);
    QFile out(path);
    const QByteArray bytes = QJsonDocument(file).toJson();
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        std::exit(2);
    }
    return entry;
}

void paint(QWidget *window)
{
    QCoreApplication::processEvents();
    keep(window->grab());
}

QValueAxis *addAxis(QChart *chart, Qt::Alignment alignment)
{
    auto *axis = new QValueAxis;
    axis->setLabelFormat(QStringLiteral("%.2f"));
    chart->addAxis(axis, alignment);
    return axis;
}

// A spectrum window's form with its text and chart, and nothing behind it.
QWidget *bareSpectrumWindow(const Entry &entry)
{
    auto *window = new QWidget;
    Ui::SpectrumWindow ui;
    ui.setupUi(window);
    ui.textEditSpect->setPlainText(entry.pointText);

    QChart *chart = ui.chartSpectrum->chart();
    chart->legend()->hide();
    QValueAxis *axisX = addAxis(chart, Qt::AlignBottom);
    QValueAxis *axisY = addAxis(chart, Qt::AlignLeft);
    auto *series = new QLineSeries;
    chart->addSeries(series);
    series->attachAxis(axisX);
    series->attachAxis(axisY);
    series->replace(entry.points);
    axisX->setRange(entry.points.first().x(), entry.points.last().x());
    axisY->setRange(0, 1000);
    return window;
}

void loadBarely(MainWindow *window, const Entry &entry)
{
    QFile file(entry.path);
    if (!file.open(QIODevice::ReadOnly))
        std::exit(2);
    keep(QJsonDocument::fromJson(file.readAll()));
    auto *area = window->findChild<QMdiArea *>();
    for (int i = 0; i < entry.spectra; ++i) {
        QWidget *spectrum = bareSpectrumWindow(entry);
        area->addSubWindow(spectrum);
        spectrum->show();
    }
    const QList<QMdiSubWindow *> subWindows = area->subWindowList();
    area->setActiveSubWindow(subWindows.first());
    paint(window);
}

void load(MainWindow *window, const Entry &entry)
{
    if (!window->loadSpeciesFile(entry.path))
        std::exit(2);
    paint(window);
}

// The seconds of a job in a new main window, which is shown before and deleted after.
template <typename Job>
double secondsInANewWindow(Job job, const Entry &entry)
{
    MainWindow window;
    window.resize(1400, 1000);
    window.show();
    paint(&window);
    return secondsOf([&] { job(&window, entry); });
}

bool compareWithQt(const char *what, const Entry &entry)
{
    const Ratio ratio = measureSeconds(
        rounds, [&] { return secondsInANewWindow(load, entry); },
        [&] { return secondsInANewWindow(loadBarely, entry); });
    return report(what, ratio, "Qt's own part", 1.3);
}

bool compareSizes(const Entry &twice, const Entry &once)
{
    const Ratio ratio = measureSeconds(
        rounds, [&] { return secondsInANewWindow(load, twice); },
        [&] { return secondsInANewWindow(load, once); });
    const QString what = QStringLiteral("load %1 points").arg(twice.points.size());
    return report(qPrintable(what), ratio, "half as many", 2.5);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    // Loading remembers the folder: not in the settings of whoever measures.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    const auto entry = [&](int spectra, int points) {
        const QString name = QStringLiteral("%1x%2.json").arg(spectra).arg(points);
        return makeEntry(folder.filePath(name), spectra, points);
    };
    bool kept = true;
    kept &= compareWithQt("load 20 spectra of 5,000 points", entry(20, 5'000));
    kept &= compareWithQt("load a spectrum of 200,000 points", entry(1, 200'000));
    Entry once = entry(1, 25'000);
    for (const int points : {50'000, 100'000, 200'000, 400'000}) {
        Entry twice = entry(1, points);
        kept &= compareSizes(twice, once);
        once = std::move(twice);
    }
    return kept ? 0 : 1;
}

// SPDX-License-Identifier: GPL-3.0-or-later
// Entries of many spectra: loading, closing and leaving one of 500 against one of 250, loading
// 2,000 empty ones against 1,000, and loading against making and showing the same windows one by
// one with nothing around them, in time and, on Linux, in memory.
#include "app/mainwindow.h"
#include "benchmarks/measure.h"
#include "spectrum/spectrumwindow.h"

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMdiArea>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdlib>
#include <memory>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace
{

constexpr int rounds = 3;
constexpr int half = 250;
constexpr int whole = 2 * half;
constexpr QSize windowSize(1400, 1000);

QJsonObject spectrumObject()
{
    QJsonArray energies;
    QJsonArray intensities;
    for (int i = 0; i < 500; ++i) {
        energies.append(10 + 0.001 * i);
        intensities.append(i % 100);
    }
    return {{QStringLiteral("Title"), QStringLiteral("a spectrum")},
            {QStringLiteral("SpectType"), 3},
            {QStringLiteral("E"), energies},
            {QStringLiteral("I"), intensities}};
}

QString writeEntry(const QString &path, int spectra, const QJsonObject &spectrum)
{
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
    return path;
}

// Lets windows be painted, and those that were closed go.
void settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::unique_ptr<MainWindow> shownWindow()
{
    auto window = std::make_unique<MainWindow>();
    window->resize(windowSize);
    window->show();
    settle();
    return window;
}

void load(MainWindow *window, const QString &path)
{
    if (!window->loadSpeciesFile(path))
        std::exit(2);
    settle();
}

double secondsToLoad(const QString &path)
{
    const auto window = shownWindow();
    return secondsOf([&] { load(window.get(), path); });
}

double secondsToClose(const QString &path)
{
    const auto window = shownWindow();
    load(window.get(), path);
    return secondsOf([&] {
        window->cleanUp();
        settle();
    });
}

double secondsToLeave(const QString &path)
{
    auto window = shownWindow();
    load(window.get(), path);
    return secondsOf([&] { window.reset(); });
}

double secondsToMakeEach(int spectra)
{
    const QJsonObject object = spectrumObject();
    return secondsOf([&] {
        for (int i = 0; i < spectra; ++i) {
            SpectrumWindow window(object);
            window.resize(windowSize);
            window.show();
            QCoreApplication::processEvents();
        }
    });
}

#ifdef __GLIBC__
double bytesInUse()
{
    return static_cast<double>(mallinfo2().uordblks);
}

// What a spectrum that is not shown takes, against one that was.
bool reportMemory(const QString &path)
{
    const auto window = shownWindow();
    load(window.get(), path);
    auto *area = window->findChild<QMdiArea *>();
    const double before = bytesInUse();
    constexpr int shown = 100;
    for (int i = 0; i < shown; ++i) {
        area->activateNextSubWindow();
        settle();
    }
    const double all = bytesInUse();
    const double more = (all - before) / shown;
    window->cleanUp();
    settle();
    const double covered = (before - bytesInUse()) / whole;
    constexpr double limit = 0.7;
    const double ratio = covered / (covered + more);
    std::printf("memory of a spectrum that is not shown: %.2f times that of one that was (limit "
                "%g%s; %.0f kB against %.0f kB)\n",
                ratio, limit, ratio <= limit ? "" : ", MISSED", covered / 1e3,
                (covered + more) / 1e3);
    return ratio <= limit;
}
#else
bool reportMemory(const QString & /*path*/)
{
    return true;
}
#endif

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    // Loading remembers the folder: not in the settings of whoever measures.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    const auto entry = [&folder](int spectra, const QJsonObject &spectrum) {
        const QString name = QStringLiteral("%1 %2.json").arg(spectra).arg(spectrum.size());
        return writeEntry(folder.filePath(name), spectra, spectrum);
    };
    const QString few = entry(half, spectrumObject());
    const QString many = entry(whole, spectrumObject());
    const QString fewEmpty = entry(1000, {});
    const QString manyEmpty = entry(2000, {});

    constexpr double linear = 2.3;
    const auto compare = [&](const char *what, double (*seconds)(const QString &)) {
        const Ratio ratio = measureSeconds(
            rounds, [&] { return seconds(many); }, [&] { return seconds(few); });
        return report(what, ratio, "250", linear);
    };
    bool kept = compare("load 500 spectra", secondsToLoad);
    kept &= compare("close 500 spectra", secondsToClose);
    kept &= compare("leave the program with 500 spectra", secondsToLeave);
    const Ratio empty = measureSeconds(
        rounds, [&] { return secondsToLoad(manyEmpty); }, [&] { return secondsToLoad(fewEmpty); });
    kept &= report("load 2,000 empty spectra", empty, "1,000", linear);
    const Ratio alone = measureSeconds(
        rounds, [&] { return secondsToLoad(many); }, [] { return secondsToMakeEach(whole); });
    kept &= report("load 500 spectra", alone, "making, showing and deleting each by itself", 0.6);
    kept &= reportMemory(many);
    return kept ? 0 : 1;
}

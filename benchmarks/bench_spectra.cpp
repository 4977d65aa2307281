// SPDX-License-Identifier: GPL-3.0-or-later
// Entries of many spectra: loading, closing and leaving one of 500 against one of 250, and loading
// against making the same windows one by one with nothing around them.
#include "app/mainwindow.h"
#include "benchmarks/measure.h"
#include "spectrum/spectrumwindow.h"

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdlib>
#include <memory>

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

QString writeEntry(const QString &path, int spectra)
{
    QJsonObject file{{QStringLiteral("Type"), QStringLiteral("Species v1")},
                     {QStringLiteral("Species"), QJsonObject()}};
    for (int i = 1; i <= spectra; ++i)
        file.insert(QStringLiteral("Dataset%1").arg(i), spectrumObject());
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

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    // Loading remembers the folder: not in the settings of whoever measures.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    const QString few = writeEntry(folder.filePath(QStringLiteral("few.json")), half);
    const QString many = writeEntry(folder.filePath(QStringLiteral("many.json")), whole);

    constexpr double linear = 2.3;
    const auto compare = [&](const char *what, double (*seconds)(const QString &)) {
        const Ratio ratio = measureSeconds(
            rounds, [&] { return seconds(many); }, [&] { return seconds(few); });
        return report(what, ratio, "250", linear);
    };
    bool kept = compare("load 500 spectra", secondsToLoad);
    kept &= compare("close 500 spectra", secondsToClose);
    kept &= compare("leave the program with 500 spectra", secondsToLeave);
    const Ratio alone = measureSeconds(
        rounds, [&] { return secondsToLoad(many); }, [] { return secondsToMakeEach(whole); });
    kept &= report("load 500 spectra", alone, "making, showing and deleting each by itself", 1);
    return kept ? 0 : 1;
}

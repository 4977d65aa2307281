// SPDX-License-Identifier: GPL-3.0-or-later
// What the largest documents cost: a table of seconds, and how many times as long each takes as
// half the size. Where it says so, the wait cursor was up.
#include "app/mainwindow.h"
#include "benchmarks/measure.h"
#include "spectrum/spectrumwindow.h"
#include "widgets/singlelinetextedit.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QMdiArea>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdlib>
#include <functional>
#include <memory>

namespace
{

using namespace Qt::Literals::StringLiterals;

void settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QJsonObject spectrumOf(int points)
{
    QJsonArray energies;
    QJsonArray intensities;
    for (int i = 0; i < points; ++i) {
        // On a grid of its own, so that resampling has as much to do as there are points.
        energies.append(5 + 0.001 * i);
        intensities.append(i % 1000);
    }
    return {{u"Title"_s, u"a spectrum"_s}, {u"E"_s, energies}, {u"I"_s, intensities}};
}

void write(const QString &path, const QJsonObject &object)
{
    QFile file(path);
    const QByteArray bytes = QJsonDocument(object).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::exit(2);
}

QJsonObject entryOf(const QList<QJsonObject> &spectra)
{
    QJsonObject entry{{u"Type"_s, u"Species v1"_s}, {u"Species"_s, QJsonObject()}};
    for (qsizetype i = 0; i < spectra.size(); ++i)
        entry.insert(u"Dataset%1"_s.arg(i + 1), spectra[i]);
    return entry;
}

void press(QWidget *widget, int key, const QString &text = {},
           Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QCoreApplication::sendEvent(widget, &event);
    }
}

struct Step {
    const char *name;
    std::function<void()> run;
};

// The seconds of each step, run one after the other, and what is left to paint after it.
QList<double> timesOf(const QList<Step> &steps)
{
    QList<double> seconds;
    for (const Step &step : steps)
        seconds.append(secondsOf([&] {
            step.run();
            settle();
        }));
    return seconds;
}

void printTable(const QString &size, const QList<Step> &steps, const QList<double> &half,
                const QList<double> &whole)
{
    for (qsizetype i = 0; i < steps.size(); ++i) {
        const QString time =
            whole[i] < 0.01 ? u"under 0.01 s"_s : u"%1 s"_s.arg(whole[i], 0, 'f', 2);
        std::printf("| %s | %s | %s | %.1f |\n", qPrintable(size), steps[i].name, qPrintable(time),
                    whole[i] / half[i]);
    }
    std::fflush(stdout);
}

// A shown main window and what is done in it with one large document.
class Session
{
public:
    Session()
    {
        m_window.resize(1400, 1000);
        m_window.show();
        settle();
    }

    QList<Step> pointSteps(const QString &path)
    {
        const auto click = [this](const char *name) {
            m_window.findChild<QAbstractButton *>(QString::fromLatin1(name))->click();
        };
        return {
            {"load", [this, path] { load(path); }},
            {"save", [this] { m_window.saveSpecies(); }},
            {"type a key", [this] { press(points(), Qt::Key_1, u"1"_s); }},
            {"read what was typed, draw", [this] { spectrum()->readPendingPoints(); }},
            {"comma to dot", [click] { click("buttonCommaToDot"); }},
            {"undo", [this] { press(points(), Qt::Key_Z, {}, Qt::ControlModifier); }},
            {"normalise", [click] { click("buttonNormalize"); }},
            {"resample", [click] { click("buttonSparse"); }},
            {"undo again", [this] { press(points(), Qt::Key_Z, {}, Qt::ControlModifier); }},
            {"read what was undone, draw", [this] { spectrum()->readPendingPoints(); }},
            {"draw as a line spectrum", [click] { click("checkBoxLineSpectrum"); }},
            {"copy", [this] { m_window.copySpectrumToClipboard(); }},
            {"paste a line spectrum", [this] { m_window.pasteSpectrumFromClipboard(); }},
            {"delete it, which shows the other again",
             [this] { m_window.deleteCurrentSpectrum(); }},
            clean(),
        };
    }

    QList<Step> entrySteps(const QString &path)
    {
        return {
            {"load", [this, path] { load(path); }},
            {"save", [this] { m_window.saveSpecies(); }},
            {"switch to another spectrum",
             [this] { m_window.findChild<QMdiArea *>()->activateNextSubWindow(); }},
            {"copy", [this] { m_window.copySpectrumToClipboard(); }},
            {"paste", [this] { m_window.pasteSpectrumFromClipboard(); }},
            {"delete", [this] { m_window.deleteCurrentSpectrum(); }},
            clean(),
        };
    }

    QList<Step> fileSteps(const QString &path)
    {
        const QString database = path + u".database"_s;
        return {
            {"load", [this, path] { load(path); }},
            {"save", [this] { m_window.saveSpecies(); }},
            {"compile",
             [this, path, database] {
                 if (!m_window.compileSpeciesFiles({path}, database, {}, {}, {}, true))
                     std::exit(2);
             }},
            {"clean", [this] { m_window.cleanUp(); }},
        };
    }

    QList<Step> folderSteps(const QString &folder)
    {
        return {
            {"select", [this, folder] { step(folder, 0); }},
            {"step", [this, folder] { step(folder + u"/e7.json"_s, 1); }},
            {"step back over the start", [this, folder] { step(folder + u"/e0.json"_s, -1); }},
        };
    }

private:
    Step clean()
    {
        return {"clean", [this] {
                    m_window.updateWindowTitle(false);
                    m_window.cleanUp();
                }};
    }

    SpectrumWindow *spectrum() const { return m_window.findChild<SpectrumWindow *>(); }
    QPlainTextEdit *points() const
    {
        return m_window.findChild<QPlainTextEdit *>(u"textEditSpect"_s);
    }
    void load(const QString &path)
    {
        if (!m_window.loadSpeciesFile(path))
            std::exit(2);
    }
    void step(const QString &path, int step)
    {
        if (!m_window.navigateSpeciesFiles(path, step))
            std::exit(2);
    }

    MainWindow m_window;
};

void measure(const char *what, int whole, const std::function<QString(int)> &make,
             QList<Step> (Session::*stepsOf)(const QString &))
{
    QList<double> times[2];
    QList<Step> steps;
    for (const int half : {0, 1}) {
        const QString path = make(half ? whole / 2 : whole);
        Session session;
        steps = (session.*stepsOf)(path);
        times[half] = timesOf(steps);
    }
    printTable(QLatin1String(what), steps, times[1], times[0]);
}

double secondsPerKey(int characters)
{
    SingleLineTextEdit edit;
    edit.resize(300, 30);
    edit.show();
    edit.setCleanedHtml(QString(characters, u'x'));
    edit.moveCursor(QTextCursor::End);
    settle();
    constexpr int keys = 10;
    return secondsOf([&] {
               for (int i = 0; i < keys; ++i) {
                   press(&edit, Qt::Key_Y, u"y"_s);
                   settle();
               }
           })
           / keys;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    // Loading remembers the folder: not in the settings of whoever measures.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QString file = folder.filePath(u"entry.json"_s);
    const QStringList named = QCoreApplication::arguments().sliced(1);
    const auto isWanted = [&named](const QString &name) {
        return named.isEmpty() || named.contains(name);
    };
    std::printf(
        "| size | operation | processor time | times half the size |\n|---|---|---:|---:|\n");

    const auto pointsIn = [&](int points) {
        write(file, entryOf({spectrumOf(points)}));
        return file;
    };
    if (isWanted(u"points"_s))
        measure("1,000,000 points", 1'000'000, pointsIn, &Session::pointSteps);
    const auto spectraIn = [&](int spectra) {
        write(file, entryOf(QList<QJsonObject>(spectra, spectrumOf(500))));
        return file;
    };
    if (isWanted(u"spectra"_s))
        measure("500 spectra", 500, spectraIn, &Session::entrySteps);
    const auto megabytesIn = [&](int megabytes) {
        constexpr int spectra = 10;
        constexpr int bytesPerPoint = 40; // indented
        const QJsonObject spectrum = spectrumOf(megabytes * 1'000'000 / bytesPerPoint / spectra);
        write(file, entryOf(QList<QJsonObject>(spectra, spectrum)));
        return file;
    };
    if (isWanted(u"bytes"_s))
        measure("100 MB of JSON", 100, megabytesIn, &Session::fileSteps);
    const auto filesIn = [&](int files) {
        QString many = folder.filePath(QString::number(files));
        QDir().mkpath(many);
        for (int i = 0; i < files; ++i)
            write(many + u"/e%1.json"_s.arg(i), entryOf({}));
        return many;
    };
    if (isWanted(u"folder"_s))
        measure("a folder of 50,000 files", 50'000, filesIn, &Session::folderSteps);
    if (isWanted(u"field"_s))
        std::printf("| a field of 100,000 characters | type a key | %.2f s | %.1f |\n",
                    secondsPerKey(100'000), secondsPerKey(100'000) / secondsPerKey(50'000));
    return 0;
}

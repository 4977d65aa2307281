// SPDX-License-Identifier: GPL-3.0-or-later
#include "monkey/monkey.h"

#include "spectrum/spectrummodel.h"
#include "spectrum/spectrumwindow.h"

#include <QApplication>
#include <QClipboard>
#include <QEventLoop>
#include <QJsonDocument>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPixmapCache>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTimer>

#include <numeric>

const Monkey::Action Monkey::actions[] = {
    {"type in a species field", 10, &Monkey::typeInSpecies},
    {"type a mass", 3, &Monkey::typeMass},
    {"type in a spectrum field", 10, &Monkey::typeInSpectrum},
    {"undo in a species field", 4, &Monkey::undoInSpecies},
    {"format a selection", 4, &Monkey::format},
    {"paste into a field", 3, &Monkey::pasteIntoField},
    {"paste an image", 2, &Monkey::pasteImage},
    {"clear the image", 1, &Monkey::clearImage},
    {"new spectrum", 4, &Monkey::newSpectrum},
    {"delete the spectrum", 4, &Monkey::deleteSpectrum},
    {"switch to a spectrum", 6, &Monkey::switchSpectrum},
    {"change the type", 3, &Monkey::changeType},
    {"toggle line spectrum", 2, &Monkey::toggleLine},
    {"type points", 10, &Monkey::typePoints},
    {"undo points", 4, &Monkey::undoPoints},
    {"comma to dot", 2, &Monkey::commaToDot},
    {"normalise", 3, &Monkey::normalise},
    {"resample", 3, &Monkey::resample},
    {"rest", 5, &Monkey::rest},
    {"copy and paste the spectrum", 2, &Monkey::copyAndPaste},
    {"paste what is no spectrum", 1, &Monkey::pasteNonsense},
    {"save the spectrum", 1, &Monkey::saveSpectrum},
    {"load a spectrum", 1, &Monkey::loadSpectrum},
    {"save", 6, &Monkey::save},
    {"save as", 2, &Monkey::saveAs},
    {"load", 2, &Monkey::load},
    {"load by the dialog", 1, &Monkey::loadByDialog},
    {"load what is no entry", 1, &Monkey::loadWhatIsNoEntry},
    {"drop a file", 1, &Monkey::drop},
    {"step", 4, &Monkey::step},
    {"select the folder", 1, &Monkey::selectFolder},
    {"clean", 1, &Monkey::clean},
    {"close the window", 1, &Monkey::close},
    {"compile", 1, &Monkey::compile},
};

Monkey::Monkey(quint32 seed, const QString &folder)
    : m_random(seed), m_folder(folder), m_area(m_window.findChild<QMdiArea *>())
{
    m_log.setFileName(m_folder.filePath(QStringLiteral("actions.log")));
    if (!m_log.open(QIODevice::WriteOnly))
        fail(QStringLiteral("the log cannot be written"));
    const auto write = [this](const QString &name, const QByteArray &bytes) {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            fail(name + QStringLiteral(" cannot be written"));
    };
    for (int i = 0; i < 12; i += 3) {
        ExpectedDocument document;
        document.texts[QStringLiteral("Name")] = QStringLiteral("species %1").arg(i);
        document.texts[QStringLiteral("Formula")] = QStringLiteral("C<sub>%1</sub>H").arg(i);
        document.mass = 12.011 * i;
        for (int number = 0; number < i; ++number) {
            ExpectedSpectrum spectrum;
            spectrum.texts[QStringLiteral("Title")] = QStringLiteral("spectrum %1").arg(number);
            spectrum.type = number % 6;
            for (int point = 0; point < 20; ++point)
                spectrum.lines.append(anyPointLine());
            document.spectra.append(spectrum);
        }
        write(QStringLiteral("e%1.json").arg(i), QJsonDocument(document.toJson()).toJson());
    }
    write(QStringLiteral("x-broken.json"), "{\"Type\": \"Species v1\"");
    write(QStringLiteral("y-other.json"), "{\"Type\": \"Database v1\"}");

    m_window.show();
    m_document.load({});
    m_stored = m_document.toJson();
    settle();
}

Monkey::~Monkey()
{
    settle();
}

bool Monkey::act()
{
    const auto add = [](int sum, const Action &action) { return sum + action.weight; };
    const int all = std::accumulate(std::begin(actions), std::end(actions), 0, add);
    int at = below(all);
    const Action *action = std::begin(actions);
    while (at >= action->weight)
        at -= action++->weight;
    note(QString::fromLatin1(action->name));
    ++m_action;
    m_answers.expect(QMessageBox::Discard, {});
    activate();
    (this->*action->run)();
    settle();
    if (!m_answers.surprise().isEmpty())
        fail(m_answers.surprise());
    if (spectrumWindows().size() != m_document.spectra.size())
        fail(QStringLiteral("%1 spectra, must be %2")
                 .arg(spectrumWindows().size())
                 .arg(m_document.spectra.size()));
    return m_error.isEmpty();
}

void Monkey::discardAll()
{
    m_answers.expect(QMessageBox::Discard, {});
    for (MainWindow *window : {&m_window, &m_reader})
        window->cleanUp();
    QGuiApplication::clipboard()->clear();
    QPixmapCache::clear(); // of up to 10 MB, which Qt fills by and by
    m_document.clear();
    m_file.clear();
    m_stored = m_document.toJson();
    settle();
}

void Monkey::openLargest()
{
    constexpr int mostSpectra = 100;
    ExpectedDocument document;
    document.spectra.fill(ExpectedSpectrum(), mostSpectra);
    const QString path = m_folder.filePath(QStringLiteral("largest.txt"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(QJsonDocument(document.toJson()).toJson()) < 0)
        fail(QStringLiteral("the largest entry cannot be written"));
    file.close();
    m_answers.expect(QMessageBox::Discard, {});
    for (MainWindow *window : {&m_window, &m_reader}) {
        if (!window->loadSpeciesFile(path))
            fail(QStringLiteral("the largest entry does not load"));
        QCoreApplication::processEvents();
    }
}

QList<SpectrumWindow *> Monkey::spectrumWindows() const
{
    QList<SpectrumWindow *> windows;
    for (const QMdiSubWindow *subWindow : m_area->subWindowList())
        windows.append(qobject_cast<SpectrumWindow *>(subWindow->widget()));
    return windows;
}

int Monkey::current() const
{
    return static_cast<int>(m_area->subWindowList().indexOf(m_area->currentSubWindow()));
}

QPlainTextEdit *Monkey::pointEditor(int index) const
{
    return find<QPlainTextEdit>(*spectrumWindows().at(index), QStringLiteral("textEditSpect"));
}

void Monkey::syncReadings()
{
    const QList<SpectrumWindow *> windows = spectrumWindows();
    for (qsizetype i = 0; i < std::min(windows.size(), m_document.spectra.size()); ++i) {
        const auto *timer = windows[i]->findChild<SpectrumModel *>()->findChild<QTimer *>();
        if (!timer->isActive())
            m_document.spectra[i].read();
    }
}

// The platform does not give the focus back to a window when its dialog closes, and a field commits
// on losing the focus in an active window only.
void Monkey::activate()
{
    m_window.activateWindow();
    while (!m_window.isActiveWindow())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    syncReadings();
}

void Monkey::settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    syncReadings();
}

void Monkey::fail(const QString &what)
{
    if (m_error.isEmpty())
        m_error = QStringLiteral("action %1: %2").arg(QString::number(m_action), what);
}

void Monkey::note(const QString &detail)
{
    m_log.write(QStringLiteral("%1 %2\n").arg(QString::number(m_action + 1), detail).toUtf8());
    m_log.flush();
}

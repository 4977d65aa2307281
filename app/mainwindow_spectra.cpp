// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include "app/latecontents.h"
#include "app/messagebox.h"
#include "app/quietarea.h"
#include "app/spectrumtabs.h"
#include "files/jsonfile.h"
#include "files/pathnames.h"
#include "spectrum/spectrumfile.h"
#include "spectrum/spectrumwindow.h"
#include "ui_mainwindow.h"
#include "widgets/waitcursor.h"

#include <QClipboard>
#include <QFileDialog>
#include <QJsonDocument>
#include <QMdiSubWindow>
#include <QMenu>

#include <algorithm>

namespace
{

QJsonDocument clipboardDocument()
{
    return QJsonDocument::fromJson(QGuiApplication::clipboard()->text().toUtf8());
}

// The spectrum file's object of what is shown, unread typing included.
QJsonObject shownSpectrum(SpectrumWindow *window)
{
    window->commitEdits();
    window->readPendingPoints();
    return spectrumFileObject(window->toJson());
}

// A sub-window makes pictures of its own for its menu.
void shareMenuIcons(const QMdiArea *area, const QMdiSubWindow *subWindow)
{
    const QList<QAction *> first = area->subWindowList().constFirst()->systemMenu()->actions();
    const QList<QAction *> actions = subWindow->systemMenu()->actions();
    for (qsizetype i = 0; i < std::min(first.size(), actions.size()); ++i)
        actions[i]->setIcon(first[i]->icon());
}

} // namespace

QList<SpectrumWindow *> MainWindow::spectrumWindows() const
{
    QList<SpectrumWindow *> windows;
    for (const QMdiSubWindow *subWindow : ui->mdiArea->subWindowList(QMdiArea::CreationOrder)) {
        if (auto *window = qobject_cast<SpectrumWindow *>(subWindow->widget()))
            windows.append(window);
    }
    return windows;
}

SpectrumWindow *MainWindow::currentSpectrumWindow() const
{
    // activeSubWindow() is null while a floating dock has the focus.
    const QMdiSubWindow *subWindow = ui->mdiArea->currentSubWindow();
    return subWindow ? qobject_cast<SpectrumWindow *>(subWindow->widget()) : nullptr;
}

void MainWindow::addSpectrumWindowToMdiArea(SpectrumWindow *w)
{
    new LateContents(w);
    QMdiSubWindow *subWindow = addSubWindow(ui->mdiArea, w);
    subWindow->setAttribute(Qt::WA_DeleteOnClose);
    spectrumTabs->follow(subWindow);
    shareMenuIcons(ui->mdiArea, subWindow);
    showSubWindow(subWindow);
    setModified();
}

void MainWindow::createNewSpectrumWindow()
{
    addSpectrumWindowToMdiArea(new SpectrumWindow(this));
}

void MainWindow::createNewSpectrumWindow(const QJsonObject &obj)
{
    const WaitCursor waitCursor;
    addSpectrumWindowToMdiArea(new SpectrumWindow(obj, this));
}

void MainWindow::deleteCurrentSpectrum()
{
    QMdiSubWindow *subWindow = ui->mdiArea->currentSubWindow();
    if (!subWindow)
        return;
    const WaitCursor waitCursor;
    subWindow->close();
    setModified();
}

bool MainWindow::loadJSONSpectrum()
{
    const QString fileName = withoutParentSteps(
        QFileDialog::getOpenFileName(this, tr("Open Spectrum JSON File"), lastfolder(),
                                     tr("JSON Files (*.json);;All Files (*)")));
    FileProblem problem = FileProblem::None;
    const std::optional<QJsonObject> spectrum =
        behindWaitCursor([&] { return readJsonObject(fileName, &problem); });
    if (!spectrum) {
        showMessage(this, QMessageBox::Warning, tr("Error"), tr("Could not open file for reading"),
                    sizeRemark(problem));
        return false;
    }
    if (!hasType(*spectrum, spectrumFileType)) {
        showMessage(this, QMessageBox::Critical, tr("Error"),
                    tr("Spectrum not found in JSON file. Load aborted."));
        return false;
    }
    createNewSpectrumWindow(*spectrum);
    setlastfolder(fileName);
    return true;
}

void MainWindow::saveSpectrumToFile()
{
    SpectrumWindow *window = currentSpectrumWindow();
    if (!window) {
        showMessage(this, QMessageBox::Warning, tr("Error"),
                    tr("No active spectrum window to save."));
        return;
    }
    const QString fileName = withoutParentSteps(QFileDialog::getSaveFileName(
        this, tr("Save Spectrum"), lastfolder(), tr("JSON Files (*.json);;All Files (*)")));
    if (fileName.isEmpty())
        return;
    FileProblem problem = FileProblem::None;
    const bool isWritten = behindWaitCursor(
        [&] { return writeJsonObject(fileName, shownSpectrum(window), &problem); });
    if (!isWritten) {
        showMessage(this, QMessageBox::Warning, tr("Error"), tr("Could not open file for writing"),
                    sizeRemark(problem));
        return;
    }
    setlastfolder(fileName);
}

void MainWindow::copySpectrumToClipboard()
{
    SpectrumWindow *window = currentSpectrumWindow();
    if (!window) {
        showMessage(this, QMessageBox::Warning, tr("Error"), tr("No spectrum window is selected."));
        return;
    }
    const WaitCursor waitCursor;
    const QJsonDocument document(shownSpectrum(window));
    QGuiApplication::clipboard()->setText(
        QString::fromUtf8(document.toJson(QJsonDocument::Compact)));
}

void MainWindow::pasteSpectrumFromClipboard()
{
    const QJsonDocument document = behindWaitCursor(clipboardDocument);
    if (!document.isObject()) {
        showMessage(this, QMessageBox::Warning, tr("Error"),
                    tr("Clipboard does not contain a valid spectrum."));
        return;
    }
    if (!hasType(document.object(), spectrumFileType)) {
        showMessage(this, QMessageBox::Critical, tr("Error"), tr("Format error, cannot paste."));
        return;
    }
    createNewSpectrumWindow(document.object());
}

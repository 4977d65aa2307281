// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include "app/latecontents.h"
#include "app/messagebox.h"
#include "app/quietarea.h"
#include "files/jsonfile.h"
#include "files/pathnames.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumwindow.h"
#include "ui_mainwindow.h"
#include "widgets/fieldbinding.h"
#include "widgets/mistakemark.h"
#include "widgets/waitcursor.h"

#include <QDataWidgetMapper>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QPointer>
#include <QUrl>

namespace
{

// The local path of the first file of a drag if it may be opened; otherwise an empty text.
QString droppedSpeciesFile(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    const QString path = urls.isEmpty() ? QString() : urls.first().toLocalFile();
    const bool isJson = path.endsWith(QLatin1String(".json"), Qt::CaseInsensitive);
    return isJson ? path : QString();
}

} // namespace

void MainWindow::setupMapper()
{
    QWidget *const editors[] = {
        ui->lineEditSpecies, ui->textEditAliases,    ui->lineEditMass,       ui->lineEditSumFormula,
        ui->lineEditInChI,   ui->lineEditCAS,        ui->lineEditCID,        ui->lineEditAIE,
        ui->lineEditVIE,     ui->lineEditAIEComment, ui->lineEditVIEComment,
    };
    static_assert(std::size(editors) == speciesImageColumn, "every column but the image");
    binding = new FieldBinding(mapper, speciesModel, ui->dockWidgetContents);
    connect(speciesModel, &QAbstractItemModel::dataChanged, this, &MainWindow::setModified);
    int column = 0;
    for (QWidget *editor : editors)
        mapper->addMapping(editor, column++, "cleanedHtml");
    mapper->toFirst();
}

void MainWindow::markBadMass()
{
    new MistakeMark(ui->lineEditMass, [](const QString &markup) {
        const bool isBad = !markup.trimmed().isEmpty() && !savedNumber(markup);
        return isBad ? tr("Not a number with a decimal point: it is saved as 0.") : QString();
    });
}

void MainWindow::loadSpeciesFromFile()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Open Species JSON File"), lastfolder(), tr("JSON Files (*.json);;All Files (*)"));
    if (!path.isEmpty())
        loadSpeciesFile(path);
}

bool MainWindow::loadSpeciesFile(const QString &requested)
{
    // The reference may be to currentFile, which changes below.
    const QString named = requested; // NOLINT(performance-unnecessary-copy-initialization)
    if (!promptToSaveChanges())
        return false;
    if (!QFile::exists(named)) {
        showMessage(this, QMessageBox::Warning, tr("File Not Found"),
                    tr("The file %1 does not exist.").arg(named));
        return false;
    }
    const QString path = withoutParentSteps(named);
    FileProblem problem = FileProblem::None;
    const std::optional<QJsonObject> file =
        behindWaitCursor([&] { return readJsonObject(path, &problem); });
    if (!file || !hasType(*file, speciesFileType)) {
        showMessage(this, QMessageBox::Warning, tr("Invalid Species File"),
                    tr("The file %1 is not a valid species file.").arg(named), sizeRemark(problem));
        return false;
    }
    QWidget *const focused = focusWidget();
    modified = false;
    cleanUp();
    loadSpeciesObject(*file);
    settleFocus(focused);
    currentFile = path;
    updateWindowTitle(false);
    setlastfolder(path);
    return true;
}

bool MainWindow::isValidSpeciesFile(const QString &path) const
{
    return isSpeciesFile(path);
}

bool MainWindow::loadJSONSpecies(const QString &path)
{
    FileProblem problem = FileProblem::None;
    const std::optional<QJsonObject> file =
        behindWaitCursor([&] { return readJsonObject(path, &problem); });
    if (!file) {
        showMessage(this, QMessageBox::Warning, QStringLiteral("Error"),
                    QStringLiteral("Could not open file for reading"), sizeRemark(problem));
        return false;
    }
    if (!hasType(*file, speciesFileType)) {
        showMessage(this, QMessageBox::Critical, QStringLiteral("Error"),
                    QStringLiteral("Species not found in JSON file. Load aborted."));
        return false;
    }
    loadSpeciesObject(*file);
    return true;
}

void MainWindow::loadSpeciesObject(const QJsonObject &file)
{
    const WaitCursor waitCursor;
    speciesModel->loadFromJson(file.value(speciesKey).toObject());
    mapper->toFirst();
    createSpectrumWindows(file);
    const QList<QMdiSubWindow *> subWindows = ui->mdiArea->subWindowList();
    if (!subWindows.isEmpty())
        ui->mdiArea->setActiveSubWindow(subWindows.first());
}

void MainWindow::createSpectrumWindows(const QJsonObject &file)
{
    const QuietArea quiet(ui->mdiArea);
    const QStringList keys = datasetKeys(file);
    for (const QString &key : keys)
        createNewSpectrumWindow(file.value(key).toObject());
    // Nobody notices what a few forms cost.
    constexpr qsizetype few = 10;
    if (keys.size() <= few) {
        for (const QMdiSubWindow *subWindow : ui->mdiArea->subWindowList())
            showContents(subWindow->widget());
    }
}

void MainWindow::saveSpecies()
{
    if (currentFile.isEmpty())
        saveSpeciesAs();
    else
        saveSpeciesToFile();
}

void MainWindow::saveSpeciesAs()
{
    const QString start = currentFile.isEmpty() ? lastfolder() : currentFile;
    const QString path = QFileDialog::getSaveFileName(this, tr("Save Species JSON File"), start,
                                                      tr("JSON Files (*.json);;All Files (*)"));
    if (path.isEmpty())
        return;
    currentFile = withoutParentSteps(path);
    updateWindowTitle(modified);
    setlastfolder(currentFile);
    saveSpeciesToFile();
}

void MainWindow::saveSpeciesToFile()
{
    const FileProblem problem = writeSpecies();
    const bool isWritten = problem == FileProblem::None;
    // After a failure the file's content does not count as the document, least of all under a new
    // name.
    updateWindowTitle(!isWritten);
    if (!isWritten)
        showMessage(this, QMessageBox::Warning, tr("Error"), tr("Could not open file for writing."),
                    sizeRemark(problem));
}

QString MainWindow::sizeRemark(FileProblem problem)
{
    if (problem != FileProblem::TooLarge)
        return {};
    return tr("It is larger than %1 MB, without the blanks and line ends between its values.")
        .arg(largestJsonFile >> 20);
}

FileProblem MainWindow::writeSpecies()
{
    const WaitCursor waitCursor;
    commitEdits();
    const QList<SpectrumWindow *> windows = spectrumWindows();
    QList<QJsonObject> datasets;
    datasets.reserve(windows.size());
    for (const SpectrumWindow *window : windows)
        datasets.append(window->toJson());
    FileProblem problem = FileProblem::None;
    if (writeJsonObject(currentFile, speciesFileObject(speciesModel->toJson(), datasets), &problem))
        return FileProblem::None;
    return problem;
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!droppedSpeciesFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

// X11 reports the last answer to a move to the source as the action taken. It must never be a move:
// the file manager would delete the file.
void MainWindow::dragMoveEvent(QDragMoveEvent *event)
{
    if (droppedSpeciesFile(event->mimeData()).isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QString path = withoutParentSteps(droppedSpeciesFile(event->mimeData()));
    if (path.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (!promptToSaveChanges())
        return;
    // The box about a bad file runs the event loop, which deletes closed spectra.
    const QPointer<QWidget> focused = focusWidget();
    modified = false;
    cleanUp();
    currentFile = loadJSONSpecies(path) ? path : QString();
    settleFocus(focused);
    updateWindowTitle(false);
    setlastfolder(path);
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::DragEnter)
        dragEnterEvent(static_cast<QDragEnterEvent *>(event));
    else if (event->type() == QEvent::DragMove)
        dragMoveEvent(static_cast<QDragMoveEvent *>(event));
    else if (event->type() == QEvent::Drop)
        dropEvent(static_cast<QDropEvent *>(event));
    else
        return QMainWindow::eventFilter(watched, event);
    return event->isAccepted();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include "app/messagebox.h"
#include "files/jsonfolder.h"
#include "files/pathnames.h"
#include "widgets/waitcursor.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

void MainWindow::selectSpeciesFolder()
{
    const QString start =
        currentFile.isEmpty() ? lastfolder() : QFileInfo(currentFile).absolutePath();
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Select Folder"), start,
                                                             QFileDialog::ShowDirsOnly);
    if (!folder.isEmpty())
        navigateSpeciesFiles(folder, 0);
}

void MainWindow::loadPreviousSpeciesFile()
{
    if (currentFile.isEmpty())
        selectSpeciesFolder();
    else
        navigateSpeciesFiles(currentFile, -1);
}

void MainWindow::loadNextSpeciesFile()
{
    if (currentFile.isEmpty())
        selectSpeciesFolder();
    else
        navigateSpeciesFiles(currentFile, 1);
}

bool MainWindow::navigateSpeciesFiles(const QString &path, int step)
{
    const QString found = withoutParentSteps(path);
    const bool isFolder = QFileInfo(found).isDir();
    const QDir folder(isFolder ? found : QFileInfo(found).absolutePath());
    const QStringList files = jsonFilesIn(folder.absolutePath());
    if (files.isEmpty()) {
        showMessage(this, QMessageBox::Information, tr("No JSON Files"),
                    tr("No JSON files found in the directory."));
        return false;
    }
    if (isFolder && step != 0) {
        showMessage(this, QMessageBox::Information, tr("No Current File"),
                    tr("No current file loaded to step from."));
        return false;
    }
    const qsizetype current = isFolder ? -1 : files.indexOf(QFileInfo(found).fileName());
    if (!isFolder && current < 0) {
        showMessage(this, QMessageBox::Warning, tr("Error"),
                    tr("Current file is not in the directory."));
        return false;
    }
    return step == 0 ? loadFirstOf(folder, files) : loadNeighbour(folder, files, current, step);
}

bool MainWindow::loadFirstOf(const QDir &folder, const QStringList &files)
{
    const QString found = firstSpeciesFile(folder, files);
    if (!found.isEmpty())
        return loadSpeciesFile(found);
    showMessage(this, QMessageBox::Information, tr("No Species Files"),
                tr("No species JSON files found in the directory."));
    return false;
}

bool MainWindow::loadNeighbour(const QDir &folder, const QStringList &files, qsizetype current,
                               int step)
{
    // The other files in the order of the steps, wrapping round.
    QStringList others = files.sliced(current + 1) + files.first(current);
    if (step < 0)
        std::reverse(others.begin(), others.end());
    const QString found = firstSpeciesFile(folder, others);
    if (!found.isEmpty())
        return loadSpeciesFile(found);
    showMessage(this, QMessageBox::Information, tr("No Other Species Files"),
                tr("No other species JSON files found in the directory."));
    return false;
}

QString MainWindow::firstSpeciesFile(const QDir &folder, const QStringList &files) const
{
    const WaitCursor waitCursor;
    for (const QString &file : files) {
        QString path = folder.absoluteFilePath(file);
        if (isValidSpeciesFile(path))
            return path;
    }
    return {};
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include "settings/lastfolder.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumwindow.h"
#include "ui_mainwindow.h"
#include "widgets/editorcommit.h"

#include <QCloseEvent>
#include <QDataWidgetMapper>
#include <QFileInfo>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QNetworkAccessManager>

const QRegularExpression MainWindow::reDataset(QStringLiteral("^Dataset\\d+$"));

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::MainWindow>()),
      networkManager(new QNetworkAccessManager(this)), speciesModel(new SpeciesModel(this)),
      mapper(new QDataWidgetMapper(this))
{
    ui->setupUi(this);
    setCentralWidget(ui->mdiArea);
    connectActions();
    connectDocument();
    setupMapper();
    setAcceptDrops(true);
}

MainWindow::~MainWindow()
{
    // A field that loses the focus on its way out commits what it holds, which marks the document: that
    // must still find the window whole.
    delete ui->mdiArea;
    delete ui->speciesDock;
}

void MainWindow::connectActions()
{
    connect(ui->actionExit, &QAction::triggered, this, &MainWindow::close);
    connect(ui->actionLoadSpecies, &QAction::triggered, this, &MainWindow::loadSpeciesFromFile);
    connect(ui->actionSaveSpecies, &QAction::triggered, this, &MainWindow::saveSpecies);
    connect(ui->actionSaveSpeciesAs, &QAction::triggered, this, &MainWindow::saveSpeciesAs);
    connect(ui->actionClean, &QAction::triggered, this, &MainWindow::cleanUp);
    connect(ui->actionDelete, &QAction::triggered, this, &MainWindow::deleteCurrentSpectrum);
    connect(ui->actionNew, &QAction::triggered, this, [this] { createNewSpectrumWindow(); });
    connect(ui->actionLoadSpectrum, &QAction::triggered, this, &MainWindow::loadJSONSpectrum);
    connect(ui->actionSaveSpectrumAs, &QAction::triggered, this, &MainWindow::saveSpectrumToFile);
    connect(ui->actionCopy, &QAction::triggered, this, &MainWindow::copySpectrumToClipboard);
    connect(ui->actionPaste, &QAction::triggered, this, &MainWindow::pasteSpectrumFromClipboard);
}

void MainWindow::connectDocument()
{
    connect(speciesModel, &SpeciesModel::imageChanged, this, &MainWindow::updateImageFromSpecies);
    // A floating dock is a window of its own and gets the drops on it.
    ui->speciesDock->setAcceptDrops(true);
    ui->speciesDock->installEventFilter(this);
}

void MainWindow::updateWindowTitle(bool isModified)
{
    modified = isModified;
    const QString name = currentFile.isEmpty() ? tr("(untitled)") : QFileInfo(currentFile).fileName();
    const QString mark = modified ? QStringLiteral(" *") : QString();
    setWindowTitle(tr("ZORAVEL Entry Edit - ") + name + mark);
}

void MainWindow::setModified()
{
    updateWindowTitle(true);
}

bool MainWindow::promptToSaveChanges()
{
    commitFocusedField();
    for (SpectrumWindow *window : spectrumWindows())
        window->readPendingPoints();
    if (!modified)
        return true;

    QMessageBox box;
    box.setText(tr("The species has been modified."));
    box.setInformativeText(tr("Do you want to save your changes?"));
    box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save:
        saveSpecies();
        return true;
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}

void MainWindow::cleanUp()
{
    if (!promptToSaveChanges())
        return;
    ui->mdiArea->closeAllSubWindows();
    currentFile.clear();
    for (int column = 0; column < speciesModel->columnCount(); ++column)
        speciesModel->setData(speciesModel->index(0, column), QVariant(), Qt::EditRole);
    mapper->toFirst();
    currentFile.clear();
    updateWindowTitle(false);
}

void MainWindow::commitFocusedField()
{
    commitFocusedEditor(mapper, ui->dockWidgetContents);
    for (SpectrumWindow *window : spectrumWindows())
        window->commitFocusedField();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->setAccepted(promptToSaveChanges());
}

QString MainWindow::lastfolder() const
{
    return lastFolder();
}

void MainWindow::setlastfolder(const QString &path)
{
    setLastFolder(path);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include "app/accessiblespectra.h"
#include "app/quietarea.h"
#include "app/spectrumtabs.h"
#include "app/structureimage.h"
#include "settings/lastfolder.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumwindow.h"
#include "ui_mainwindow.h"
#include "widgets/contrast.h"
#include "widgets/fieldbinding.h"
#include "widgets/focusring.h"
#include "widgets/tabchain.h"
#include "widgets/tabstepping.h"
#include "widgets/waitcursor.h"

#include <QCloseEvent>
#include <QDataWidgetMapper>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QShortcut>
#include <QTabBar>

#include <algorithm>

const QRegularExpression MainWindow::reDataset(datasetKeyPattern);

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent),
      ui(std::make_unique<Ui::MainWindow>()),
      networkManager(new QNetworkAccessManager(this)),
      speciesModel(new SpeciesModel(this)),
      mapper(new QDataWidgetMapper(this))
{
    describeSpectraToAssistiveTechnology();
    ui->setupUi(this);
    setCentralWidget(ui->mdiArea);
    spectrumTabs = new SpectrumTabs(ui->mdiArea);
    connectImage();
    connectActions();
    markBadMass();
    setupMapper();
    setAcceptDrops(true);
    takeDropsOnDock();
    keepDockReadable();
    openToTheKeyboard();
}

MainWindow::~MainWindow()
{
    // A field that loses the focus on its way out commits what it holds, which marks the document:
    // that must still find the window whole.
    delete ui->mdiArea;
    delete ui->speciesDock;
}

void MainWindow::connectImage()
{
    connect(ui->buttonDownload, &QPushButton::clicked, this, &MainWindow::onButtonDownloadClicked);
    networkManager->setTransferTimeout(structureImagePatience);
    connect(networkManager, &QNetworkAccessManager::finished, this, &MainWindow::onImageDownloaded);
    // Pixels of the screen are not parted: without this the image's would cover some of the
    // border's.
    ui->imageLabel->setMargin(1);
    ui->imageLabel->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(ui->imageLabel, &QWidget::customContextMenuRequested, this,
            &MainWindow::showImageContextMenu);
    // The toolkit knows it on Windows only; not every keyboard has a key Menu.
    auto *menuKeys = new QShortcut(Qt::SHIFT | Qt::Key_F10, ui->imageLabel);
    menuKeys->setContext(Qt::WidgetShortcut);
    connect(menuKeys, &QShortcut::activated, this,
            [this] { showImageContextMenu(ui->imageLabel->rect().center()); });
}

void MainWindow::connectActions()
{
    const auto on = [this](const QAction *action, auto &&member) {
        connect(action, &QAction::triggered, this, member);
    };
    on(ui->actionExit, &MainWindow::close);
    on(ui->actionLoadSpecies, &MainWindow::loadSpeciesFromFile);
    on(ui->actionSaveSpecies, &MainWindow::saveSpecies);
    on(ui->actionSaveSpeciesAs, &MainWindow::saveSpeciesAs);
    on(ui->actionSubscript, &MainWindow::applySubscript);
    on(ui->actionSuperscript, &MainWindow::applySuperscript);
    // A tool bar that is hidden or floats would take their shortcuts along.
    addActions({ui->actionSubscript, ui->actionSuperscript});
    on(ui->actionClean, &MainWindow::cleanUp);
    on(ui->actionDelete, &MainWindow::deleteCurrentSpectrum);
    on(ui->actionNew, [this] { createNewSpectrumWindow(); });
    on(ui->actionLoadSpectrum, &MainWindow::loadJSONSpectrum);
    on(ui->actionSaveSpectrumAs, &MainWindow::saveSpectrumToFile);
    on(ui->actionCopy, &MainWindow::copySpectrumToClipboard);
    on(ui->actionPaste, &MainWindow::pasteSpectrumFromClipboard);
    on(ui->actionSelectFolder, &MainWindow::selectSpeciesFolder);
    on(ui->actionPreviousFile, &MainWindow::loadPreviousSpeciesFile);
    on(ui->actionNextFile, &MainWindow::loadNextSpeciesFile);
    connect(speciesModel, &SpeciesModel::imageChanged, this, &MainWindow::updateImageFromSpecies);
    on(ui->actionCreateDatabase, &MainWindow::createSpeciesDatabase);
}

// A floating dock is a window of its own and gets the drops on it.
void MainWindow::takeDropsOnDock()
{
    ui->speciesDock->setAcceptDrops(true);
    ui->speciesDock->installEventFilter(this);
}

// Its style sheet makes it grey and most of its fields white in every theme.
void MainWindow::keepDockReadable()
{
    keepTextDark(ui->speciesDock);
    // A widget under a style sheet does not take its parent's palette.
    const QList<QWidget *> parts = ui->speciesDock->findChildren<QWidget *>();
    for (QWidget *part : parts)
        keepTextDark(part);
}

// What has no shortcut can be reached with Tab. Of the tool bar these are the buttons that do not
// work on the field with the keyboard.
void MainWindow::openToTheKeyboard()
{
    auto *tabs = ui->mdiArea->findChild<QTabBar *>();
    const auto followSpectra = [this, tabs] {
        const bool empty = ui->mdiArea->subWindowList().isEmpty();
        tabs->setFocusPolicy(empty ? Qt::NoFocus : Qt::TabFocus);
    };
    connect(ui->mdiArea, &QMdiArea::subWindowActivated, tabs, followSpectra);
    ui->mdiArea->setAccessibleName(tr("Spectra"));
    QWidget *last = ui->imageLabel;
    for (QAction *action : {ui->actionSelectFolder, ui->actionPreviousFile, ui->actionNextFile}) {
        QWidget *button = ui->toolBar->widgetForAction(action);
        button->setFocusPolicy(Qt::TabFocus);
        setTabOrder(last, button);
        last = button;
    }
    // In two steps: the toolkit does not take the first one of the chain behind the last one.
    setTabOrder(ui->imageLabel, tabs);
    setTabOrder(last, tabs);
    followSpectra();
    tabs->installEventFilter(new TabStepping(tabs));
    new FocusRing(this);
}

void MainWindow::updateWindowTitle(bool isModified)
{
    modified = isModified;
    QString name = currentFile.isEmpty() ? tr("(untitled)") : QFileInfo(currentFile).fileName();
    // Alone it would be Qt's place for a mark of its own; doubled, it is shown as it is.
    const QLatin1String placeholder("[*]");
    name.replace(placeholder, placeholder + placeholder);
    const QString mark = modified ? QStringLiteral(" *") : QString();
    setWindowTitle(tr("ZORAVEL Entry Edit - %1%2").arg(name, mark));
}

void MainWindow::setModified()
{
    updateWindowTitle(true);
}

bool MainWindow::hasUnsavedChanges()
{
    finishEdits();
    return modified;
}

bool MainWindow::promptToSaveChanges()
{
    if (!hasUnsavedChanges())
        return true;

    QMessageBox box;
    box.setText(tr("The species has been modified."));
    box.setInformativeText(tr("Do you want to save your changes?"));
    box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save:
        // What was being composed is finished only when the box has taken the keyboard.
        finishEdits();
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
    const WaitCursor waitCursor;
    QWidget *const focused = focusWidget();
    closeQuietly(ui->mdiArea);
    currentFile.clear();
    for (int column = 0; column < speciesModel->columnCount(); ++column)
        speciesModel->setData(speciesModel->index(0, column), QVariant(), Qt::EditRole);
    mapper->toFirst();
    currentFile.clear();
    settleFocus(focused);
    updateWindowTitle(false);
}

void MainWindow::settleFocus(QWidget *before)
{
    SpectrumWindow *const spectrum = currentSpectrumWindow();
    if (ui->speciesDock->isAncestorOf(before) || ui->toolBar->isAncestorOf(before))
        before->setFocus();
    else if (before && spectrum)
        spectrum->focusTitle();
    else
        ui->lineEditSpecies->setFocus();
}

void MainWindow::commitEdits()
{
    binding->commitEdits();
    for (SpectrumWindow *window : spectrumWindows())
        window->commitEdits();
}

void MainWindow::finishEdits()
{
    commitEdits();
    for (SpectrumWindow *window : spectrumWindows())
        window->readPendingPoints();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->setAccepted(promptToSaveChanges());
}

bool MainWindow::focusNextPrevChild(bool next)
{
    return moveFocusByTab(this, next) || QMainWindow::focusNextPrevChild(next);
}

// Within the spectra, their area takes Ctrl+Tab; it shall reach them from everywhere.
void MainWindow::keyPressEvent(QKeyEvent *event)
{
    const bool isTab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
    if (isTab && event->modifiers().testFlag(Qt::ControlModifier))
        spectrumTabs->goToPrevious();
    else
        QMainWindow::keyPressEvent(event);
}

QString MainWindow::lastfolder() const
{
    return lastFolder();
}

void MainWindow::setlastfolder(const QString &path)
{
    setLastFolder(path);
}

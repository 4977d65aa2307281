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
    // A field that is destroyed loses the focus and commits what it holds, which marks the document
    // as changed: the window must still be whole then.
    delete ui->mdiArea;
    delete ui->speciesDock;
}

void MainWindow::connectImage()
{
    connect(ui->buttonDownload, &QPushButton::clicked, this, &MainWindow::onButtonDownloadClicked);
    networkManager->setTransferTimeout(structureImagePatience);
    connect(networkManager, &QNetworkAccessManager::finished, this, &MainWindow::onImageDownloaded);
    // Pixels of the screen are not divided: without this margin the image would cover part of the
    // border.
    ui->imageLabel->setMargin(1);
    ui->imageLabel->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(ui->imageLabel, &QWidget::customContextMenuRequested, this,
            &MainWindow::showImageContextMenu);
    // Qt adds this key on Windows only, and not every keyboard has a Menu key.
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
    // A hidden or floating tool bar would disable their shortcuts.
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

// A floating dock is a window of its own and receives drops itself.
void MainWindow::takeDropsOnDock()
{
    ui->speciesDock->setAcceptDrops(true);
    ui->speciesDock->installEventFilter(this);
}

// The dock's style sheet makes it grey and most of its fields white in every theme.
void MainWindow::keepDockReadable()
{
    keepTextDark(ui->speciesDock);
    // A widget under a style sheet does not inherit its parent's palette.
    const QList<QWidget *> parts = ui->speciesDock->findChildren<QWidget *>();
    for (QWidget *part : parts)
        keepTextDark(part);
}

// Tab reaches what has no shortcut. In the tool bar these are the buttons that do not act on the
// focused field.
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
    // Done in two steps: Qt does not move the first widget of the chain behind the last.
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
    // Qt replaces a single [*] with its own mark; a doubled one is shown as it is.
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
        // An input method finishes its text only once the box has the keyboard.
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

// The area takes Ctrl+Tab within the spectra only; this makes it work everywhere.
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

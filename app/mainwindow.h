// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/filebytes.h"

#include <QJsonObject>
#include <QList>
#include <QMainWindow>
#include <QRegularExpression>
#include <QTextCharFormat>

#include <memory>

class CreateDatabase;
class FieldBinding;
class QDataWidgetMapper;
class QDir;
class QMdiSubWindow;
class QNetworkAccessManager;
class QNetworkReply;
class SpeciesModel;
class SpectrumTabs;
class SpectrumWindow;

namespace Ui
{
class MainWindow;
}

// The editor's one window and the owner of the one open document: a species record, shown in the
// dock, and any number of spectra, each in a sub-window. It knows the document's file and its
// unsaved changes, and asks before they would be lost. Its members ask, call the libraries below
// and show the outcome; formats and rules belong to the libraries.
class MainWindow : public QMainWindow
{
    Q_OBJECT
    Q_MOC_INCLUDE(<QNetworkReply>)

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // The document: title, save prompt, last folder (mainwindow.cpp)
    void updateWindowTitle(bool modified);
    // Commits what has been typed first.
    [[nodiscard]] bool hasUnsavedChanges();
    // Asks whether to save changes, if there are any. False if the user wants to stay: the caller
    // must keep the document then. A save that fails still returns true.
    [[nodiscard]] bool promptToSaveChanges();
    [[nodiscard]] QString lastfolder() const;
    void setlastfolder(const QString &path);

    // The species form and its files (mainwindow_species.cpp)
    void setupMapper();
    // Underlines a mass that is no number and so is saved as 0.
    void markBadMass();
    void loadSpeciesFromFile();
    // Asks to save, then loads the species file at path; a box says what is wrong with it. True if
    // it is the document now.
    bool loadSpeciesFile(const QString &requested);
    [[nodiscard]] bool isValidSpeciesFile(const QString &path) const;
    // Reads the file into the document, which must have been emptied.
    bool loadJSONSpecies(const QString &path);
    void saveSpecies();
    void saveSpeciesAs();
    void saveSpeciesToFile();

    // Stepping through a folder (mainwindow_navigation.cpp)
    // Loads a species file of a folder: its first (step 0), or the one before (-1) or after (1) the
    // file at path, wrapping round. If there is none, a box says why and it returns false.
    bool navigateSpeciesFiles(const QString &path, int step);

    // The spectrum sub-windows, their files and the clipboard (mainwindow_spectra.cpp)
    void createNewSpectrumWindow(const QJsonObject &obj);
    void addSpectrumWindowToMdiArea(SpectrumWindow *w);
    bool loadJSONSpectrum();
    void saveSpectrumToFile();
    void copySpectrumToClipboard();
    void pasteSpectrumFromClipboard();

    // The database (mainwindow_database.cpp)
    // Writes the species files as one database file at path; a box says which file is bad. False if
    // the database was not written; an existing one is unchanged then.
    bool compileSpeciesFiles(const QList<QString> &files, const QString &path,
                             const QString &version, const QString &databaseName,
                             const QString &title, bool compact);

    // The structure image (mainwindow_image.cpp)
    void updateImageFromSpecies();
    [[nodiscard]] bool isValidCASNumber(const QString &cas) const;
    // Takes pos in coordinates of the image label.
    void showImageContextMenu(const QPoint &pos);
    void clearImage();
    void pasteImageFromClipboard();

    // Matches the top-level keys of a species file that hold a spectrum.
    static const QRegularExpression reDataset;

public slots:
    void setModified();

private slots:
    void onButtonDownloadClicked();
    void onImageDownloaded(QNetworkReply *reply);
    void applySubscript();
    void applySuperscript();
    void applyTextFormatting(QTextCharFormat::VerticalAlignment alignment);

public slots:
    void createNewSpectrumWindow();
    void cleanUp();
    void deleteCurrentSpectrum();
    void createSpeciesDatabase();
    void selectSpeciesFolder();
    void loadPreviousSpeciesFile();
    void loadNextSpeciesFile();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectImage();
    void connectActions();
    void takeDropsOnDock();
    void keepDockReadable();
    void openToTheKeyboard();
    // The spectra of the sub-windows in the order of their creation.
    [[nodiscard]] QList<SpectrumWindow *> spectrumWindows() const;
    // The spectrum that the user works on, or null.
    [[nodiscard]] SpectrumWindow *currentSpectrumWindow() const;
    // Places the keyboard after the document is replaced: it stays with before, which had it, if
    // that is beside the spectra. Otherwise it goes to the title of the spectrum on top, or to the
    // name if there is no spectrum or nothing had the keyboard.
    void settleFocus(QWidget *before);
    // Commits what has been typed into the fields to the models.
    void commitEdits();
    // Commits, and reads points that were typed within the last two seconds.
    void finishEdits();
    // Fills the emptied document from the object of a species file.
    void loadSpeciesObject(const QJsonObject &file);
    // Creates one for each spectrum of a species file's object, in the order of their keys.
    void createSpectrumWindows(const QJsonObject &file);
    // Writes the document to the current file and returns why that failed, or None.
    [[nodiscard]] FileProblem writeSpecies();
    // The text that a box adds if a file was refused for its size; empty otherwise.
    [[nodiscard]] static QString sizeRemark(FileProblem problem);
    bool loadFirstOf(const QDir &folder, const QStringList &files);
    bool loadNeighbour(const QDir &folder, const QStringList &files, qsizetype current, int step);
    // The path of the first of files that is a species file, or an empty text.
    [[nodiscard]] QString firstSpeciesFile(const QDir &folder, const QStringList &files) const;
    void setImage(const QVariant &image);

    std::unique_ptr<Ui::MainWindow> ui;
    QNetworkAccessManager *networkManager;
    SpeciesModel *speciesModel;
    QDataWidgetMapper *mapper;
    FieldBinding *binding = nullptr;      // belongs to the mapper, made with it
    SpectrumTabs *spectrumTabs = nullptr; // made with the form
    QString currentFile;                  // full path; empty for a document without a file
    bool modified = false;
    CreateDatabase *createDatabaseDialog = nullptr; // made when it is first needed
};

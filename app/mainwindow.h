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
// dock, and any number of spectra, each in a sub-window. It knows which file the document belongs
// to and whether it has changes that are not in that file, and asks before such changes would be
// lost. Its members ask, call the libraries below and show the outcome; formats and rules are
// theirs.
class MainWindow : public QMainWindow
{
    Q_OBJECT
    Q_MOC_INCLUDE(<QNetworkReply>)

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // The document: title, save prompt, last folder (mainwindow.cpp)
    void updateWindowTitle(bool modified);
    // Also of what has been typed and is not in the models yet, which it brings there.
    [[nodiscard]] bool hasUnsavedChanges();
    // Asks whether to save the changes, if there are any. False if the user wants to stay: the
    // caller must not discard the document then. A save that fails does not keep the caller.
    [[nodiscard]] bool promptToSaveChanges();
    [[nodiscard]] QString lastfolder() const;
    void setlastfolder(const QString &path);

    // The species form and its files (mainwindow_species.cpp)
    void setupMapper();
    // Underlines a mass that is saved as 0 because it is no number.
    void markBadMass();
    void loadSpeciesFromFile();
    // Asks to save, then loads the species file at path; says what is wrong with it in a box. True
    // if it is the document now.
    bool loadSpeciesFile(const QString &requested);
    [[nodiscard]] bool isValidSpeciesFile(const QString &path) const;
    // Reads the file into the document, which must have been emptied.
    bool loadJSONSpecies(const QString &path);
    void saveSpecies();
    void saveSpeciesAs();
    void saveSpeciesToFile();

    // Stepping through a folder (mainwindow_navigation.cpp)
    // Loads the first species file of a folder (step 0) or the one before (-1) or after (1) the
    // file at path in its folder, round its ends. Says why in a box if there is none; false if none
    // was loaded.
    bool navigateSpeciesFiles(const QString &path, int step);

    // The spectrum sub-windows, their files and the clipboard (mainwindow_spectra.cpp)
    void createNewSpectrumWindow(const QJsonObject &obj);
    void addSpectrumWindowToMdiArea(SpectrumWindow *w);
    bool loadJSONSpectrum();
    void saveSpectrumToFile();
    void copySpectrumToClipboard();
    void pasteSpectrumFromClipboard();

    // The database (mainwindow_database.cpp)
    // Writes the species files as one database file at path and says which file is bad in a box.
    // False if the database was not written; an existing one is as it was then.
    bool compileSpeciesFiles(const QList<QString> &files, const QString &path,
                             const QString &version, const QString &databaseName,
                             const QString &title, bool compact);

    // The structure image (mainwindow_image.cpp)
    void updateImageFromSpecies();
    [[nodiscard]] bool isValidCASNumber(const QString &cas) const;
    // pos in coordinates of the image label.
    void showImageContextMenu(const QPoint &pos);
    void clearImage();
    void pasteImageFromClipboard();

    // The top-level keys of a species file that hold a spectrum.
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
    // The sub-windows' spectra in the order of their creation.
    [[nodiscard]] QList<SpectrumWindow *> spectrumWindows() const;
    // The spectrum that the user works on, or null.
    [[nodiscard]] SpectrumWindow *currentSpectrumWindow() const;
    // After the document was replaced: the keyboard stays with before, which had it, if that is
    // beside the spectra, and goes to the title of the spectrum on top otherwise. To the name if
    // there is none, or if nothing had it.
    void settleFocus(QWidget *before);
    // Writes what has been typed into the fields and is not in the models yet, into the models.
    void commitEdits();
    // The same, and reads points that were typed within the last two seconds.
    void finishEdits();
    // Fills the emptied document from a species file's object.
    void loadSpeciesObject(const QJsonObject &file);
    // One for each spectrum of a species file's object, in the order of their keys.
    void createSpectrumWindows(const QJsonObject &file);
    // Writes the document to the current file. None if the file holds it.
    [[nodiscard]] FileProblem writeSpecies();
    // What a box adds if a file was refused for its size; an empty text if it was not.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QList>
#include <QMainWindow>
#include <QRegularExpression>
#include <QTextCharFormat>

#include <memory>

class QDataWidgetMapper;
class QNetworkAccessManager;
class QNetworkReply;
class SpeciesModel;
class SpectrumWindow;

namespace Ui
{
class MainWindow;
}

// The editor's one window and the owner of the one open document: a species record, shown in the dock,
// and any number of spectra, each in a sub-window. It knows which file the document belongs to and
// whether it has changes that are not in that file, and asks before such changes would be lost. Its
// members ask, call the libraries below and show the outcome; formats and rules are theirs.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // The document: title, save prompt, last folder (mainwindow.cpp)
    void updateWindowTitle(bool modified);
    // Asks whether to save the changes, if there are any. False if the user wants to stay: the caller
    // must not discard the document then. A save that fails does not keep the caller.
    [[nodiscard]] bool promptToSaveChanges();
    [[nodiscard]] QString lastfolder() const;
    void setlastfolder(const QString &path);

    // The species form and its files (mainwindow_species.cpp)
    void setupMapper();
    void updateImageFromSpecies();
    void loadSpeciesFromFile();
    // Asks to save, then loads the species file at path; says what is wrong with it in a box. True if it
    // is the document now.
    bool loadSpeciesFile(const QString &path);
    [[nodiscard]] bool isValidSpeciesFile(const QString &path) const;
    // Reads the file into the document, which must have been emptied.
    bool loadJSONSpecies(const QString &path);
    void saveSpecies();
    void saveSpeciesAs();
    void saveSpeciesToFile();

    // The spectrum sub-windows, their files and the clipboard (mainwindow_spectra.cpp)
    void createNewSpectrumWindow(const QJsonObject &obj);
    void addSpectrumWindowToMdiArea(SpectrumWindow *w);
    bool loadJSONSpectrum();
    void saveSpectrumToFile();
    void copySpectrumToClipboard();
    void pasteSpectrumFromClipboard();

    // The top-level keys of a species file that hold a spectrum.
    static const QRegularExpression reDataset;

public slots:
    void setModified();

public slots:
    void createNewSpectrumWindow();
    void cleanUp();
    void deleteCurrentSpectrum();

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectDocument();
    void connectActions();
    // The sub-windows' spectra in the order of their creation.
    [[nodiscard]] QList<SpectrumWindow *> spectrumWindows() const;
    // The spectrum that the user works on, or null.
    [[nodiscard]] SpectrumWindow *currentSpectrumWindow() const;
    void commitFocusedField();

    std::unique_ptr<Ui::MainWindow> ui;
    QNetworkAccessManager *networkManager;
    SpeciesModel *speciesModel;
    QDataWidgetMapper *mapper;
    QString currentFile; // full path; empty for a document without a file
    bool modified = false;
};

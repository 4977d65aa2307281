// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/mainwindow.h"
#include "monkey/answers.h"
#include "monkey/expecteddocument.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

class CleanTextEdit;
class QMdiArea;
class QPlainTextEdit;
class SpectrumWindow;

// Acts at random like a user in a main window and tracks the expected document. It compares the two
// at every save, then loads the file into a second window, saves it there and compares again. The
// same seed repeats the same actions.
class Monkey
{
public:
    // Its files and the list of its actions, actions.log, are in folder.
    Monkey(quint32 seed, const QString &folder);
    ~Monkey();

    // Does one action. False if something was wrong then: error() says what.
    bool act();
    [[nodiscard]] QString error() const { return m_error; }
    [[nodiscard]] int savesCompared() const { return m_saves; }

    // Empties the document without saving it.
    void discardAll();
    // Opens an entry with more spectra than any other, in both windows.
    void openLargest();

private:
    struct Action {
        const char *name;
        int weight;
        void (Monkey::*run)();
    };
    static const Action actions[];

    // Species and files (monkey_files.cpp)
    void save();
    void saveAs();
    void load();
    void loadByDialog();
    void loadWhatIsNoEntry();
    void drop();
    void step();
    void selectFolder();
    void clean();
    void close();
    void compile();
    // The file is the document now.
    void loaded(const QString &path);
    void checkSaved();
    void savedAs(const QString &path);
    [[nodiscard]] QStringList entries() const;
    [[nodiscard]] QString anyEntry();
    // The answer to a prompt of the next action, and its outcome.
    QMessageBox::StandardButton expectPrompt(const QStringList &texts = {});
    // Whether this answer lets the document go.
    bool afterPrompt(QMessageBox::StandardButton answer, const QJsonObject &before);

    // Fields and spectra (monkey_edits.cpp)
    void typeInSpecies();
    void typeMass();
    void typeInSpectrum();
    void undoInSpecies();
    void format();
    void pasteIntoField();
    void pasteImage();
    void clearImage();
    void newSpectrum();
    void deleteSpectrum();
    void switchSpectrum();
    void changeType();
    void toggleLine();
    void typePoints();
    void undoPoints();
    void commaToDot();
    void normalise();
    void resample();
    void rest();
    void copyAndPaste();
    void pasteNonsense();
    void saveSpectrum();
    void loadSpectrum();
    void edit(CleanTextEdit *editor, const QString &text);
    void press(QWidget *widget, int key, const QString &text = {},
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void typeText(QWidget *widget, const QString &text);
    [[nodiscard]] QString anyText();
    [[nodiscard]] QString anyPointLine();
    [[nodiscard]] CleanTextEdit *anySpeciesField(QString &key);
    [[nodiscard]] QList<SpectrumWindow *> spectrumWindows() const;
    // The current spectrum's place in the order of creation, or -1.
    [[nodiscard]] int current() const;
    [[nodiscard]] QPlainTextEdit *pointEditor(int index) const;

    // Notes which point editors have been read in the meantime.
    void syncReadings();
    void activate();
    void settle();
    void fail(const QString &what);
    void note(const QString &detail);
    int below(int bound) { return m_random.bounded(bound); }

    template <typename T>
    [[nodiscard]] static T *find(const QWidget &parent, const QString &name)
    {
        T *object = parent.findChild<T *>(name);
        Q_ASSERT_X(object, "find", qPrintable(name));
        return object;
    }

    QRandomGenerator m_random;
    QDir m_folder;
    QFile m_log;
    Answers m_answers;
    MainWindow m_window;
    MainWindow m_reader;
    QMdiArea *m_area;
    ExpectedDocument m_document;
    QJsonObject m_stored; // as it was when it was last saved or loaded
    QString m_file;       // the current one, or empty
    QString m_promptPath; // where an untitled document is saved in the prompt, if it is
    int m_action = 0;
    int m_saves = 0;
    QString m_error;
};

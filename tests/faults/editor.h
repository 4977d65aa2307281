// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/mainwindow.h"

#include <QMessageBox>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

class CleanTextEdit;

// A main window and a user who edits a field, gives commands and answers all dialogs. The files of
// an operation are in one folder.
class Editor : public QObject
{
    Q_OBJECT

public:
    enum Operation { Save, SaveAs, SaveSpectrum, Compile };

    struct Box {
        QMessageBox::Icon icon;
        QString text;
    };

    Editor();

    // Opens an entry. False if it does not open, or a box comes up.
    [[nodiscard]] bool open(const QString &path);
    // Forgets the document and all choices made so far.
    void reset();
    // Types into the field that belongs to an operation: the entry's name, or the title of the
    // current spectrum, or of the database.
    void type(Operation operation, const QString &text);
    // What stands in that field.
    [[nodiscard]] QString typed(Operation operation) const;
    // Gives the command and answers what it asks. Just before the last answer, or the command if
    // nothing is asked, last is called.
    void carryOut(Operation operation, const QString &target, const QStringList &inputs,
                  const std::function<void()> &last);
    void trigger(const QString &action);

    [[nodiscard]] bool isModified() const;
    [[nodiscard]] QString title() const { return m_window->windowTitle(); }
    [[nodiscard]] CleanTextEdit *field(const QString &name) const;
    [[nodiscard]] CleanTextEdit *spectrumField(const QString &name) const;

    QList<Box> boxes; // that came up since it was last emptied

private:
    void answer();
    void answerFileDialog(QWidget *widget);
    void answerDatabaseDialog(QWidget *dialog);

    std::unique_ptr<MainWindow> m_window;
    QString m_target;
    QStringList m_inputs;
    QString m_databaseTitle;
    bool m_databaseChosen = false;
    std::function<void()> m_last;
};

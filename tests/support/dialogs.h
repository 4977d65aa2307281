// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QString>

#include <deque>
#include <functional>

class QFileDialog;

// What a message box showed when it was answered.
struct SeenBox {
    QMessageBox::Icon icon;
    QString title;
    QString text;
    QString informativeText;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton;
    Qt::TextFormat format;
    QWidget *parent;
};

// Answers the modal dialogs that come up during its life, in the order of the given answers, and
// keeps what they showed. A dialog without an answer fails the test and is closed; an unused answer
// fails the test at the end.
class Dialogs : public QObject
{
    Q_OBJECT

public:
    Dialogs();
    ~Dialogs() override;

    // Presses a button of the next message box.
    Dialogs &press(QMessageBox::StandardButton button = QMessageBox::Ok);
    // Presses Escape in the next dialog, whatever it is.
    Dialogs &escape();
    // Chooses a path in the next file dialog; says yes if it asks whether to overwrite it.
    Dialogs &choose(const QString &path);
    // Passes the next dialog to a function, which must close it.
    Dialogs &handle(std::function<void(QWidget *)> answer);

    // The dialogs shown so far: message boxes, and the titles and folders of file dialogs.
    QList<SeenBox> boxes;
    QStringList fileDialogTitles;
    QStringList fileDialogFolders;
    QStringList fileDialogFilters;
    QStringList fileDialogNames; // as filled in when it opened

private:
    void answerNext();
    void note(QMessageBox *box);
    void note(QFileDialog *dialog);

    std::deque<std::function<void(QWidget *)>> m_answers;
};

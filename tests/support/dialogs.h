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

// Answers the modal dialogs that come up while it lives, in the order in which the answers were
// given, and keeps what they showed. A dialog without an answer fails the test and is closed; so
// does, at the end, an answer that no dialog asked for.
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
    // Hands the next dialog to a function, which must close it.
    Dialogs &handle(std::function<void(QWidget *)> answer);

    // What was shown so far: message boxes, and the windows' titles and folders of file dialogs.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTextStream>
#include <QTimer>

// Lets the editor read files and write them again, for tests of what it writes:
//
//   resave species FILE...         opens each as an entry and saves it
//   resave spectrum FILE...        opens each as a spectrum and saves it
//   resave compact OUTPUT FILE...  compiles the entries into a database
//   resave indented OUTPUT FILE...
//
// Prints for each file "saved" or the text of the box that the editor showed.

namespace
{

// Answers whatever dialog comes up: chooses a path in file dialogs, notes what boxes say.
class Answers : public QObject
{
public:
    Answers()
    {
        connect(&m_timer, &QTimer::timeout, this, &Answers::answer);
        m_timer.start(1);
    }

    QString path;
    QString message;

private:
    void answer()
    {
        QWidget *widget = QApplication::activeModalWidget();
        if (auto *box = qobject_cast<QMessageBox *>(widget)) {
            QAbstractButton *yes = box->button(QMessageBox::Yes); // to the question of overwriting
            if (!yes)
                message = box->text();
            (yes ? yes : box->button(QMessageBox::Ok))->click();
        } else if (auto *dialog = qobject_cast<QFileDialog *>(widget)) {
            if (dialog == m_answered)
                return;
            m_answered = dialog;
            dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
            // The question of overwriting comes up in there, for which the timer must go on.
            QTimer::singleShot(0, dialog, [dialog] { static_cast<QDialog *>(dialog)->accept(); });
        }
    }

    QTimer m_timer;
    QPointer<QFileDialog> m_answered;
};

void trigger(const MainWindow &window, const char *action)
{
    window.findChild<QAction *>(QLatin1String(action))->trigger();
}

bool resaveSpecies(MainWindow &window, const QString &file)
{
    if (!window.loadSpeciesFile(file))
        return false;
    trigger(window, "actionSaveSpecies");
    return !window.windowTitle().endsWith(QLatin1Char('*'));
}

bool resaveSpectrum(MainWindow &window, Answers &answers, const QString &file)
{
    answers.path = file;
    trigger(window, "actionLoadSpectrum");
    if (!answers.message.isEmpty())
        return false;
    answers.path = file;
    trigger(window, "actionSaveSpectrumAs");
    trigger(window, "actionDelete");
    return answers.message.isEmpty();
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QStringList files = QCoreApplication::arguments().sliced(1);
    if (files.size() < 2)
        return 2;
    const QString what = files.takeFirst();

    QTextStream out(stdout);
    Answers answers;
    MainWindow window;
    const auto report = [&](bool saved) {
        out << (saved ? QStringLiteral("saved") : answers.message) << Qt::endl;
        answers.message.clear();
    };
    if (what == QLatin1String("compact") || what == QLatin1String("indented")) {
        const QString output = files.takeFirst();
        const bool compact = what == QLatin1String("compact");
        report(window.compileSpeciesFiles(files, output, QStringLiteral("1.0"),
                                          QStringLiteral("3.0"), QStringLiteral("Test"), compact));
        return 0;
    }
    for (const QString &file : std::as_const(files)) {
        // The event loop, which does not run here, would have deleted the closed spectra.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (what == QLatin1String("species"))
            report(resaveSpecies(window, file));
        else
            report(resaveSpectrum(window, answers, file));
    }
    return 0;
}

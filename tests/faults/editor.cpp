// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/editor.h"

#include "spectrum/spectrumwindow.h"
#include "widgets/cleantextedit.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

Editor::Editor()
{
    reset();
    answer();
}

void Editor::reset()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    m_window->activateWindow();
    if (!QTest::qWaitForWindowActive(m_window.get()))
        qFatal("the window does not become active");
    m_databaseChosen = false;
    boxes.clear();
}

bool Editor::open(const QString &path)
{
    boxes.clear();
    return m_window->loadSpeciesFile(path) && boxes.isEmpty();
}

CleanTextEdit *Editor::field(const QString &name) const
{
    return m_window->findChild<CleanTextEdit *>(name);
}

CleanTextEdit *Editor::spectrumField(const QString &name) const
{
    const auto *area = m_window->findChild<QMdiArea *>(u"mdiArea"_s);
    const QMdiSubWindow *current = area->currentSubWindow();
    return current ? current->widget()->findChild<CleanTextEdit *>(name) : nullptr;
}

void Editor::type(Operation operation, const QString &text)
{
    if (operation == Compile) {
        m_databaseTitle = text;
        return;
    }
    CleanTextEdit *editor =
        operation == SaveSpectrum ? spectrumField(u"lineEditTitle"_s) : field(u"lineEditSpecies"_s);
    editor->setFocus();
    editor->selectAll();
    QTest::keyClicks(editor, text);
}

QString Editor::typed(Operation operation) const
{
    if (operation == Compile)
        return m_databaseTitle;
    return operation == SaveSpectrum ? spectrumField(u"lineEditTitle"_s)->toPlainText()
                                     : field(u"lineEditSpecies"_s)->toPlainText();
}

void Editor::carryOut(Operation operation, const QString &target, const QStringList &inputs,
                      const std::function<void()> &last)
{
    static constexpr const char *actions[] = {"actionSaveSpecies", "actionSaveSpeciesAs",
                                              "actionSaveSpectrumAs", "actionCreateDatabase"};
    m_target = target;
    m_inputs = inputs;
    m_last = last;
    boxes.clear();
    if (operation == Save)
        m_last();
    trigger(QString::fromLatin1(actions[operation]));
}

void Editor::trigger(const QString &action)
{
    m_window->findChild<QAction *>(action)->trigger();
}

bool Editor::isModified() const
{
    return m_window->windowTitle().endsWith(u" *"_s);
}

void Editor::answer()
{
    // A timer of its own each time: one that is being delivered does not fire again for a dialog
    // that comes up meanwhile.
    QTimer::singleShot(1ms, this, &Editor::answer);
    QWidget *dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible() || qobject_cast<QProgressDialog *>(dialog))
        return;
    if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
        if (QAbstractButton *yes = box->button(QMessageBox::Yes)) {
            yes->click(); // whether to write over the file
            return;
        }
        boxes.append({box->icon(), box->text()});
        QAbstractButton *discard = box->button(QMessageBox::Discard);
        (discard ? discard : box->button(QMessageBox::Ok))->click();
    } else if (qobject_cast<QFileDialog *>(dialog)) {
        answerFileDialog(dialog);
    } else {
        answerDatabaseDialog(dialog);
    }
}

void Editor::answerFileDialog(QWidget *widget)
{
    auto *dialog = qobject_cast<QFileDialog *>(widget);
    QString name = m_target;
    if (dialog->fileMode() == QFileDialog::ExistingFiles)
        name = u'"' + m_inputs.join(u"\" \""_s) + u'"';
    dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(name);
    if (!qobject_cast<QDialog *>(dialog->parentWidget()))
        m_last();
    static_cast<QDialog *>(dialog)->accept();
}

void Editor::answerDatabaseDialog(QWidget *dialog)
{
    if (!m_databaseChosen) {
        m_databaseChosen = true;
        dialog->findChild<QPushButton *>(u"pushButton"_s)->click();
        dialog->findChild<QPushButton *>(u"pushButton_2"_s)->click();
        const auto *list = dialog->findChild<QListWidget *>(u"listWidget"_s);
        if (list->count() != m_inputs.size())
            qFatal("the files to compile are not in the list");
    }
    dialog->findChild<QLineEdit *>(u"lineEdit_3"_s)->setText(m_databaseTitle);
    m_last();
    dialog->findChild<QDialogButtonBox *>(u"buttonBox"_s)->button(QDialogButtonBox::Ok)->click();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/dialogs.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace std::chrono_literals;

Dialogs::Dialogs()
{
    answerNext();
}

Dialogs::~Dialogs()
{
    if (!m_answers.empty())
        QTest::qFail("a dialog that was expected did not come up", __FILE__, __LINE__);
}

Dialogs &Dialogs::press(QMessageBox::StandardButton button)
{
    return handle([button](QWidget *widget) {
        auto *box = qobject_cast<QMessageBox *>(widget);
        QAbstractButton *target = box ? box->button(button) : nullptr;
        if (!target)
            QTest::qFail("the dialog has no such button", __FILE__, __LINE__);
        target ? target->click() : static_cast<void>(widget->close());
    });
}

Dialogs &Dialogs::escape()
{
    return handle([](QWidget *widget) { QTest::keyClick(widget, Qt::Key_Escape); });
}

Dialogs &Dialogs::choose(const QString &path)
{
    return handle([this, path](QWidget *widget) {
        auto *dialog = qobject_cast<QFileDialog *>(widget);
        if (!dialog) {
            QTest::qFail("a file dialog was expected", __FILE__, __LINE__);
            widget->close();
            return;
        }
        // The overwrite question comes up inside accept().
        const bool asks = dialog->acceptMode() == QFileDialog::AcceptSave && QFile::exists(path);
        if (asks)
            m_answers.push_front([](QWidget *box) {
                qobject_cast<QMessageBox *>(box)->button(QMessageBox::Yes)->click();
            });
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
        static_cast<QDialog *>(dialog)->accept();
    });
}

Dialogs &Dialogs::handle(std::function<void(QWidget *)> answer)
{
    m_answers.push_back(std::move(answer));
    return *this;
}

void Dialogs::answerNext()
{
    // A timer of its own each time: one that is being delivered does not fire again for a dialog
    // that comes up meanwhile.
    QTimer::singleShot(5ms, this, &Dialogs::answerNext);
    QWidget *widget = QApplication::activeModalWidget();
    if (!widget || !widget->isVisible())
        return;
    if (auto *box = qobject_cast<QMessageBox *>(widget))
        note(box);
    else if (auto *dialog = qobject_cast<QFileDialog *>(widget))
        note(dialog);
    if (m_answers.empty()) {
        const QString shown = boxes.isEmpty() ? widget->windowTitle() : boxes.last().text;
        QTest::qFail(qPrintable(QStringLiteral("unexpected dialog: ") + shown), __FILE__, __LINE__);
        widget->close();
        return;
    }
    const auto answer = std::move(m_answers.front());
    m_answers.pop_front();
    answer(widget);
}

void Dialogs::note(QMessageBox *box)
{
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    if (box->defaultButton())
        defaultButton = box->standardButton(box->defaultButton());
    boxes.append({box->icon(), box->windowTitle(), box->text(), box->informativeText(),
                  box->standardButtons(), defaultButton, box->textFormat(), box->parentWidget()});
}

void Dialogs::note(QFileDialog *dialog)
{
    fileDialogTitles.append(dialog->windowTitle());
    fileDialogFolders.append(dialog->directory().absolutePath());
    fileDialogFilters.append(dialog->nameFilters().join(QLatin1String(";;")));
    fileDialogNames.append(dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text());
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "monkey/answers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

using namespace std::chrono_literals;

Answers::Answers()
{
    answerNext();
}

void Answers::expect(QMessageBox::StandardButton prompt, const QString &path,
                     const QStringList &texts)
{
    m_prompt = prompt;
    m_path = path;
    m_expected = texts;
    m_prompted = false;
    m_boxes.clear();
}

void Answers::answerNext()
{
    // A timer of its own each time: one that is being delivered does not fire again for a dialog
    // that comes up meanwhile.
    QTimer::singleShot(1ms, this, &Answers::answerNext);
    QWidget *widget = QApplication::activeModalWidget();
    if (!widget || !widget->isVisible())
        return;
    if (auto *box = qobject_cast<QMessageBox *>(widget)) {
        answerBox(box);
    } else if (auto *dialog = qobject_cast<QFileDialog *>(widget)) {
        answerFileDialog(dialog);
    } else {
        m_surprise = QStringLiteral("a dialog \"%1\"").arg(widget->windowTitle());
        widget->close();
    }
}

void Answers::answerBox(QMessageBox *box)
{
    if (box->text() == QLatin1String("The species has been modified.")) {
        m_prompted = true;
        box->button(m_prompt)->click();
    } else if (QAbstractButton *yes = box->button(QMessageBox::Yes)) {
        yes->click();
    } else {
        m_boxes.append(box->text());
        if (!m_expected.contains(box->text()) && m_surprise.isEmpty())
            m_surprise = QStringLiteral("a box \"%1\"").arg(box->text());
        box->button(QMessageBox::Ok)->click();
    }
}

void Answers::answerFileDialog(QFileDialog *dialog) const
{
    if (m_path.isEmpty()) {
        dialog->reject();
        return;
    }
    dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(m_path);
    static_cast<QDialog *>(dialog)->accept();
}

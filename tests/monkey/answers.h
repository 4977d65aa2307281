// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QStringList>

class QFileDialog;

// Answers the modal dialogs that come up while it lives: the prompt to save, file dialogs with one
// path, and boxes of one button, which must say one of the texts that are expected. A question
// whether to overwrite a file is answered with yes.
class Answers : public QObject
{
    Q_OBJECT

public:
    Answers();

    // What the next action may meet. An empty path cancels file dialogs.
    void expect(QMessageBox::StandardButton prompt, const QString &path,
                const QStringList &texts = {});

    [[nodiscard]] bool wasPrompted() const { return m_prompted; }
    // The texts of the boxes that came up, the prompt not among them.
    [[nodiscard]] QStringList boxes() const { return m_boxes; }
    // The first text that was not expected, or an empty one.
    [[nodiscard]] QString surprise() const { return m_surprise; }

private:
    void answerNext();
    void answerBox(QMessageBox *box);
    void answerFileDialog(QFileDialog *dialog) const;

    QMessageBox::StandardButton m_prompt = QMessageBox::Discard;
    QString m_path;
    QStringList m_expected;
    bool m_prompted = false;
    QStringList m_boxes;
    QString m_surprise;
};

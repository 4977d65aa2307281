// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include "app/messagebox.h"

#include <QApplication>
#include <QTextCursor>
#include <QTextEdit>

void MainWindow::applySubscript()
{
    applyTextFormatting(QTextCharFormat::AlignSubScript);
}

void MainWindow::applySuperscript()
{
    applyTextFormatting(QTextCharFormat::AlignSuperScript);
}

void MainWindow::applyTextFormatting(QTextCharFormat::VerticalAlignment alignment)
{
    auto *editor = qobject_cast<QTextEdit *>(QApplication::focusWidget());
    if (!editor) {
        showMessage(this, QMessageBox::Warning, tr("No Text Field Focused"),
                    tr("Please focus on a text field to apply formatting."));
        return;
    }
    QTextCursor cursor = editor->textCursor();
    if (!cursor.hasSelection()) {
        showMessage(this, QMessageBox::Information, tr("No Selection"),
                    tr("Please select text to format."));
        return;
    }
    const bool isSet = cursor.charFormat().verticalAlignment() == alignment;
    QTextCharFormat format;
    format.setVerticalAlignment(isSet ? QTextCharFormat::AlignNormal : alignment);
    cursor.mergeCharFormat(format);
    // The cursor ends behind the selection, so that its next reading sees the last character.
    const int end = cursor.selectionEnd();
    cursor.setPosition(cursor.selectionStart());
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    editor->setTextCursor(cursor);
}

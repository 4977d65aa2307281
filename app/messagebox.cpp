// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/messagebox.h"

void showMessage(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text,
                 const QString &informativeText)
{
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(informativeText);
    box.exec();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMessageBox>

// Shows a modal box with one OK button. The text is plain: the name of a file in it is never
// markup. The informative text says more about it.
void showMessage(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text,
                 const QString &informativeText = {});

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMessageBox>

// Shows a modal box with one OK button. Both texts are plain, so that a file name in them is never
// markup.
void showMessage(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text,
                 const QString &informativeText = {});

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProgressDialog>

class QLabel;

// Shows that a compilation is alive once it has run for a second, modally and with a Cancel button.
class CompileProgressDialog final : public QProgressDialog
{
    Q_OBJECT

public:
    CompileProgressDialog(int fileCount, QWidget *parent);

    // Shows the number and the name of the next file. False once the user has cancelled.
    bool advance(int done, const QString &next);

private:
    QLabel *m_label;
};

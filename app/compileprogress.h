// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

// Shows that a compilation is alive once it has run for a second, modally and with a Cancel button.
class CompileProgressDialog final : public QProgressDialog
{
    Q_OBJECT

public:
    CompileProgressDialog(int fileCount, QWidget *parent);

    // Shows how many files are done, and the number (from 1) and the name of the next one. False
    // once the user has cancelled.
    bool advance(int done, int number, const QString &next);

private:
    QElapsedTimer m_elapsed;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

// A modal dialog with a Cancel button that appears once a compilation has run for a second.
class CompileProgressDialog final : public QProgressDialog
{
    Q_OBJECT

public:
    CompileProgressDialog(int fileCount, QWidget *parent);

    // Shows how many files are done, and the number (from 1) and name of the next one. Returns
    // false once the user has cancelled.
    bool advance(int done, int number, const QString &next);

private:
    QElapsedTimer m_elapsed;
};

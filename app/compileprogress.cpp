// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/compileprogress.h"

#include <QFileInfo>
#include <QLabel>

CompileProgressDialog::CompileProgressDialog(int fileCount, QWidget *parent)
    : QProgressDialog(parent), m_label(new QLabel(this))
{
    // The name of a file is never markup.
    m_label->setTextFormat(Qt::PlainText);
    setLabel(m_label);
    setWindowTitle(tr("Create database"));
    setWindowModality(Qt::ApplicationModal);
    setMinimumDuration(1000);
    setRange(0, fileCount);
    setMinimumWidth(400);
    setValue(0);
}

bool CompileProgressDialog::advance(int done, const QString &next)
{
    setLabelText(tr("File %1 of %2: %3")
                     .arg(QString::number(done + 1), QString::number(maximum()),
                          QFileInfo(next).fileName()));
    setValue(done);
    return !wasCanceled();
}

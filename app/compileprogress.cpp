// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/compileprogress.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>

#include <limits>

CompileProgressDialog::CompileProgressDialog(int fileCount, QWidget *parent)
    : QProgressDialog(parent)
{
    // The percentage is written in Latin digits, like every other number of the program.
    setLocale(QLocale::c());
    auto *label = new QLabel(this);
    // File names are never markup.
    label->setTextFormat(Qt::PlainText);
    setLabel(label);
    setWindowTitle(tr("Create database"));
    setWindowModality(Qt::ApplicationModal);
    // The dialog's own estimate of the duration is not used.
    setMinimumDuration(std::numeric_limits<int>::max());
    setAutoReset(false);
    setAutoClose(false);
    setRange(0, fileCount);
    setMinimumWidth(400);
    m_elapsed.start();
}

bool CompileProgressDialog::advance(int done, int number, const QString &next)
{
    constexpr qint64 patience = 1000; // ms
    if (!isVisible() && m_elapsed.elapsed() < patience)
        return true;
    setLabelText(
        tr("File %1 of %2: %3")
            .arg(QString::number(number), QString::number(maximum()), QFileInfo(next).fileName()));
    setValue(done);
    if (!isVisible()) {
        // The wait cursor would suggest that the button cannot be pressed.
        QGuiApplication::changeOverrideCursor(Qt::BusyCursor);
        show();
    }
    QCoreApplication::processEvents();
    return !wasCanceled();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include "app/compileprogress.h"
#include "app/messagebox.h"
#include "database/createdatabase.h"
#include "database/databasecompiler.h"
#include "widgets/waitcursor.h"

#include <QDate>

void MainWindow::createSpeciesDatabase()
{
    if (!createDatabaseDialog)
        createDatabaseDialog = new CreateDatabase(this);
    const CreateDatabase &dialog = *createDatabaseDialog;
    if (createDatabaseDialog->exec() != QDialog::Accepted)
        return;
    if (compileSpeciesFiles(dialog.myfiles(), dialog.createfilename(), dialog.version(),
                            dialog.databaseName(), dialog.title(), dialog.iscompact()))
        showMessage(this, QMessageBox::Information, tr("Success"),
                    tr("Species database created successfully."));
    else
        showMessage(this, QMessageBox::Warning, tr("Error"),
                    tr("Failed to create species database."));
}

bool MainWindow::compileSpeciesFiles(const QList<QString> &files, const QString &path,
                                     const QString &version, const QString &databaseName,
                                     const QString &title, bool compact)
{
    const auto compile = [&] {
        const WaitCursor waitCursor;
        CompileProgressDialog progress(static_cast<int>(files.size()), this);
        return compileDatabase(
            files, path, {version, databaseName, title, QDate::currentDate()},
            compact ? QJsonDocument::Compact : QJsonDocument::Indented,
            [&](int done, int index) { return progress.advance(done, index + 1, files[index]); });
    };
    const std::optional<CompileError> error = compile();
    if (error && error->kind == CompileError::UnreadableInput)
        showMessage(this, QMessageBox::Warning, tr("Error"),
                    tr("Could not open file: %1").arg(error->file),
                    sizeRemark(error->isTooLarge ? FileProblem::TooLarge : FileProblem::None));
    else if (error && error->kind == CompileError::InvalidInput)
        showMessage(this, QMessageBox::Critical, tr("Error"),
                    tr("Invalid species type in file: %1").arg(error->file));
    return !error;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "database/createdatabase.h"

#include "settings/lastfolder.h"
#include "ui_createdatabase.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

CreateDatabase::CreateDatabase(QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::CreateDatabase>())
{
    ui->setupUi(this);
    connect(ui->pushButton, &QPushButton::clicked, this, &CreateDatabase::setDatabase);
    connect(ui->pushButton_2, &QPushButton::clicked, this, &CreateDatabase::setFileList);
    connect(ui->pushButton_3, &QPushButton::clicked, this, &CreateDatabase::clearAll);
    connect(this, &QDialog::accepted, this, &QDialog::hide);
    connect(this, &QDialog::rejected, this, &QDialog::hide);
}

CreateDatabase::~CreateDatabase() = default;

QString CreateDatabase::version() const
{
    return ui->lineEdit->text();
}

QString CreateDatabase::databaseName() const
{
    return ui->lineEdit_2->text();
}

QString CreateDatabase::title() const
{
    return ui->lineEdit_3->text();
}

QList<QString> CreateDatabase::myfiles() const
{
    return m_files;
}

QString CreateDatabase::createfilename() const
{
    return m_output;
}

bool CreateDatabase::iscompact() const
{
    return ui->checkBox->isChecked();
}

void CreateDatabase::setDatabase()
{
    const QString start = m_output.isEmpty() ? lastFolder() : m_output;
    // Cancelling returns an empty path, which clears an earlier choice.
    setOutput(QFileDialog::getSaveFileName(this, tr("Database will be saved to..."), start,
                                           tr("JSON Files (*.json)")));
}

void CreateDatabase::setFileList()
{
    QFileDialog dialog(this, tr("Select JSON Files to be added to the database"), lastFolder(),
                       tr("JSON Files (*.json)"));
    dialog.setFileMode(QFileDialog::ExistingFiles);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QStringList paths = dialog.selectedFiles();
    for (const QString &path : paths) {
        m_files.append(path);
        ui->listWidget->addItem(QFileInfo(path).fileName());
    }
}

void CreateDatabase::clearAll()
{
    ui->listWidget->clear();
    m_files.clear();
    setOutput({});
}

void CreateDatabase::accept()
{
    if (m_files.isEmpty()) {
        QMessageBox::warning(this, tr("Error"),
                             tr("At least one species has to be added to the database."));
    } else if (m_output.isEmpty()) {
        QMessageBox::warning(this, tr("Error"),
                             tr("Where shall I save the database to? (Click on Set database)"));
    } else {
        QDialog::accept();
    }
}

void CreateDatabase::setOutput(const QString &path)
{
    m_output = path;
    ui->label_5->setText(QFileInfo(path).fileName());
}

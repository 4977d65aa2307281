// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QList>
#include <QString>

#include <memory>

namespace Ui
{
class CreateDatabase;
}

// The dialog that chooses the species files of a database, the file to write and the values of its
// header. It is made once and shown again: the choices stay until clearAll().
class CreateDatabase : public QDialog
{
    Q_OBJECT

public:
    explicit CreateDatabase(QWidget *parent = nullptr);
    ~CreateDatabase() override;

    [[nodiscard]] QString version() const;
    [[nodiscard]] QString databaseName() const;
    [[nodiscard]] QString title() const;
    // Full paths in the order of adding; a file may occur twice.
    [[nodiscard]] QList<QString> myfiles() const;
    // The full path of the file to write; empty if none is chosen.
    [[nodiscard]] QString createfilename() const;
    [[nodiscard]] bool iscompact() const;

public slots:
    void setDatabase();
    void setFileList();
    void clearAll();
    // Closes the dialog if there are files to compile and a file to write; otherwise says what is
    // missing.
    void accept() override;

private:
    void setOutput(const QString &path);

    std::unique_ptr<Ui::CreateDatabase> ui;
    QList<QString> m_files;
    QString m_output;
};

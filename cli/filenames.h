// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QString>

// Names of files as the command line has them: any bytes. The libraries below take texts, in which
// bytes that are not UTF-8 are lost; such a file is given to them under another name that leads to
// it.

// A file to read: its name for the user and the path for the libraries.
struct InputFile {
    QByteArray name;
    QString path;
    bool isNamed = true; // on the command line; else it was found in a folder
};

// The path under which the libraries can read the file or folder of this name.
[[nodiscard]] QString libraryPath(const QByteArray &name);

// The name as messages show it: control characters, which could move the terminal's cursor or end a
// line, are written as escapes ("\n", "\x1b"). Other bytes stay.
[[nodiscard]] QByteArray shownName(const QByteArray &name);

struct InputList {
    QList<InputFile> files;
    QByteArrayList unreadableFolders; // names; the files of the others are there
    QByteArrayList emptyFolders;      // those operands that stand for no file
};

// The files that operands name, in their order. A folder stands for its files "*.json" in the order
// in which the editor steps through them, then those of its subfolders, in natural order too;
// hidden files and folders and links to folders are left out. So is the file named leftOut, where
// it is found in a folder and not named itself. A name at which there is nothing stays in the list,
// and so does a link "*.json" in a folder that leads nowhere: who reads it says so.
[[nodiscard]] InputList listInputs(const QByteArrayList &operands, const QByteArray &leftOut = {});

// A file to write.
class OutputFile
{
    Q_DISABLE_COPY_MOVE(OutputFile)

public:
    explicit OutputFile(const QByteArray &name);
    // Removes what was written at path() and not put in place.
    ~OutputFile();

    // What the libraries are to write.
    [[nodiscard]] const QString &path() const { return m_path; }
    // Makes what was written the file of this name. False if that cannot be done.
    [[nodiscard]] bool putInPlace();

private:
    QByteArray m_name; // empty once there is nothing left to do
    QString m_path;
};

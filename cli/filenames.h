// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QString>

// File names as on the command line: any bytes. The libraries below take QString paths, which lose
// bytes that are not UTF-8, as names from older systems have. Such a file is passed to them under
// the name of a symbolic link, so that no entry of a folder is skipped.

// A file to read: its name for the user and the path for the libraries.
struct InputFile {
    QByteArray name;
    QString path;
    bool isNamed = true; // on the command line; else it was found in a folder
};

// The path with which the libraries can read the file or folder.
[[nodiscard]] QString libraryPath(const QByteArray &name);

// The name for messages: control characters, which could move the terminal's cursor or end a line,
// become escapes ("
// ", "\x1b"). Other bytes do not change.
[[nodiscard]] QByteArray shownName(const QByteArray &name);

struct InputList {
    QList<InputFile> files;
    QByteArrayList unreadableFolders; // names; the files of the others are there
    QByteArrayList emptyFolders;      // those operands that stand for no file
};

// The files that operands name, in order. A folder stands for its "*.json" files in the order of
// the editor's steps, then those of its subfolders, in natural order too. Hidden files and folders
// and links to folders are left out, and so is the file leftOut unless it is named itself. A name
// without a file stays in the list, and so does a link "*.json" that leads nowhere: the reader
// reports it.
[[nodiscard]] InputList listInputs(const QByteArrayList &operands, const QByteArray &leftOut = {});

// A file to write.
class OutputFile
{
    Q_DISABLE_COPY_MOVE(OutputFile)

public:
    explicit OutputFile(const QByteArray &name);
    // Removes the file at path() if it was not put in place.
    ~OutputFile();

    // The path for the libraries to write to.
    [[nodiscard]] const QString &path() const { return m_path; }
    // Gives the written file its name. False if that fails.
    [[nodiscard]] bool putInPlace();

private:
    QByteArray m_name; // empty once there is nothing left to do
    QString m_path;
};

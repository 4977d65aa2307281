// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "faults/editor.h"

#include <QByteArray>

// An operation on documents of one size in a folder of its own, carried out again and again from
// the same beginning: the target holds old bytes, and a text with the number of the try has just
// been typed. Knows exactly what the target must hold after it has gone well, and what the window
// must show in either case.
class Trial
{
public:
    // Makes the folder and the documents in it. size: of each document in bytes, about. name: of
    // the file that is written, if not the usual one.
    Trial(Editor::Operation operation, qsizetype size, const QString &folder,
          const QString &name = {});
    // The same, opened in an editor, with everything learnt.
    Trial(Editor &editor, Editor::Operation operation, qsizetype size, const QString &folder,
          const QString &name = {});

    // Opens the document in an editor, which must stay.
    void open(Editor &editor);
    // Carries the operation out for the first time, without faults.
    void carryOutFirst();
    // Learns from what that has written, in this process or in another one.
    void learn();

    void putOldBytes() const;
    void type(int number);
    // Both.
    void prepare(int number);
    void carryOut(const std::function<void()> &last);

    enum class Result { Old, New, Other };
    [[nodiscard]] Result result() const;
    // Whether the target is exactly what is written with a number; 0 stands for the old bytes.
    [[nodiscard]] bool holds(int number) const;
    // Nothing if what the window shows and the files say is true and complete; otherwise what is
    // wrong.
    [[nodiscard]] QString complaint() const;
    // The files that do not belong in the folder.
    [[nodiscard]] QStringList leftovers() const;
    // Removes them.
    void removeLeftovers() const;

    [[nodiscard]] QString folder() const { return m_folder; }
    [[nodiscard]] QString target() const { return m_target; }
    [[nodiscard]] QByteArray oldBytes() const { return m_oldBytes; }
    [[nodiscard]] qsizetype newSize() const { return m_newBytes.size(); }

private:
    [[nodiscard]] QByteArray newBytes(int number) const;
    [[nodiscard]] QString text(int number) const;
    [[nodiscard]] bool failed() const;

    Editor *m_editor = nullptr;
    Editor::Operation m_operation;
    QString m_folder;
    QString m_entry; // the document that is opened
    QString m_target;
    QStringList m_inputs;
    QStringList m_names; // that belong in the folder
    QByteArray m_oldBytes;
    QByteArray m_newBytes; // of the number 0
    int m_number = 0;
};

// A species file's bytes of about this size; the spectra make it up. With a name and the titles of
// its spectra.
[[nodiscard]] QByteArray entryBytes(qsizetype size, const QString &name, int spectra);

// For setting up: each ends the program with a message if it cannot do its work.
void putFile(const QString &path, const QByteArray &bytes);
[[nodiscard]] QByteArray fileContents(const QString &path);

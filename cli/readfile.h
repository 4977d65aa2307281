// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/filebytes.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

class Console;
struct InputFile;
struct InputList;

// Why the library that reads files refuses this one, in a few words: "no such file". problem is
// what reading it gave; some files of the system have other sizes than they say.
[[nodiscard]] QByteArray whyUnreadable(const InputFile &input, FileProblem problem);

// Says on standard error which of the folders could not be read and which have no file. Returns
// whether there is any: a script that names the wrong folder is not to pass.
[[nodiscard]] bool nameBadFolders(const InputList &list, Console &console);

// The object of a JSON file; an empty one if it is not JSON. If the file cannot be read, says so on
// standard error and returns nothing.
[[nodiscard]] std::optional<QJsonObject> readObject(const InputFile &input, Console &console);

// The spectra of a species file in the order in which the editor loads them, or the one of a
// spectrum file; nothing if object is neither.
[[nodiscard]] std::optional<QList<QJsonObject>> spectraOf(const QJsonObject &object);

// Whether a file is a database or, where those do not count either, a spectrum that was found in a
// folder: a command for other kinds passes over it without a word, unless it is named.
enum class PassOver { Databases, DatabasesAndSpectra };
[[nodiscard]] bool isPassedOver(const InputFile &input, const QJsonObject &object, PassOver kinds);

// Restricted markup as one line of text: without its tags, and a blank for a line break.
[[nodiscard]] QString plainText(const QString &markup);

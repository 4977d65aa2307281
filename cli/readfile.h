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

// Why the file cannot be read, in a few words: "no such file". problem is the result of reading it,
// as the sizes of some system files are wrong.
[[nodiscard]] QByteArray whyUnreadable(const InputFile &input, FileProblem problem);

// Reports unreadable and empty folders on standard error. Returns whether there is one: a script
// with the wrong folder must fail.
[[nodiscard]] bool nameBadFolders(const InputList &list, Console &console);

// The object of a JSON file; an empty one if it is not JSON. Nothing, and a message on standard
// error, if it cannot be read.
[[nodiscard]] std::optional<QJsonObject> readObject(const InputFile &input, Console &console);

// The spectra of a species file in the order of loading, or the one of a spectrum file; nothing if
// object is neither.
[[nodiscard]] std::optional<QList<QJsonObject>> spectraOf(const QJsonObject &object);

// Whether a command for other kinds silently skips the file: a database or, for
// DatabasesAndSpectra, a spectrum, that was found in a folder and not named.
enum class PassOver { Databases, DatabasesAndSpectra };
[[nodiscard]] bool isPassedOver(const InputFile &input, const QJsonObject &object, PassOver kinds);

// Restricted markup as one line of text: without tags, with a blank for a line break.
[[nodiscard]] QString plainText(const QString &markup);

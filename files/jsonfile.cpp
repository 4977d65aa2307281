// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/jsonfile.h"

#include "files/jsonlayout.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace
{

// Reads a JSON file that may be long; nothing if it cannot be read or is too large.
std::optional<QByteArray> readLongText(const QString &path, bool withLayout, FileProblem *problem)
{
    QByteArray text;
    JsonWithoutLayout compact;
    qint64 size = 0;
    qint64 counted = 0;
    bool fits = true;
    const bool isRead = readFilePieces(path, [&](QByteArrayView piece) {
        size += piece.size();
        if (withLayout)
            text.append(piece);
        compact.take(piece);
        counted = withLayout ? counted + compact.bytes().size() : compact.size();
        return fits = size <= largestJsonText && counted <= largestJsonFile;
    });
    *problem = problemOf(isRead, fits);
    if (!isRead)
        return std::nullopt;
    return withLayout ? text : compact.bytes();
}

std::optional<QByteArray> readText(const QString &path, bool withLayout, FileProblem *problem)
{
    FileProblem unasked = FileProblem::None;
    FileProblem *const found = problem ? problem : &unasked;
    std::optional<QByteArray> text;
    // A longer file may consist mostly of layout.
    if (QFileInfo(path).size() <= largestJsonFile)
        text = readFileBytes(path, largestJsonFile, found);
    else
        text = readLongText(path, withLayout, found);
    return text;
}

} // namespace

bool hasType(const QJsonObject &object, QLatin1String type)
{
    return object.value(typeKey).toString() == type;
}

std::optional<QByteArray> readJsonText(const QString &path, FileProblem *problem)
{
    return readText(path, true, problem);
}

std::optional<QJsonObject> readJsonObject(const QString &path, FileProblem *problem)
{
    const std::optional<QByteArray> text = readText(path, false, problem);
    if (!text)
        return std::nullopt;
    return QJsonDocument::fromJson(*text).object();
}

QByteArray jsonOnOneLine(const QJsonValue &value)
{
    // Compact JSON of an array with this one value, without the brackets.
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.sliced(1, array.size() - 2);
}

bool fitsIntoFile(QByteArrayView json)
{
    return json.size() <= largestJsonFile || sizeWithoutLayout(json) <= largestJsonFile;
}

bool writeJsonObject(const QString &path, const QJsonObject &object, FileProblem *problem)
{
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Indented);
    const bool fits = fitsIntoFile(text);
    const bool isWritten = fits && replaceFileBytes(path, text);
    if (problem)
        *problem = problemOf(isWritten, fits);
    return isWritten;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/readfile.h"

#include "cli/console.h"
#include "cli/filenames.h"
#include "database/databasecompiler.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "spectrum/spectrumfile.h"

#include <QFile>
#include <QRegularExpression>

QByteArray whyUnreadable(const InputFile &input, FileProblem problem)
{
    switch (obstacleOf(input.path, problem)) {
    case FileObstacle::BrokenLink:
        return "a link that leads nowhere";
    case FileObstacle::Missing:
        return "no such file";
    case FileObstacle::Folder:
        return "a folder";
    case FileObstacle::Special:
        return "not a regular file";
    case FileObstacle::TooLarge:
        return "too large";
    case FileObstacle::Other:
        break;
    }
    QFile file(input.path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString().toUtf8().toLower();
    return "cannot be read";
}

bool nameBadFolders(const InputList &list, Console &console)
{
    for (const QByteArray &folder : list.unreadableFolders)
        console.error(shownName(folder) + ": the folder cannot be read");
    for (const QByteArray &folder : list.emptyFolders)
        console.error(shownName(folder) + ": there is no species file in it");
    return !list.unreadableFolders.isEmpty() || !list.emptyFolders.isEmpty();
}

std::optional<QJsonObject> readObject(const InputFile &input, Console &console)
{
    FileProblem problem = FileProblem::None;
    std::optional<QJsonObject> object = readJsonObject(input.path, &problem);
    if (!object)
        console.error(shownName(input.name) + ": " + whyUnreadable(input, problem));
    return object;
}

std::optional<QList<QJsonObject>> spectraOf(const QJsonObject &object)
{
    if (hasType(object, spectrumFileType))
        return QList{object};
    if (!hasType(object, speciesFileType))
        return std::nullopt;
    QList<QJsonObject> spectra;
    for (const QString &key : datasetKeys(object))
        spectra.append(object.value(key).toObject());
    return spectra;
}

bool isPassedOver(const InputFile &input, const QJsonObject &object, PassOver kinds)
{
    return !input.isNamed
           && (hasType(object, databaseFileType)
               || (kinds == PassOver::DatabasesAndSpectra && hasType(object, spectrumFileType)));
}

QString plainText(const QString &markup)
{
    static const QRegularExpression lineBreak(QStringLiteral("<br\\b[^>]*>|[\\r\\n\\t]"));
    static const QRegularExpression tag(QStringLiteral("</?(sub|sup)\\b[^>]*>"));
    QString text = markup;
    return text.replace(lineBreak, QStringLiteral(" ")).remove(tag).simplified();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/filecheck.h"

#include "check/databasecheck.h"
#include "check/memberreader.h"
#include "check/recordcheck.h"
#include "check/savecheck.h"
#include "database/databasecompiler.h"
#include "files/filebytes.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "spectrum/spectrumfile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <tuple>

namespace
{

QString reasonFor(FileObstacle obstacle)
{
    switch (obstacle) {
    case FileObstacle::BrokenLink:
        return QStringLiteral("it is a link that leads nowhere");
    case FileObstacle::Missing:
        return QStringLiteral("it does not exist");
    case FileObstacle::Folder:
        return QStringLiteral("it is a folder");
    case FileObstacle::Special:
        return QStringLiteral("it is no regular file");
    case FileObstacle::TooLarge:
        return QStringLiteral("it is larger than %1 MB").arg(largestJsonFile >> 20);
    case FileObstacle::Other:
        break;
    }
    return QStringLiteral("reading it failed");
}

void reportType(const JsonValue &root, FindingList &findings)
{
    const QString hint = QStringLiteral("It must be \"%1\", \"%2\" or \"%3\".")
                             .arg(speciesFileType, spectrumFileType, databaseFileType);
    const JsonValue type = root.member(typeKey);
    if (!root.isObject())
        findings.add(
            Check::WrongType, root,
            QStringLiteral("The file holds %1 instead of an object").arg(kindName(root.kind())));
    else if (!type)
        findings.add(Check::WrongType, root, QStringLiteral("The file has no \"Type\""), hint);
    else
        findings.add(Check::WrongType, type,
                     type.isString()
                         ? QStringLiteral("The file's \"Type\" is %1").arg(quoted(type.string()))
                         : QStringLiteral("The file's \"Type\" is %1").arg(kindName(type.kind())),
                     hint);
}

// Checks the text of a species or spectrum file and reports any other type. Returns its kind;
// checkDatabase() handles a database.
FileFacts::Kind checkDocument(const JsonText &text, QDate today, FindingList &findings,
                              std::vector<Fact> &facts)
{
    const JsonValue root = text.root();
    const JsonValue type = root.member(typeKey);
    const QString name = type && type.isString() ? type.string() : QString();
    if (name == databaseFileType)
        return FileFacts::Database;
    checkDuplicateKeys(root, findings);
    if (name == speciesFileType) {
        checkSpeciesObject(root, Envelope::File, today, findings, facts);
        checkNumbers(root, findings);
        checkSaving(text, findings);
        return FileFacts::Species;
    }
    if (name == spectrumFileType) {
        checkDataset(root, true, {}, today, findings, facts);
        checkNumbers(root, findings);
        checkSaving(text, findings);
        return FileFacts::Spectrum;
    }
    reportType(root, findings);
    return FileFacts::Other;
}

FileResult unreadableResult(const QString &name, const QString &reason,
                            const FileCheckOptions &options)
{
    const QByteArray none;
    FindingList findings(name, none, options.enabled);
    reportUnreadable(QStringLiteral("The file cannot be read: %1").arg(reason), {}, findings);
    return {findings.take(), {}};
}

// The result for a file that begins like a database and is one; nothing for others.
std::optional<FileResult> databaseResult(const QString &name, QIODevice &device,
                                         const FileCheckOptions &options)
{
    if (kindByFirstKeys(device) != FileKind::Database || !device.seek(0))
        return std::nullopt;
    return checkDatabase(name, device, options);
}

} // namespace

FileResult checkFile(const QString &name, const QString &path, const FileCheckOptions &options)
{
    if (QFile file(path); QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly)) {
        if (auto result = databaseResult(name, file, options))
            return *std::move(result);
    }
    FileProblem problem = FileProblem::None;
    if (const auto bytes = readJsonText(path, &problem))
        return checkBytes(name, *bytes, options);
    return unreadableResult(name, reasonFor(obstacleOf(path, problem)), options);
}

FileResult checkBytes(const QString &name, const QByteArray &bytes, const FileCheckOptions &options)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    if (auto result = databaseResult(name, device, options))
        return *std::move(result);
    FindingList findings(name, bytes, options.enabled);
    FileFacts facts;
    if (const auto text = parsedText(bytes, findings))
        facts.kind = checkDocument(*text, options.today, findings, facts.facts);
    device.seek(0);
    if (facts.kind == FileFacts::Database) {
        // The first keys are those of another type of file.
        if (auto result = checkDatabase(name, device, options))
            return *std::move(result);
    }
    FileResult result{findings.take(), std::move(facts)};
    sortByPlace(result.findings);
    return result;
}

void sortByPlace(QList<Finding> &findings)
{
    std::stable_sort(findings.begin(), findings.end(), [](const Finding &a, const Finding &b) {
        return std::tie(a.line, a.column) < std::tie(b.line, b.column);
    });
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/filecheck.h"

#include "check/databasecheck.h"
#include "check/profilecheck.h"
#include "check/recordcheck.h"
#include "check/savecheck.h"
#include "check/spectrumcheck.h"
#include "check/textcheck.h"
#include "check/utf8text.h"
#include "database/databasecompiler.h"
#include "species/filebytes.h"
#include "species/jsonfile.h"
#include "species/speciesfile.h"
#include "spectrum/spectrumfile.h"

#include <QFileInfo>

#include <algorithm>

namespace
{

// Why the file at path cannot be read.
QString unreadableReason(const QString &path, FileProblem problem)
{
    const QFileInfo file(path);
    if (file.isSymLink() && !file.exists())
        return QStringLiteral("it is a link that leads nowhere");
    if (!file.exists())
        return QStringLiteral("it does not exist");
    if (file.isDir())
        return QStringLiteral("it is a folder");
    if (!file.isFile())
        return QStringLiteral("it is no regular file");
    if (problem == FileProblem::TooLarge)
        return QStringLiteral("it is larger than %1 MB").arg(largestJsonFile >> 20);
    return QStringLiteral("reading it failed");
}

class FileChecker
{
public:
    FileChecker(const QString &path, const QByteArray &bytes, const FileCheckOptions &options)
        : m_bytes(bytes), m_options(options), m_findings(path, bytes, options.enabled)
    {
    }

    FileResult check()
    {
        checkText();
        FileResult result{m_findings.take(), std::move(m_facts)};
        std::stable_sort(
            result.findings.begin(), result.findings.end(), [](const Finding &a, const Finding &b) {
                return std::make_pair(a.line, a.column) < std::make_pair(b.line, b.column);
            });
        return result;
    }

private:
    void checkText()
    {
        if (const auto bad = firstInvalidUtf8(m_bytes)) {
            const auto byte = static_cast<unsigned char>(m_bytes[*bad]);
            m_findings.addAtByte(Check::NotUtf8, *bad,
                                 QStringLiteral("The byte 0x%1 is not UTF-8")
                                     .arg(QString::number(byte, 16).toUpper()),
                                 QStringLiteral("Convert the file to UTF-8."));
            return;
        }
        const JsonText text(m_bytes);
        if (const auto &error = text.error()) {
            const bool isRange = error->kind == JsonError::NumberTooLarge;
            QString message = error->message;
            if (message.endsWith(QLatin1Char('.')))
                message.chop(1);
            m_findings.addAtByte(isRange ? Check::NumberRange : Check::JsonSyntax, error->offset,
                                 isRange
                                     ? QStringLiteral("A number that is too large for a double; "
                                                      "the editor cannot read the file")
                                     : message);
            return;
        }
        checkDocument(text);
    }

    void checkDocument(const JsonText &text)
    {
        const JsonValue root = text.root();
        checkDuplicateKeys(root, m_findings);
        const JsonValue type = root.member(typeKey);
        const QString name = type && type.isString() ? type.string() : QString();
        if (name == speciesFileType) {
            checkSpeciesFile(root);
            checkSaving(text, true, m_findings);
        } else if (name == spectrumFileType) {
            m_facts.kind = FileFacts::Spectrum;
            checkDataset(root, true, {});
            checkSaving(text, false, m_findings);
        } else if (name == databaseFileType) {
            m_facts.kind = FileFacts::Database;
            checkDatabaseFile(root, m_findings);
        } else {
            reportType(root, type, name);
        }
    }

    void reportType(const JsonValue &root, const JsonValue &type, const QString &name)
    {
        const QString hint = QStringLiteral("It must be \"%1\", \"%2\" or \"%3\".")
                                 .arg(speciesFileType, spectrumFileType, databaseFileType);
        if (!root.isObject())
            m_findings.add(Check::WrongType, root,
                           QStringLiteral("The file holds %1 instead of an object")
                               .arg(kindName(root.kind())));
        else if (!type)
            m_findings.add(Check::WrongType, root, QStringLiteral("The file has no \"Type\""),
                           hint);
        else
            m_findings.add(
                Check::WrongType, type,
                type.isString()
                    ? QStringLiteral("The file's \"Type\" is %1").arg(quoted(name))
                    : QStringLiteral("The file's \"Type\" is %1").arg(kindName(type.kind())),
                hint);
    }

    void checkSpeciesFile(const JsonValue &root)
    {
        m_facts.kind = FileFacts::Species;
        static constexpr std::array known{KnownKey{typeKey, JsonKind::String},
                                          KnownKey{speciesKey, JsonKind::Object},
                                          KnownKey{QLatin1String("Dataset1"), JsonKind::Object}};
        const JsonValue species = root.member(speciesKey);
        ProfileEnergies energies;
        if (species && checkKind(species, JsonKind::Object, m_findings)) {
            energies = checkProfile(species, m_findings);
            noteIdentities(species);
        }
        for (JsonValue member = root.firstChild(); member; member = member.nextSibling()) {
            const QString key = member.key();
            if (isDatasetKey(key)) {
                if (checkKind(member, JsonKind::Object, m_findings))
                    checkDataset(member, false, energies);
            } else if (key != typeKey && key != speciesKey) {
                const QString meant = similarKey(key, known);
                m_findings.addAtKey(
                    Check::UnknownKey, member,
                    QStringLiteral("The editor does not know the key %1 and drops it")
                        .arg(quoted(key)),
                    meantHint(meant));
            }
        }
    }

    void checkDataset(const JsonValue &spectrum, bool isFile, const ProfileEnergies &energies)
    {
        const SpectrumFacts facts =
            checkSpectrum(spectrum, isFile, energies, m_options.today, m_findings);
        if (facts.fingerprint)
            m_facts.points.push_back({*facts.fingerprint, m_findings.placeOf(spectrum)});
    }

    void noteIdentities(const JsonValue &species)
    {
        struct Source {
            Check check;
            QLatin1String key;
        };
        static constexpr std::array sources{
            Source{Check::SameCas, QLatin1String("CAS")},
            Source{Check::SameInchi, QLatin1String("InChI")},
            Source{Check::SameCid, QLatin1String("PubChem")},
            Source{Check::SameName, QLatin1String("Name")},
        };
        for (const Source &source : sources) {
            const JsonValue value = species.member(source.key);
            const QString text = plainText(value);
            if (text.isEmpty())
                continue;
            const QString identity =
                source.check == Check::SameName ? text.simplified().toCaseFolded() : text;
            m_facts.identities.push_back({source.check, identity, text, m_findings.placeOf(value)});
        }
    }

    const QByteArray &m_bytes;
    const FileCheckOptions &m_options;
    FindingList m_findings;
    FileFacts m_facts;
};

} // namespace

FileResult checkFile(const QString &name, const QString &path, const FileCheckOptions &options)
{
    FileProblem problem = FileProblem::None;
    if (const auto bytes = readJsonText(path, &problem))
        return checkBytes(name, *bytes, options);
    const QByteArray none;
    FindingList findings(name, none, options.enabled);
    findings.addForFile(
        Check::Unreadable,
        QStringLiteral("The file cannot be read: %1").arg(unreadableReason(path, problem)));
    return {findings.take(), {}};
}

FileResult checkBytes(const QString &name, const QByteArray &bytes, const FileCheckOptions &options)
{
    return FileChecker(name, bytes, options).check();
}

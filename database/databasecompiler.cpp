// SPDX-License-Identifier: GPL-3.0-or-later
#include "database/databasecompiler.h"

#include "files/jsonfile.h"
#include "files/replacementfile.h"
#include "species/speciesfile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <numeric>
#include <utility>
#include <variant>
#include <vector>

namespace
{

QString entryKey(int index)
{
    return QStringLiteral("Entry%1").arg(index + 1);
}

// The indices 0 to count - 1 in the order in which an object sorts their keys: 1, 10, 100, 2, ...
std::vector<int> keyOrder(qsizetype count)
{
    std::vector<int> order(count);
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(),
              [](int left, int right) { return entryKey(left) < entryKey(right); });
    return order;
}

// The text of an object member by member, in the bytes that Qt writes for the whole.
class MemberText
{
public:
    explicit MemberText(QJsonDocument::JsonFormat format)
        : m_indented(format == QJsonDocument::Indented)
    {
    }

    QByteArray next(const QString &key, const QJsonValue &value)
    {
        const QByteArray separator = m_first ? QByteArray("{") : QByteArray(",");
        m_first = false;
        // An object of this one member, less its braces, is the member as it stands in the whole.
        const QJsonDocument member(QJsonObject{{key, value}});
        QByteArray text =
            member.toJson(m_indented ? QJsonDocument::Indented : QJsonDocument::Compact);
        text.chop(m_indented ? sizeof "\n}\n" - 1 : sizeof "}" - 1);
        text.replace(0, 1, separator);
        return text;
    }

    QByteArray end() const { return m_indented ? "\n}\n" : "}"; }

private:
    bool m_indented;
    bool m_first = true;
};

QJsonObject headerObject(const DatabaseHeader &header)
{
    return {{QStringLiteral("Version"), header.version},
            {QStringLiteral("Database"), header.database},
            {QStringLiteral("Title"), header.title},
            {QStringLiteral("Date"), header.date.toString(Qt::ISODate)}};
}

// Reads each species file once, in the order of the entries' keys, and gives take the text of its
// entry until that returns false or a file is bad. What is left then is read all the same, as far
// as it stands before the bad file in the list: of several, the first in the list is the one that
// is returned. Nothing if every file is good.
std::optional<CompileError> takeEntries(const QStringList &files, MemberText &text,
                                        const CompileProgress &progress,
                                        const std::function<bool(const QByteArray &)> &take)
{
    std::optional<CompileError> bad;
    qsizetype firstBad = files.size();
    bool isTaking = true;
    int done = 0;
    for (const int index : keyOrder(files.size())) {
        const int before = done++;
        if (index > firstBad)
            continue;
        if (progress && !progress(before, index))
            return CompileError{CompileError::Cancelled};
        const auto entry = readEntry(files[index]);
        if (const auto *error = std::get_if<CompileError>(&entry)) {
            bad = *error;
            firstBad = index;
        } else if (isTaking && !bad) {
            const QByteArray member = text.next(entryKey(index), std::get<QJsonObject>(entry));
            if (!fitsIntoFile(member)) {
                bad = CompileError{CompileError::UnreadableInput, files[index], true};
                firstBad = index;
            } else {
                isTaking = take(member);
            }
        }
    }
    return bad;
}

// The present contents of a database file, read in step with the text that it should have.
class PresentDatabase
{
public:
    explicit PresentDatabase(const QString &path) : m_file(path) {}

    bool open() { return QFileInfo(m_file).isFile() && m_file.open(QIODevice::ReadOnly); }
    bool hasFailed() const { return m_file.error() != QFileDevice::NoError; }

    bool continuesWith(const QByteArray &text) { return m_file.read(text.size()) == text; }

    // The same, but with any day in place of the one in the header's text.
    bool continuesWithHeader(const QByteArray &text)
    {
        constexpr qsizetype dateLength = sizeof "yyyy-MM-dd" - 1;
        // A quotation mark within a value has a backslash before it.
        const qsizetype key = text.indexOf("\"Date\":");
        const qsizetype date = text.indexOf('"', key + qsizetype(sizeof "\"Date\":") - 1) + 1;
        QByteArray present = m_file.read(text.size());
        const QByteArray day = present.mid(date, dateLength);
        if (!QDate::fromString(QString::fromUtf8(day), Qt::ISODate).isValid())
            return false;
        return present.replace(date, dateLength, text.mid(date, dateLength)) == text;
    }

    bool isAtEnd() { return m_file.read(1).isEmpty(); }

private:
    QFile m_file;
};

} // namespace

bool isEntryKey(const QString &key)
{
    static const QRegularExpression form(QStringLiteral("^Entry[1-9][0-9]*\\z"));
    return form.match(key).hasMatch();
}

std::variant<QJsonObject, CompileError> readEntry(const QString &file)
{
    FileProblem problem = FileProblem::None;
    std::optional<QJsonObject> object = readJsonObject(file, &problem);
    if (!object)
        return CompileError{CompileError::UnreadableInput, file, problem == FileProblem::TooLarge};
    if (!hasType(*object, speciesFileType))
        return CompileError{CompileError::InvalidInput, file};
    object->remove(typeKey);
    return *std::move(object);
}

QByteArray entryDigest(const QJsonObject &entry)
{
    return QCryptographicHash::hash(QJsonDocument(entry).toJson(QJsonDocument::Compact),
                                    QCryptographicHash::Sha256);
}

std::optional<CompileError> compileDatabase(const QStringList &files, const QString &output,
                                            const DatabaseHeader &header,
                                            QJsonDocument::JsonFormat format,
                                            const CompileProgress &progress)
{
    ReplacementFile file(output);
    // A bad species file counts before an output that cannot be written: all are read in any case.
    bool isWritable = file.open();
    MemberText text(format);
    const auto write = [&](const QByteArray &member) {
        return isWritable = isWritable && file.write(member);
    };
    if (auto error = takeEntries(files, text, progress, write))
        return error;
    write(text.next(headerKey, headerObject(header)));
    write(text.next(typeKey, databaseFileType));
    write(text.end());
    if (!isWritable || !file.commit())
        return CompileError{CompileError::UnwritableOutput};
    return std::nullopt;
}

std::variant<bool, CompileError>
isDatabaseUpToDate(const QStringList &files, const QString &database, const DatabaseHeader &header,
                   QJsonDocument::JsonFormat format, const CompileProgress &progress)
{
    PresentDatabase present(database);
    const bool isOpen = present.open();
    MemberText text(format);
    bool same = isOpen;
    const auto compare = [&](const QByteArray &member) {
        return same = same && present.continuesWith(member);
    };
    if (auto error = takeEntries(files, text, progress, compare))
        return *error;
    same = same && present.continuesWithHeader(text.next(headerKey, headerObject(header)))
           && present.continuesWith(text.next(typeKey, databaseFileType))
           && present.continuesWith(text.end()) && present.isAtEnd();
    if (isOpen ? present.hasFailed() : QFileInfo::exists(database))
        return CompileError{CompileError::UnreadableOutput};
    return same;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "database/databasecompiler.h"

#include "species/jsonfile.h"
#include "species/replacementfile.h"
#include "species/speciesfile.h"

#include <QJsonObject>

#include <algorithm>
#include <numeric>
#include <utility>
#include <variant>
#include <vector>

namespace
{

constexpr QLatin1String databaseFileType("Database v1");

// The species file's object as an entry, or what is wrong with the file.
std::variant<QJsonObject, CompileError> readEntry(const QString &file)
{
    std::optional<QJsonObject> object = readJsonObject(file);
    if (!object)
        return CompileError{CompileError::UnreadableInput, file};
    if (!hasType(*object, speciesFileType))
        return CompileError{CompileError::InvalidInput, file};
    object->remove(typeKey);
    return *std::move(object);
}

std::optional<CompileError> firstBadInput(const QStringList &files)
{
    for (const QString &file : files) {
        const auto entry = readEntry(file);
        if (const auto *error = std::get_if<CompileError>(&entry))
            return *error;
    }
    return std::nullopt;
}

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

// Writes an object member by member, in the bytes that the toolkit writes for the whole.
class MemberWriter
{
public:
    MemberWriter(ReplacementFile &file, QJsonDocument::JsonFormat format)
        : m_file(file), m_indented(format == QJsonDocument::Indented)
    {
    }

    bool write(const QString &key, const QJsonValue &value)
    {
        const QByteArray separator = m_first ? QByteArray("{") : QByteArray(",");
        m_first = false;
        // An object of this one member, less its braces, is the member as it stands in the whole.
        const QJsonDocument member(QJsonObject{{key, value}});
        QByteArray text =
            member.toJson(m_indented ? QJsonDocument::Indented : QJsonDocument::Compact);
        text.chop(m_indented ? sizeof "\n}\n" - 1 : sizeof "}" - 1);
        text.replace(0, 1, separator);
        return m_file.write(text);
    }

    bool finish() { return m_file.write(m_indented ? "\n}\n" : "}"); }

private:
    ReplacementFile &m_file;
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

} // namespace

std::optional<CompileError> compileDatabase(const QStringList &files, const QString &output,
                                            const DatabaseHeader &header,
                                            QJsonDocument::JsonFormat format,
                                            const CompileProgress &progress)
{
    // A bad species file counts before an output that cannot be written.
    const auto unwritable = [&]() -> CompileError {
        return firstBadInput(files).value_or(CompileError{CompileError::UnwritableOutput});
    };

    ReplacementFile file(output);
    if (!file.open())
        return unwritable();
    MemberWriter writer(file, format);
    int done = 0;
    for (const int index : keyOrder(files.size())) {
        if (progress && !progress(done++, index))
            return CompileError{CompileError::Cancelled};
        const auto entry = readEntry(files[index]);
        // Entries are written in the order of their keys, but the first bad file of the list is
        // named.
        if (const auto *error = std::get_if<CompileError>(&entry))
            return firstBadInput(files.first(index)).value_or(*error);
        if (!writer.write(entryKey(index), std::get<QJsonObject>(entry)))
            return unwritable();
    }
    writer.write(QStringLiteral("Header"), headerObject(header));
    writer.write(typeKey, databaseFileType);
    writer.finish();
    if (!file.commit())
        return unwritable();
    return std::nullopt;
}

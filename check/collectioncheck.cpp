// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/collectioncheck.h"

#include "check/databasecheck.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

namespace
{

QString placeText(const QString &name, const Place &place)
{
    return name + QLatin1Char(':') + QString::number(place.line) + QLatin1Char(':')
           + QString::number(place.column);
}

QLatin1String whatIsSame(Check check)
{
    switch (check) {
    case Check::SameCas:
        return QLatin1String("CAS number");
    case Check::SameInchi:
        return QLatin1String("InChI");
    case Check::SameCid:
        return QLatin1String("PubChem number");
    default:
        return QLatin1String("Name");
    }
}

class CollectionChecker
{
public:
    CollectionChecker(const std::vector<CheckInput> &inputs, const FileCheckOptions &options,
                      std::vector<FileResult> &results)
        : m_inputs(inputs), m_options(options), m_results(results)
    {
    }

    void check()
    {
        for (std::size_t i = 0; i < m_results.size(); ++i) {
            checkIdentities(i);
            checkPoints(i);
        }
        checkDatabases();
        for (FileResult &result : m_results)
            std::stable_sort(result.findings.begin(), result.findings.end(),
                             [](const Finding &a, const Finding &b) {
                                 return std::make_pair(a.line, a.column)
                                        < std::make_pair(b.line, b.column);
                             });
    }

private:
    struct Seen {
        std::size_t file;
        Place place;
    };

    void add(std::size_t file, Check check, const Place &place, const QString &message,
             const QString &hint = {})
    {
        if (m_options.enabled.test(static_cast<std::size_t>(check)))
            m_results[file].findings.append({.check = check,
                                             .severity = infoOf(check).severity,
                                             .path = m_inputs[file].name,
                                             .pointer = place.pointer,
                                             .line = place.line,
                                             .column = place.column,
                                             .message = message,
                                             .hint = hint,
                                             .source = {}});
    }

    void checkIdentities(std::size_t file)
    {
        for (const IdentityFact &fact : m_results[file].facts.identities) {
            const auto [seen, isNew] =
                m_identities.try_emplace({fact.check, fact.identity}, Seen{file, fact.place});
            if (!isNew)
                add(file, fact.check, fact.place,
                    QStringLiteral("%1 %2 stands in %3, too")
                        .arg(whatIsSame(fact.check), fact.shown,
                             placeText(m_inputs[seen->second.file].name, seen->second.place)),
                    QStringLiteral("Join the files, or correct the one that is wrong."));
        }
    }

    void checkPoints(std::size_t file)
    {
        for (const PointsFact &fact : m_results[file].facts.points) {
            const auto [seen, isNew] =
                m_points.try_emplace(fact.fingerprint, Seen{file, fact.place});
            if (isNew)
                continue;
            const Place &other = seen->second.place;
            const QString dataset = other.pointer.isEmpty()
                                        ? QString()
                                        : QStringLiteral(" (%1)").arg(other.pointer.sliced(1));
            add(file, Check::SamePoints, fact.place,
                QStringLiteral("The same points stand at %1%2")
                    .arg(placeText(m_inputs[seen->second.file].name, other), dataset),
                QStringLiteral("Delete one of the two."));
        }
    }

    void checkDatabases()
    {
        QList<SpeciesSource> species;
        for (std::size_t i = 0; i < m_results.size(); ++i) {
            if (m_results[i].facts.kind == FileFacts::Species && !m_inputs[i].bytes)
                species.append({m_inputs[i].name, m_inputs[i].path});
        }
        if (species.isEmpty() || !m_options.enabled.test(std::size_t(Check::DatabaseStale)))
            return;
        for (std::size_t i = 0; i < m_results.size(); ++i) {
            if (m_results[i].facts.kind != FileFacts::Database || m_inputs[i].bytes)
                continue;
            if (const auto difference = databaseDifference(m_inputs[i].path, species))
                add(i, Check::DatabaseStale, {},
                    QStringLiteral("The database is out of date: %1").arg(*difference),
                    QStringLiteral("Compile it anew."));
        }
    }

    const std::vector<CheckInput> &m_inputs;
    const FileCheckOptions &m_options;
    std::vector<FileResult> &m_results;
    std::map<std::pair<Check, QString>, Seen> m_identities;
    std::map<std::array<std::uint64_t, 2>, Seen> m_points;
};

} // namespace

void checkCollection(const std::vector<CheckInput> &inputs, const FileCheckOptions &options,
                     std::vector<FileResult> &results)
{
    CollectionChecker(inputs, options, results).check();
}

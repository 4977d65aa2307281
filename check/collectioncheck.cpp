// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/collectioncheck.h"

#include "check/comparison.h"
#include "check/databasecheck.h"

#include <QStringList>

#include <cstddef>

namespace
{

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
        QStringList names;
        for (const CheckInput &input : m_inputs)
            names.append(input.name);
        Comparison comparison(m_options.enabled, names);
        for (std::size_t i = 0; i < m_results.size(); ++i)
            m_results[i].findings.append(
                comparison.add(static_cast<quint32>(i), m_results[i].facts.facts));
        checkDatabases();
        for (FileResult &result : m_results)
            sortByPlace(result.findings);
    }

private:
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
                m_results[i].findings.append(
                    {.check = Check::DatabaseStale,
                     .severity = infoOf(Check::DatabaseStale).severity,
                     .path = m_inputs[i].name,
                     .pointer = {},
                     .message = QStringLiteral("The database is out of date: %1").arg(*difference),
                     .hint = QStringLiteral("Compile it anew."),
                     .source = {}});
        }
    }

    const std::vector<CheckInput> &m_inputs;
    const FileCheckOptions &m_options;
    std::vector<FileResult> &m_results;
};

} // namespace

void checkCollection(const std::vector<CheckInput> &inputs, const FileCheckOptions &options,
                     std::vector<FileResult> &results)
{
    CollectionChecker(inputs, options, results).check();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/comparison.h"

#include <cstddef>
#include <utility>

namespace
{

QString placeText(const QString &name, const TextPosition &place)
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

} // namespace

Comparison::Comparison(const CheckSet &enabled, QStringList names)
    : m_enabled(enabled), m_names(std::move(names))
{
}

QList<Finding> Comparison::add(quint32 file, const std::vector<Fact> &facts)
{
    QList<Finding> findings;
    for (const Fact &fact : facts) {
        if (!m_enabled.test(static_cast<std::size_t>(fact.check)))
            continue;
        const Key key{static_cast<quint8>(fact.check), {fact.fingerprint[0], fact.fingerprint[1]}};
        const auto seen = m_seen.constFind(key);
        if (seen != m_seen.cend()) {
            findings.append(findingOf(file, fact, *seen));
            continue;
        }
        m_seen.insert(key, {file,
                            {fact.place.line, fact.place.column},
                            fact.shown.isEmpty() ? fact.place.pointer.mid(1) : QString()});
    }
    return findings;
}

Finding Comparison::findingOf(quint32 file, const Fact &fact, const Seen &seen) const
{
    const QString other = placeText(m_names[seen.file], seen.position);
    const QString dataset =
        seen.dataset.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(seen.dataset);
    const bool isPoints = fact.check == Check::SamePoints;
    return {.check = fact.check,
            .severity = infoOf(fact.check).severity,
            .path = m_names[file],
            .pointer = fact.place.pointer,
            .line = fact.place.line,
            .column = fact.place.column,
            .message = isPoints
                           ? QStringLiteral("The same points stand at %1%2").arg(other, dataset)
                           : QStringLiteral("%1 %2 stands in %3, too")
                                 .arg(whatIsSame(fact.check), fact.shown, other),
            .hint = isPoints ? QStringLiteral("Delete one of the two.")
                             : QStringLiteral("Join the files, or correct the one that is wrong."),
            .source = {}};
}

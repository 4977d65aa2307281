// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/spectrumpairs.h"

#include "cli/readfile.h"
#include "files/jsonfile.h"
#include "spectrum/spectrumobject.h"

#include <QHash>
#include <QPointF>

#include <algorithm>
#include <optional>
#include <tuple>
#include <vector>

namespace
{

using Points = std::vector<std::pair<double, double>>; // energies and intensities, sorted

struct Candidate {
    qsizetype before;
    qsizetype after;
    qsizetype commonPoints;
    bool hasSameKey;
};

// Indices of spectra that may belong together, in the order of their files.
struct Group {
    QList<qsizetype> before;
    QList<qsizetype> after;
};

Points sortedPoints(const QJsonObject &spectrum)
{
    Points points;
    for (const QPointF &point : storedPoints(spectrum))
        points.emplace_back(point.x(), point.y());
    std::sort(points.begin(), points.end());
    return points;
}

qsizetype commonPoints(const Points &left, const Points &right)
{
    qsizetype count = 0;
    for (auto l = left.begin(), r = right.begin(); l != left.end() && r != right.end();) {
        if (*l < *r) {
            ++l;
        } else if (*r < *l) {
            ++r;
        } else {
            ++count;
            ++l;
            ++r;
        }
    }
    return count;
}

class Pairing
{
public:
    Pairing(const QList<KeyedSpectrum> &before, const QList<KeyedSpectrum> &after)
        : m_before(before),
          m_after(after),
          m_partners(static_cast<std::size_t>(before.size())),
          m_taken(static_cast<std::size_t>(after.size()))
    {
    }

    // Pairs each spectrum with its first match of the same identity.
    template <typename Identity, typename Match>
    void pairFirst(Identity &&identity, Match &&match)
    {
        for (Group &group : groupsBy(identity)) {
            for (const qsizetype i : std::as_const(group.before)) {
                const auto j = std::find_if(
                    group.after.cbegin(), group.after.cend(),
                    [&](qsizetype candidate) { return match(m_before[i], m_after[candidate]); });
                if (j == group.after.cend())
                    continue;
                pair(i, *j);
                group.after.erase(j);
            }
        }
    }

    // Pairs the spectra of the same identity, most similar first.
    template <typename Identity>
    void pairMostAlike(Identity &&identity)
    {
        const QList<Group> groups = groupsBy(identity);
        if (!areSoonCompared(groups)) {
            const auto any = [](const KeyedSpectrum &, const KeyedSpectrum &) { return true; };
            const auto withKey = [&](const KeyedSpectrum &each) -> QByteArray {
                return identity(each) + '\0' + each.key;
            };
            pairFirst(withKey, any);
            pairFirst(identity, any);
            return;
        }
        for (const Group &group : groups)
            pairMostAlike(group);
    }

    [[nodiscard]] SpectrumPairs result() const
    {
        SpectrumPairs result;
        for (qsizetype i = 0; i < m_before.size(); ++i) {
            if (const std::optional<qsizetype> j = partner(i))
                result.pairs.append({m_before[i], m_after[*j]});
            else
                result.removed.append(m_before[i]);
        }
        for (qsizetype j = 0; j < m_after.size(); ++j) {
            if (!isTaken(j))
                result.added.append(m_after[j]);
        }
        return result;
    }

private:
    [[nodiscard]] std::optional<qsizetype> partner(qsizetype before) const
    {
        return m_partners[static_cast<std::size_t>(before)];
    }
    [[nodiscard]] bool isTaken(qsizetype after) const
    {
        return m_taken[static_cast<std::size_t>(after)];
    }

    // Those that are still free.
    template <typename Identity>
    [[nodiscard]] QList<Group> groupsBy(Identity &&identity) const
    {
        QHash<QByteArray, Group> groups;
        for (qsizetype i = 0; i < m_before.size(); ++i) {
            if (!partner(i))
                groups[identity(m_before[i])].before.append(i);
        }
        for (qsizetype j = 0; j < m_after.size(); ++j) {
            if (!isTaken(j))
                groups[identity(m_after[j])].after.append(j);
        }
        groups.removeIf([](const QHash<QByteArray, Group>::iterator &each) {
            return each->before.isEmpty() || each->after.isEmpty();
        });
        return groups.values();
    }

    void pair(qsizetype before, qsizetype after)
    {
        m_partners[static_cast<std::size_t>(before)] = after;
        m_taken[static_cast<std::size_t>(after)] = true;
    }

    // Comparing hundreds of long spectra, or thousands of short ones, with each other would take
    // minutes: then it is the keys that tell.
    [[nodiscard]] bool areSoonCompared(const QList<Group> &groups) const
    {
        constexpr qsizetype mostCandidates = 1'000'000;
        constexpr qsizetype mostComparisons = 100'000'000;
        qsizetype candidates = 0;
        qsizetype comparisons = 0;
        for (const Group &group : groups) {
            candidates += group.before.size() * group.after.size();
            for (const qsizetype i : group.before)
                comparisons += storedPoints(m_before[i].object).size() * group.after.size();
            for (const qsizetype j : group.after)
                comparisons += storedPoints(m_after[j].object).size() * group.before.size();
        }
        return candidates <= mostCandidates && comparisons <= mostComparisons;
    }

    void pairMostAlike(const Group &group)
    {
        std::vector<Points> after;
        for (const qsizetype j : group.after)
            after.push_back(sortedPoints(m_after[j].object));
        std::vector<Candidate> candidates;
        for (const qsizetype i : group.before) {
            const Points before = sortedPoints(m_before[i].object);
            auto points = after.cbegin();
            for (const qsizetype j : group.after)
                candidates.push_back(
                    {i, j, commonPoints(before, *points++), m_before[i].key == m_after[j].key});
        }
        std::stable_sort(candidates.begin(), candidates.end(),
                         [](const Candidate &left, const Candidate &right) {
                             return std::tie(left.commonPoints, left.hasSameKey)
                                    > std::tie(right.commonPoints, right.hasSameKey);
                         });
        for (const Candidate &candidate : candidates) {
            if (!partner(candidate.before) && !isTaken(candidate.after))
                pair(candidate.before, candidate.after);
        }
    }

    const QList<KeyedSpectrum> &m_before;
    const QList<KeyedSpectrum> &m_after;
    std::vector<std::optional<qsizetype>> m_partners; // of those before: indices in m_after
    std::vector<bool> m_taken;                        // of those after
};

} // namespace

KeyedSpectrum::KeyedSpectrum(const QByteArray &keyInFile, const QJsonObject &spectrum)
    : key(keyInFile),
      object(spectrum),
      title(plainText(spectrum.value(keyOf(SpectrumColumn::Title)).toString()).toUtf8())
{
}

SpectrumPairs pairedSpectra(const QList<KeyedSpectrum> &before, const QList<KeyedSpectrum> &after)
{
    const auto isEqual = [](const KeyedSpectrum &left, const KeyedSpectrum &right) {
        return left.object == right.object;
    };
    Pairing pairing(before, after);
    pairing.pairFirst([](const KeyedSpectrum &each) { return each.key; }, isEqual);
    pairing.pairFirst(
        [](const KeyedSpectrum &each) { return QByteArray::number(qHash(each.object)); }, isEqual);
    pairing.pairMostAlike([](const KeyedSpectrum &each) -> QByteArray {
        return each.title + '\0' + jsonOnOneLine(each.object.value(spectrumTypeKey));
    });
    pairing.pairMostAlike([](const KeyedSpectrum &) { return QByteArray(); });
    return pairing.result();
}

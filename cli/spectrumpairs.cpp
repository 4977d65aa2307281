// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/spectrumpairs.h"

#include "cli/readfile.h"
#include "spectrum/spectrumobject.h"

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

    // Pairs each spectrum with its first match.
    template <typename Match>
    void pairFirst(Match &&match)
    {
        for (const qsizetype i : freeBefore()) {
            for (qsizetype j = 0; j < m_after.size(); ++j) {
                if (!isTaken(j) && match(m_before[i], m_after[j])) {
                    pair(i, j);
                    break;
                }
            }
        }
    }

    // Pairs the matches, most similar first.
    template <typename Match>
    void pairMostAlike(Match &&match)
    {
        std::vector<Candidate> candidates;
        for (const qsizetype i : freeBefore()) {
            for (qsizetype j = 0; j < m_after.size(); ++j) {
                if (!isTaken(j) && match(m_before[i], m_after[j]))
                    candidates.push_back({i, j, 0, m_before[i].key == m_after[j].key});
            }
        }
        countCommonPoints(candidates);
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

    [[nodiscard]] QList<qsizetype> freeBefore() const
    {
        QList<qsizetype> free;
        for (qsizetype i = 0; i < m_before.size(); ++i) {
            if (!partner(i))
                free.append(i);
        }
        return free;
    }

    void pair(qsizetype before, qsizetype after)
    {
        m_partners[static_cast<std::size_t>(before)] = after;
        m_taken[static_cast<std::size_t>(after)] = true;
    }

    // Comparing hundreds of long spectra would take minutes, so their keys decide then.
    void countCommonPoints(std::vector<Candidate> &candidates) const
    {
        constexpr std::size_t mostComparisons = 100'000'000;
        std::vector<Points> before(m_partners.size());
        std::vector<Points> after(m_taken.size());
        for (const Candidate &candidate : candidates) {
            load(before[static_cast<std::size_t>(candidate.before)], m_before[candidate.before]);
            load(after[static_cast<std::size_t>(candidate.after)], m_after[candidate.after]);
        }
        std::size_t comparisons = 0;
        for (const Candidate &candidate : candidates)
            comparisons += before[static_cast<std::size_t>(candidate.before)].size()
                           + after[static_cast<std::size_t>(candidate.after)].size();
        if (comparisons > mostComparisons)
            return;
        for (Candidate &candidate : candidates)
            candidate.commonPoints =
                commonPoints(before[static_cast<std::size_t>(candidate.before)],
                             after[static_cast<std::size_t>(candidate.after)]);
    }

    static void load(Points &points, const KeyedSpectrum &spectrum)
    {
        if (points.empty())
            points = sortedPoints(spectrum.object);
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
    Pairing pairing(before, after);
    pairing.pairFirst([](const KeyedSpectrum &l, const KeyedSpectrum &r) {
        return l.key == r.key && l.object == r.object;
    });
    pairing.pairFirst(
        [](const KeyedSpectrum &l, const KeyedSpectrum &r) { return l.object == r.object; });
    pairing.pairMostAlike([](const KeyedSpectrum &l, const KeyedSpectrum &r) {
        return l.title == r.title
               && l.object.value(spectrumTypeKey) == r.object.value(spectrumTypeKey);
    });
    pairing.pairMostAlike([](const KeyedSpectrum &, const KeyedSpectrum &) { return true; });
    return pairing.result();
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/numbertext.h"
#include "check/pointscheck.h"
#include "check/recordcheck.h"
#include "spectrum/points.h"
#include "spectrum/spectrumobject.h"

#include <QLocale>

#include <cstddef>

namespace
{

// Counts the faulty numbers of one list and remembers the first.
struct Tally {
    qsizetype count = 0;
    JsonValue first;
    void add(const JsonValue &value)
    {
        if (count++ == 0)
            first = value;
    }
    // Returns " (and 3 more)", or nothing.
    [[nodiscard]] QString others() const
    {
        return count > 1 ? QStringLiteral(" (and %1 more)").arg(count - 1) : QString();
    }
};

class NumberReader
{
public:
    // The number that the editor reads; 0 for anything else.
    double read(const JsonValue &value)
    {
        if (!value || !value.isNumber()) {
            if (value)
                m_mistyped.add(value);
            return 0;
        }
        const QByteArrayView raw = value.raw();
        const std::optional<double> number = valueOf(raw);
        if (!number)
            m_outOfRange.add(value);
        else if (raw.size() > keptDigits && losesDigits(raw, *number))
            m_rounded.add(value);
        return number.value_or(0);
    }

    void report(FindingList &findings) const
    {
        if (m_mistyped.count > 0)
            findings.add(Check::ValueType, m_mistyped.first,
                         QStringLiteral("Here stands %1 where the editor reads a number, and is "
                                        "taken for 0%2")
                             .arg(kindName(m_mistyped.first.kind()), m_mistyped.others()));
        if (m_outOfRange.count > 0)
            findings.add(
                Check::NumberRange, m_outOfRange.first,
                QStringLiteral("%1 cannot be held by a double, and the editor cannot read "
                               "the file%2")
                    .arg(QString::fromLatin1(m_outOfRange.first.raw()), m_outOfRange.others()));
        if (m_rounded.count > 0) {
            const QByteArrayView raw = m_rounded.first.raw();
            findings.add(Check::DigitsLost, m_rounded.first,
                         QStringLiteral("%1 is loaded as %2%3")
                             .arg(QString::fromLatin1(raw),
                                  QString::number(loadedNumber(valueOf(raw).value_or(0)), 'g',
                                                  QLocale::FloatingPointShortest),
                                  m_rounded.others()),
                         QStringLiteral("The editor keeps six significant digits."));
        }
    }

    [[nodiscard]] bool isFinite() const { return m_outOfRange.count == 0; }
    [[nodiscard]] bool isRounded() const { return m_rounded.count > 0; }

private:
    Tally m_mistyped;
    Tally m_outOfRange;
    Tally m_rounded;
};

// The elements of a list; anything else has none.
std::vector<double> readList(const JsonValue &list, NumberReader &reader)
{
    std::vector<double> numbers;
    if (!list || !list.isArray())
        return numbers;
    numbers.reserve(static_cast<std::size_t>(list.count()));
    for (JsonValue element = list.firstChild(); element; element = element.nextSibling())
        numbers.push_back(reader.read(element));
    return numbers;
}

PointArrays readObjects(const JsonValue &list, FindingList &findings)
{
    PointArrays points;
    points.energies = list;
    points.intensitiesList = list;
    NumberReader energies;
    NumberReader intensities;
    Tally mistyped;
    Tally incomplete;
    if (!list.isArray())
        return points;
    for (JsonValue element = list.firstChild(); element; element = element.nextSibling()) {
        if (!element.isObject())
            mistyped.add(element);
        else if (!element.member(energiesKey) || !element.member(intensitiesKey))
            incomplete.add(element);
        points.energiesEv.push_back(energies.read(element.member(energiesKey)));
        points.intensities.push_back(intensities.read(element.member(intensitiesKey)));
    }
    if (mistyped.count > 0)
        findings.add(Check::ValueType, mistyped.first,
                     QStringLiteral("Here stands %1 where the editor reads a point, and is taken "
                                    "for 0; 0%2")
                         .arg(kindName(mistyped.first.kind()), mistyped.others()));
    if (incomplete.count > 0)
        findings.add(Check::ValueType, incomplete.first,
                     QStringLiteral("A point without \"%1\", which is taken for 0%2")
                         .arg(incomplete.first.member(energiesKey) ? intensitiesKey : energiesKey,
                              incomplete.others()));
    energies.report(findings);
    intensities.report(findings);
    points.isWhole =
        mistyped.count + incomplete.count == 0 && energies.isFinite() && intensities.isFinite();
    points.hasTooManyDigits = energies.isRounded();
    return points;
}

} // namespace

PointArrays readPoints(const JsonValue &spectrum, FindingList &findings)
{
    if (const JsonValue objects = spectrum.member(pointObjectsKey)) {
        for (const QLatin1String key : {energiesKey, intensitiesKey}) {
            const JsonValue list = spectrum.member(key);
            if (list && list.count() > 0)
                findings.addAtKey(Check::UnknownKey, list,
                                  QStringLiteral("The editor reads the points under \"%1\", and "
                                                 "drops those under \"%2\"")
                                      .arg(pointObjectsKey, key),
                                  QStringLiteral("Keep the right ones of the two."));
        }
        return readObjects(objects, findings);
    }
    PointArrays points;
    points.energies = spectrum.member(energiesKey);
    points.intensitiesList = spectrum.member(intensitiesKey);
    NumberReader energies;
    NumberReader intensities;
    points.energiesEv = readList(points.energies, energies);
    points.intensities = readList(points.intensitiesList, intensities);
    energies.report(findings);
    intensities.report(findings);
    points.isWhole = energies.isFinite() && intensities.isFinite();
    points.hasTooManyDigits = energies.isRounded();
    if (points.energiesEv.size() != points.intensities.size()) {
        points.isWhole = false;
        findings.add(Check::UnequalArrays,
                     points.energies ? points.energies : points.intensitiesList,
                     QStringLiteral("%1 energies, but %2 intensities: the editor loads no point")
                         .arg(points.energiesEv.size())
                         .arg(points.intensities.size()),
                     QStringLiteral("Find the place where one is missing or too many."));
    }
    return points;
}

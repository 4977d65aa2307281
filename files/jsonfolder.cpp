// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/jsonfolder.h"

#include <QCollator>
#include <QDir>

#include <algorithm>
#include <functional>
#include <vector>

namespace
{

// A key whose code units sort like the name in natural order: letters are folded, and a run of
// digits becomes "0", the count of its digits without leading zeros, and these digits.
QString naturalKey(const QString &name)
{
    QString key;
    key.reserve(2 * name.size());
    const QString folded = name.toCaseFolded();
    const auto isDigit = [](QChar c) { return c.isDigit(); };
    auto it = folded.begin();
    while (it != folded.end()) {
        if (!isDigit(*it)) {
            key += *it++;
            continue;
        }
        const auto end = std::find_if_not(it, folded.end(), isDigit);
        it = std::find_if(it, end, [](QChar c) { return c.digitValue() != 0; });
        key += QLatin1Char('0') + QChar(static_cast<char16_t>(end - it));
        for (; it != end; ++it)
            key += QChar(static_cast<char16_t>(u'0' + it->digitValue()));
    }
    return key;
}

template <typename Key>
void sortByKey(QStringList &names, const std::function<Key(const QString &)> &keyOf)
{
    struct Entry {
        Key key;
        QString name;
    };
    std::vector<Entry> entries;
    entries.reserve(names.size());
    for (const QString &name : std::as_const(names))
        entries.push_back({keyOf(name), name});
    std::sort(entries.begin(), entries.end(), [](const Entry &left, const Entry &right) {
        const int order = left.key.compare(right.key);
        return order != 0 ? order < 0 : left.name < right.name;
    });
    std::transform(entries.begin(), entries.end(), names.begin(),
                   [](const Entry &entry) { return entry.name; });
}

} // namespace

QStringList jsonFilesIn(const QString &folder)
{
    QStringList names =
        QDir(folder).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::NoSort);
    sortNaturally(names);
    return names;
}

void sortNaturally(QStringList &names)
{
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    // In C locales QCollator claims to use the numeric mode but ignores it.
    if (collator.compare(QStringLiteral("2"), QStringLiteral("10")) < 0)
        sortByKey<QCollatorSortKey>(names,
                                    [&](const QString &name) { return collator.sortKey(name); });
    else
        sortByKey<QString>(names, naturalKey);
}

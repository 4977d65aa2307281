// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/jsonfolder.h"
#include "fuzz/invariant.h"

#include <QCollator>
#include <QLocale>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype mostNames = 12;

bool isBefore(const QString &left, const QString &right)
{
    if (left == right)
        return false;
    QStringList names{left, right};
    sortNaturally(names);
    QStringList swapped{right, left};
    sortNaturally(swapped);
    REQUIRE_EQUAL(names, swapped);
    return names.first() == left;
}

// The locale's own collation, where it knows one. In some locales its comparison and its sort keys
// do not agree on digits of several scripts in one number; the keys are right, and they are what
// counts.
void testCollation(const QString &left, const QString &right)
{
    const auto isForeignDigit = [](char32_t c) { return QChar::isDigit(c) && c > U'9'; };
    const QList<uint> characters = QString(left + right).toUcs4();
    if (std::any_of(characters.begin(), characters.end(), isForeignDigit))
        return;
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    if (collator.compare(u"2"_s, u"10"_s) > 0)
        return;
    const int order = collator.compare(left, right);
    if (order != 0)
        REQUIRE_EQUAL(isBefore(left, right), order < 0);
}

} // namespace

// Any names of files, under several locales: the order is strict, total and the same at every call.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QStringList locales{u"C"_s,     u"en_US"_s, u"de_DE"_s, u"sv_SE"_s, u"cs_CZ"_s,
                                     u"tr_TR"_s, u"da_DK"_s, u"th_TH"_s, u"ja_JP"_s, u"ar_EG"_s};
    if (size < 2)
        return 0;
    QLocale::setDefault(QLocale(locales[data[0] % locales.size()]));
    QStringList names = QString::fromUtf8(bytesOf(data + 1, size - 1)).split(u'\n');
    names = names.first(std::min(names.size(), mostNames));

    QStringList sorted = names;
    sortNaturally(sorted);
    QStringList backwards = names;
    std::reverse(backwards.begin(), backwards.end());
    sortNaturally(backwards);
    REQUIRE_EQUAL(backwards, sorted);
    QStringList again = sorted;
    sortNaturally(again);
    REQUIRE_EQUAL(again, sorted);
    REQUIRE(std::is_permutation(sorted.begin(), sorted.end(), names.begin(), names.end()));

    // Any two of them stand as they do without the others: so the order is transitive.
    for (qsizetype i = 0; i < sorted.size(); ++i) {
        for (qsizetype j = i + 1; j < sorted.size(); ++j) {
            REQUIRE_EQUAL(isBefore(sorted[i], sorted[j]), sorted[i] != sorted[j]);
            testCollation(sorted[i], sorted[j]);
        }
    }
    return 0;
}

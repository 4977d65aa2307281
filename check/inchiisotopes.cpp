// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/inchiisotopes.h"

#include "check/elements.h"
#include "check/inchilayers.h"
#include "check/inchiscanner.h"

#include <QStringView>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

constexpr int hydrogen = 1;
constexpr int carbon = 6;

// The element of an atom: numbers follow the formula, with hydrogen last.
int elementAt(const InchiComponent &component, int atom)
{
    component.checkNumber(atom);
    std::vector<std::pair<QString, int>> order;
    for (const auto &[number, count] : component.atoms) {
        if (number != hydrogen)
            order.emplace_back(number == carbon ? QString()
                                                : QString::fromLatin1(elementOf(number).symbol),
                               number);
    }
    std::sort(order.begin(), order.end());
    for (const auto &[symbol, number] : order) {
        atom -= component.atoms.at(number);
        if (atom <= 0)
            return number;
    }
    return hydrogen;
}

// Reads "D2", "T" or "DT2"; H is light hydrogen named as such.
void takeHydrogens(InchiScanner &scanner, InchiIsotopes &isotopes)
{
    constexpr QStringView letters(u"HDT");
    while (!scanner.atEnd() && letters.contains(scanner.peek())) {
        const auto massNumber = static_cast<int>(letters.indexOf(scanner.takeAny())) + 1;
        isotopes[{hydrogen, massNumber}] += scanner.number(1);
    }
}

} // namespace

void addIsotopes(const InchiComponent &component, const QString &text, InchiIsotopes &isotopes)
{
    InchiScanner scanner(text);
    while (!scanner.atEnd()) {
        const int element = elementAt(component, scanner.number());
        const bool isHeavier = scanner.peek() == QLatin1Char('+');
        if (scanner.take('+') || scanner.take('-')) {
            const int shift = scanner.take('0') ? 0 : scanner.number();
            const auto usual = static_cast<int>(std::lround(elementOf(element).weight));
            ++isotopes[{element, isHeavier ? usual + shift : usual - shift}];
        }
        takeHydrogens(scanner, isotopes);
        if (!scanner.atEnd())
            scanner.expect(',');
    }
}

void addIsotopicHydrogens(const QString &text, InchiIsotopes &isotopes)
{
    InchiScanner scanner(text);
    takeHydrogens(scanner, isotopes);
    if (!scanner.atEnd())
        failInchi(QStringLiteral("\"%1\" is out of place in its isotopes").arg(scanner.peek()));
}

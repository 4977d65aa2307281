// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/inchilayers.h"

#include "check/elements.h"
#include "check/inchiscanner.h"

#include <QRegularExpression>
#include <QStringView>

#include <algorithm>

namespace
{

constexpr int hydrogen = 1;
constexpr int carbon = 6;
constexpr int mostComponents = 1'000;
constexpr int deepestBranch = 200;

InchiComponent componentOf(InchiScanner &scanner)
{
    InchiComponent component;
    std::vector<int> order;
    while (!scanner.atEnd() && scanner.peek() != QLatin1Char('.')) {
        QString symbol(scanner.takeAny());
        while (scanner.peek().isLower())
            symbol += scanner.takeAny();
        const std::optional<int> number = atomicNumber(symbol);
        if (!number)
            failInchi(QStringLiteral("its formula has \"%1\", which is no element").arg(symbol));
        const bool counted = scanner.atDigit();
        const int count = scanner.number(1);
        if (counted && count < 2)
            failInchi(QStringLiteral("its formula has a count of %1").arg(count));
        if (!component.atoms.emplace(*number, count).second)
            failInchi(QStringLiteral("its formula names %1 twice").arg(symbol));
        order.push_back(*number);
        if (*number != hydrogen)
            component.heavyAtoms += count;
    }
    if (order.empty())
        failInchi(QStringLiteral("a component of its formula is empty"));
    const bool isHill = std::is_sorted(order.begin(), order.end(), [&](int a, int b) {
        return precedesInHill(a, b, component.atoms.contains(carbon));
    });
    if (!isHill)
        failInchi(QStringLiteral("the elements of its formula are not in Hill's order"));
    component.numberedAtoms = std::max(component.heavyAtoms, 1);
    return component;
}

void addBond(InchiComponent &component, int from, int to)
{
    if (from == to)
        failInchi(QStringLiteral("its connections bind atom %1 to itself").arg(from));
    if (!component.bonds.emplace(std::min(from, to), std::max(from, to)).second)
        failInchi(QStringLiteral("its connections name the bond of atoms %1 and %2 twice")
                      .arg(from)
                      .arg(to));
}

// Reads a chain of atoms with its branches; from is the atom where it starts, or 0.
void takeChain(InchiComponent &component, InchiScanner &scanner, int from, int depth)
{
    if (depth > deepestBranch)
        failInchi(QStringLiteral("its connections branch too deeply"));
    int last = from;
    for (;;) {
        const int atom = scanner.number();
        if (last != 0)
            addBond(component, last, atom);
        last = atom;
        if (scanner.take('(')) {
            do
                takeChain(component, scanner, last, depth + 1);
            while (scanner.take(','));
            scanner.expect(')');
        } else if (!scanner.take('-')) {
            return;
        }
    }
}

} // namespace

int InchiComponent::hydrogens() const
{
    const auto found = atoms.find(hydrogen);
    return found != atoms.end() ? found->second : 0;
}

void InchiComponent::checkNumber(int atom) const
{
    if (atom < 1 || atom > numberedAtoms)
        failInchi(QStringLiteral("a layer names atom %1 of %2").arg(atom).arg(numberedAtoms));
}

std::vector<InchiComponent> inchiFormula(const QString &layer)
{
    std::vector<InchiComponent> components;
    InchiScanner scanner(layer);
    do {
        const int times = scanner.number(1);
        const InchiComponent component = componentOf(scanner);
        if (times < 1 || qsizetype(components.size()) + times > mostComponents)
            failInchi(QStringLiteral("its formula has too many components"));
        components.insert(components.end(), static_cast<std::size_t>(times), component);
    } while (scanner.take('.'));
    return components;
}

QStringList inchiParts(const QString &layer)
{
    static const QRegularExpression repeated(QStringLiteral("^(\\d{1,3})\\*(.*)$"));
    QStringList parts;
    const QStringList written = layer.split(QLatin1Char(';'));
    for (const QString &part : written) {
        const QRegularExpressionMatch match = repeated.match(part);
        const int times = match.hasMatch() ? match.capturedView(1).toInt() : 1;
        for (int i = 0; i < times; ++i)
            parts.append(match.hasMatch() ? match.captured(2) : part);
    }
    return parts;
}

void takeConnections(InchiComponent &component, const QString &text)
{
    if (!text.isEmpty()) {
        InchiScanner scanner(text);
        takeChain(component, scanner, 0, 0);
        if (!scanner.atEnd())
            failInchi(
                QStringLiteral("\"%1\" is out of place in its connections").arg(scanner.peek()));
    }
    std::set<int> named;
    for (const auto &[from, to] : component.bonds)
        named.insert({from, to});
    if (named.empty()) {
        if (component.heavyAtoms > 1)
            failInchi(QStringLiteral("the connections of %1 atoms are missing")
                          .arg(component.heavyAtoms));
        return;
    }
    // Bridging hydrogen atoms are numbered after the heavy ones.
    component.numberedAtoms = std::max(*named.rbegin(), component.heavyAtoms);
    for (int atom = 1; atom <= component.numberedAtoms; ++atom) {
        if (!named.contains(atom))
            failInchi(QStringLiteral("atom %1 of %2 is missing in its connections")
                          .arg(atom)
                          .arg(component.numberedAtoms));
    }
    if (component.numberedAtoms > component.heavyAtoms + component.hydrogens())
        failInchi(
            QStringLiteral("its connections name atom %1, but its formula has %2 atoms to name")
                .arg(component.numberedAtoms)
                .arg(component.heavyAtoms));
}

int hydrogensOf(const InchiComponent &component, const QString &text)
{
    // Hydrogen atoms have numbers where there is no other element, and in bridges.
    int total =
        component.heavyAtoms == 0 ? 1 : std::max(component.numberedAtoms - component.heavyAtoms, 0);
    std::set<int> fixed;
    InchiScanner scanner(text);
    while (!scanner.atEnd()) {
        if (scanner.take('(')) {
            scanner.expect('H');
            total += scanner.number(1);
            scanner.take('-');
            while (scanner.take(','))
                component.checkNumber(scanner.number());
            scanner.expect(')');
        } else {
            int atoms = 0;
            do {
                const int first = scanner.number();
                const int last = scanner.take('-') ? scanner.number() : first;
                if (last < first)
                    failInchi(QStringLiteral("a hydrogen layer names atoms %1 to %2")
                                  .arg(first)
                                  .arg(last));
                component.checkNumber(first);
                component.checkNumber(last);
                for (int atom = first; atom <= last; ++atom, ++atoms) {
                    if (!fixed.insert(atom).second)
                        failInchi(QStringLiteral("a hydrogen layer names atom %1 twice").arg(atom));
                }
            } while (scanner.take(','));
            scanner.expect('H');
            total += atoms * scanner.number(1);
        }
        // Groups in brackets are not separated by commas.
        if (!scanner.atEnd() && scanner.peek() != QLatin1Char('('))
            scanner.expect(',');
    }
    return total;
}

void checkStereoBonds(const InchiComponent &component, const QString &text)
{
    InchiScanner scanner(text);
    while (!scanner.atEnd()) {
        const int first = scanner.number();
        scanner.expect('-');
        const int second = scanner.number();
        if (!component.bonds.contains({std::min(first, second), std::max(first, second)}))
            failInchi(QStringLiteral("the layer /b names a bond of atoms %1 and %2, which is none")
                          .arg(first)
                          .arg(second));
        if (!QStringView(u"+-?u").contains(scanner.takeAny()))
            failInchi(QStringLiteral("the layer /b has no sign at a bond"));
        if (!scanner.atEnd())
            scanner.expect(',');
    }
}

void checkStereoAtoms(const InchiComponent &component, const QString &text)
{
    InchiScanner scanner(text);
    int last = 0;
    while (!scanner.atEnd()) {
        const int atom = scanner.number();
        component.checkNumber(atom);
        if (atom <= last)
            failInchi(
                QStringLiteral("the layer /t names atom %1 after atom %2").arg(atom).arg(last));
        last = atom;
        const auto neighbours =
            std::count_if(component.bonds.begin(), component.bonds.end(), [&](const auto &bond) {
                return bond.first == atom || bond.second == atom;
            });
        if (neighbours < 2)
            failInchi(
                QStringLiteral("the layer /t names atom %1, which has one neighbour").arg(atom));
        if (!QStringView(u"+-?u").contains(scanner.takeAny()))
            failInchi(QStringLiteral("the layer /t has no sign at an atom"));
        if (!scanner.atEnd())
            scanner.expect(',');
    }
}

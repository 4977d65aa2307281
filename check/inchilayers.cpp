// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/inchilayers.h"

#include "check/elements.h"

#include <QRegularExpression>
#include <QStringView>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{

constexpr int hydrogen = 1;
constexpr int carbon = 6;
constexpr int largestCount = 100'000;
constexpr int mostComponents = 1'000;
constexpr int deepestBranch = 200;

[[noreturn]] void fail(const QString &message)
{
    throw InchiLayerError{message};
}

// Reads a text from its front.
class Scanner
{
public:
    explicit Scanner(QStringView text) : m_text(text) {}

    [[nodiscard]] bool atEnd() const { return m_text.isEmpty(); }
    [[nodiscard]] QChar peek() const { return atEnd() ? QChar() : m_text.front(); }
    [[nodiscard]] bool atDigit() const
    {
        return peek() >= QLatin1Char('0') && peek() <= QLatin1Char('9');
    }
    bool take(char c)
    {
        if (peek() != QLatin1Char(c))
            return false;
        m_text = m_text.sliced(1);
        return true;
    }
    QChar takeAny()
    {
        const QChar c = peek();
        if (!atEnd())
            m_text = m_text.sliced(1);
        return c;
    }
    // A number, or the default where none stands.
    int number(int otherwise)
    {
        if (!atDigit())
            return otherwise;
        if (peek() == QLatin1Char('0'))
            fail(QStringLiteral("a number in it begins with 0"));
        int value = 0;
        while (atDigit()) {
            value = 10 * value + takeAny().digitValue();
            if (value > largestCount)
                fail(QStringLiteral("a number in it is too large"));
        }
        return value;
    }
    int number()
    {
        if (!atDigit())
            fail(atEnd() ? QStringLiteral("a number is missing at the end of a layer")
                         : QStringLiteral("\"%1\" stands where a number belongs").arg(peek()));
        return number(0);
    }
    void expect(char c)
    {
        if (!take(c))
            fail(atEnd()
                     ? QStringLiteral("\"%1\" is missing at the end of a layer").arg(QLatin1Char(c))
                     : QStringLiteral("\"%1\" stands where \"%2\" belongs")
                           .arg(peek())
                           .arg(QLatin1Char(c)));
    }

private:
    QStringView m_text;
};

InchiComponent componentOf(Scanner &scanner)
{
    InchiComponent component;
    std::vector<std::pair<QString, int>> order;
    while (!scanner.atEnd() && scanner.peek() != QLatin1Char('.')) {
        QString symbol(scanner.takeAny());
        while (scanner.peek().isLower())
            symbol += scanner.takeAny();
        const std::optional<int> number = atomicNumber(symbol);
        if (!number)
            fail(QStringLiteral("its formula has \"%1\", which is no element").arg(symbol));
        const bool counted = scanner.atDigit();
        const int count = scanner.number(1);
        if (counted && count < 2)
            fail(QStringLiteral("its formula has a count of %1").arg(count));
        if (!component.atoms.emplace(*number, count).second)
            fail(QStringLiteral("its formula names %1 twice").arg(symbol));
        order.emplace_back(symbol, *number);
        if (*number != hydrogen)
            component.heavyAtoms += count;
    }
    if (order.empty())
        fail(QStringLiteral("a component of its formula is empty"));
    // Hill's order: carbon, hydrogen, then the letters; without carbon the letters alone.
    const bool organic = component.atoms.contains(carbon);
    const auto rank = [&](const auto &entry) {
        const int first = !organic                   ? 2
                          : entry.second == carbon   ? 0
                          : entry.second == hydrogen ? 1
                                                     : 2;
        return std::make_pair(first, entry.first);
    };
    if (!std::is_sorted(order.begin(), order.end(),
                        [&](const auto &a, const auto &b) { return rank(a) < rank(b); }))
        fail(QStringLiteral("the elements of its formula are not in Hill's order"));
    component.numberedAtoms = std::max(component.heavyAtoms, 1);
    return component;
}

void addBond(InchiComponent &component, int from, int to)
{
    if (from == to)
        fail(QStringLiteral("its connections bind atom %1 to itself").arg(from));
    if (!component.bonds.emplace(std::min(from, to), std::max(from, to)).second)
        fail(QStringLiteral("its connections name the bond of atoms %1 and %2 twice")
                 .arg(from)
                 .arg(to));
}

// A chain of atoms with its branches; from is the atom that it starts at, or 0.
void takeChain(InchiComponent &component, Scanner &scanner, int from, int depth)
{
    if (depth > deepestBranch)
        fail(QStringLiteral("its connections branch too deeply"));
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

void checkNumber(const InchiComponent &component, int atom)
{
    if (atom < 1 || atom > component.numberedAtoms)
        fail(QStringLiteral("a layer names atom %1 of %2").arg(atom).arg(component.numberedAtoms));
}

} // namespace

int InchiComponent::hydrogens() const
{
    const auto found = atoms.find(hydrogen);
    return found != atoms.end() ? found->second : 0;
}

std::vector<InchiComponent> inchiFormula(const QString &layer)
{
    std::vector<InchiComponent> components;
    Scanner scanner(layer);
    do {
        const int times = scanner.number(1);
        const InchiComponent component = componentOf(scanner);
        if (times < 1 || qsizetype(components.size()) + times > mostComponents)
            fail(QStringLiteral("its formula has too many components"));
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
        Scanner scanner(text);
        takeChain(component, scanner, 0, 0);
        if (!scanner.atEnd())
            fail(QStringLiteral("\"%1\" is out of place in its connections").arg(scanner.peek()));
    }
    std::set<int> named;
    for (const auto &[from, to] : component.bonds)
        named.insert({from, to});
    if (named.empty()) {
        if (component.heavyAtoms > 1)
            fail(QStringLiteral("the connections of %1 atoms are missing")
                     .arg(component.heavyAtoms));
        return;
    }
    // Hydrogen atoms between others have numbers after all the heavy ones.
    component.numberedAtoms = std::max(*named.rbegin(), component.heavyAtoms);
    for (int atom = 1; atom <= component.numberedAtoms; ++atom) {
        if (!named.contains(atom))
            fail(QStringLiteral("atom %1 of %2 is missing in its connections")
                     .arg(atom)
                     .arg(component.numberedAtoms));
    }
    if (component.numberedAtoms > component.heavyAtoms + component.hydrogens())
        fail(QStringLiteral("its connections name atom %1, but its formula has %2 atoms to name")
                 .arg(component.numberedAtoms)
                 .arg(component.heavyAtoms));
}

int hydrogensOf(const InchiComponent &component, const QString &text)
{
    // A hydrogen atom with a number of its own: where there is nothing else, and in bridges.
    int total =
        component.heavyAtoms == 0 ? 1 : std::max(component.numberedAtoms - component.heavyAtoms, 0);
    std::set<int> fixed;
    Scanner scanner(text);
    while (!scanner.atEnd()) {
        if (scanner.take('(')) {
            scanner.expect('H');
            total += scanner.number(1);
            scanner.take('-');
            while (scanner.take(','))
                checkNumber(component, scanner.number());
            scanner.expect(')');
        } else {
            int atoms = 0;
            do {
                const int first = scanner.number();
                const int last = scanner.take('-') ? scanner.number() : first;
                if (last < first)
                    fail(QStringLiteral("a hydrogen layer names atoms %1 to %2")
                             .arg(first)
                             .arg(last));
                checkNumber(component, first);
                checkNumber(component, last);
                for (int atom = first; atom <= last; ++atom, ++atoms) {
                    if (!fixed.insert(atom).second)
                        fail(QStringLiteral("a hydrogen layer names atom %1 twice").arg(atom));
                }
            } while (scanner.take(','));
            scanner.expect('H');
            total += atoms * scanner.number(1);
        }
        // Groups in brackets follow each other without a comma.
        if (!scanner.atEnd() && scanner.peek() != QLatin1Char('('))
            scanner.expect(',');
    }
    return total;
}

namespace
{

// The element of an atom: numbers follow the formula, and those of hydrogen all others.
int elementAt(const InchiComponent &component, int atom)
{
    checkNumber(component, atom);
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

// "D2", "T", "DT2"; H is light hydrogen that is named as such.
void takeHydrogens(Scanner &scanner, InchiIsotopes &isotopes)
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
    Scanner scanner(text);
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
    Scanner scanner(text);
    takeHydrogens(scanner, isotopes);
    if (!scanner.atEnd())
        fail(QStringLiteral("\"%1\" is out of place in its isotopes").arg(scanner.peek()));
}

void checkStereoBonds(const InchiComponent &component, const QString &text)
{
    Scanner scanner(text);
    while (!scanner.atEnd()) {
        const int first = scanner.number();
        scanner.expect('-');
        const int second = scanner.number();
        if (!component.bonds.contains({std::min(first, second), std::max(first, second)}))
            fail(QStringLiteral("the layer /b names a bond of atoms %1 and %2, which is none")
                     .arg(first)
                     .arg(second));
        if (!QStringView(u"+-?u").contains(scanner.takeAny()))
            fail(QStringLiteral("the layer /b has no sign at a bond"));
        if (!scanner.atEnd())
            scanner.expect(',');
    }
}

void checkStereoAtoms(const InchiComponent &component, const QString &text)
{
    Scanner scanner(text);
    int last = 0;
    while (!scanner.atEnd()) {
        const int atom = scanner.number();
        checkNumber(component, atom);
        if (atom <= last)
            fail(QStringLiteral("the layer /t names atom %1 after atom %2").arg(atom).arg(last));
        last = atom;
        const auto neighbours =
            std::count_if(component.bonds.begin(), component.bonds.end(), [&](const auto &bond) {
                return bond.first == atom || bond.second == atom;
            });
        if (neighbours < 2)
            fail(QStringLiteral("the layer /t names atom %1, which has one neighbour").arg(atom));
        if (!QStringView(u"+-?u").contains(scanner.takeAny()))
            fail(QStringLiteral("the layer /t has no sign at an atom"));
        if (!scanner.atEnd())
            scanner.expect(',');
    }
}

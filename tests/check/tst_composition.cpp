// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/elements.h"
#include "check/formula.h"
#include "check/formulamass.h"
#include "check/inchi.h"
#include "support/warnings.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

// "C2 H6 O", isotopes as "H2*6", the charge behind.
QString textOf(const Formula &formula)
{
    QStringList parts;
    for (const auto &[atom, count] : formula.atoms) {
        QString part = QString::fromLatin1(elementOf(atom.first).symbol);
        if (atom.second != 0)
            part += QString::number(atom.second) + u'*';
        parts.append(count == 1 && atom.second == 0 ? part : part + QString::number(count));
    }
    parts.sort();
    if (formula.charge != 0)
        parts.append(formula.charge > 0 ? u'+' + QString::number(formula.charge)
                                        : QString::number(formula.charge));
    return parts.join(u' ');
}

double averageMass(const QString &markup)
{
    const auto result = parseFormula(markup);
    const auto *readings = std::get_if<std::vector<Formula>>(&result);
    const auto mass = readings ? massOf(readings->front(), MassKind::Average) : std::nullopt;
    return mass ? mass->mass : -1;
}

} // namespace

class TestComposition : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void formulasAreRead_data()
    {
        QTest::addColumn<QString>("markup");
        QTest::addColumn<QString>("expected");
        const auto row = [](const QString &markup, const QString &expected) {
            QTest::newRow(qPrintable(markup)) << markup << expected;
        };
        row(u"H<sub>2</sub>O"_s, u"H2 O"_s);
        row(u"C6H6"_s, u"C6 H6"_s);
        row(u"CO"_s, u"C O"_s);
        row(u"Co"_s, u"Co"_s);
        row(u"(CH<sub>3</sub>)<sub>2</sub>CO"_s, u"C3 H6 O"_s);
        row(u"K<sub>4</sub>[Fe(CN)<sub>6</sub>]"_s, u"C6 Fe K4 N6"_s);
        row(u"CuSO<sub>4</sub>·5H<sub>2</sub>O"_s, u"Cu H10 O9 S"_s);
        row(u"CuSO4.5H2O"_s, u"Cu H10 O9 S"_s);
        row(u"CaSO<sub>4</sub>·0.5H<sub>2</sub>O"_s, u"Ca H O4.5 S"_s);
        row(u"D<sub>2</sub>O"_s, u"H2*2 O"_s);
        row(u"HDO"_s, u"H H2*1 O"_s);
        row(u"T2"_s, u"H3*2"_s);
        row(u"<sup>13</sup>CO"_s, u"C13*1 O"_s);
        row(u"<sup>13</sup>C<sub>2</sub>H<sub>4</sub>"_s, u"C13*2 H4"_s);
        row(u"[13C]H4"_s, u"C13*1 H4"_s);
        row(u"NO<sup>+</sup>"_s, u"N O +1"_s);
        row(u"SO<sub>4</sub><sup>2-</sup>"_s, u"O4 S -2"_s);
        row(u"Fe<sup>+3</sup>"_s, u"Fe +3"_s);
        row(u"SO4 2-"_s, u"O4 S -2"_s);
        row(u"SO<sub>4</sub> 2-"_s, u"O4 S -2"_s);
        row(u"C24H36O4 2-"_s, u"C24 H36 O4 -2"_s);
        row(u"Ca 2+"_s, u"Ca +2"_s);
        row(u"NH4 +"_s, u"H4 N +1"_s);
        row(u"NH<sub>4</sub><sup>+</sup>Cl<sup>-</sup>"_s, u"Cl H4 N"_s);
        row(u"[Fe(CN)6]3-"_s, u"C6 Fe N6 -3"_s);
        row(u"CH<sub>3</sub>•"_s, u"C H3"_s);
        row(u"CH<sub>4</sub><sup>•+</sup>"_s, u"C H4 +1"_s);
        row(u"<sup>•</sup>CH<sub>3</sub>"_s, u"C H3"_s);
        row(u"H₂O"_s, u"H2 O"_s);
        row(u"SO₄²⁻"_s, u"O4 S -2"_s);
        row(u"n-C<sub>4</sub>H<sub>10</sub>"_s, u"C4 H10"_s);
        row(u"(H2O)2"_s, u"H4 O2"_s);
        row(u"2H2O"_s, u"H4 O2"_s);
        row(u"NO+"_s, u"N O +1"_s);
    }

    void formulasAreRead()
    {
        QFETCH(QString, markup);
        QFETCH(QString, expected);
        const auto result = parseFormula(markup);
        const auto *error = std::get_if<FormulaError>(&result);
        QVERIFY2(!error, error ? qPrintable(error->message) : "");
        QCOMPARE(textOf(std::get<std::vector<Formula>>(result).front()), expected);
    }

    void aChargeWithoutMarkupHasTwoReadings()
    {
        const auto result = parseFormula(u"Fe3+"_s);
        const auto &readings = std::get<std::vector<Formula>>(result);
        QCOMPARE(readings.size(), std::size_t(2));
        QCOMPARE(textOf(readings[0]), u"Fe3 +1"_s);
        QCOMPARE(textOf(readings[1]), u"Fe +3"_s);
    }

    void whatIsNoFormulaIsRefused_data()
    {
        QTest::addColumn<QString>("markup");
        QTest::addColumn<bool>("isElement");
        QTest::newRow("blank") << u" "_s << false;
        QTest::newRow("digits") << u"12"_s << false;
        QTest::newRow("open") << u"Ca(OH"_s << false;
        QTest::newRow("close") << u"CaOH)2"_s << false;
        QTest::newRow("wrong bracket") << u"Ca(OH]2"_s << false;
        QTest::newRow("words") << u"H2O (liq.)"_s << false;
        QTest::newRow("variable") << u"C<sub>n</sub>H"_s << false;
        QTest::newRow("isotope of nothing") << u"C<sup>13</sup>"_s << false;
        QTest::newRow("no element") << u"Xx2"_s << true;
        QTest::newRow("group") << u"MeOH"_s << true;
        QTest::newRow("shift") << u"CuCi2"_s << true;
        QTest::newRow("huge") << u"C9999999999999"_s << false;
        QTest::newRow("deep") << QString(100'000, u'(') << false;
    }

    void whatIsNoFormulaIsRefused()
    {
        QFETCH(QString, markup);
        QFETCH(bool, isElement);
        const auto result = parseFormula(markup);
        const auto *error = std::get_if<FormulaError>(&result);
        QVERIFY(error);
        QVERIFY(!error->message.isEmpty());
        if (markup != u"C<sub>n</sub>H"_s)
            QCOMPARE(error->kind == FormulaError::Element, isElement);
    }

    void massesAreThoseOfTheTables()
    {
        const auto isNear = [](double a, double b) { return std::abs(a - b) < 0.002; };
        QVERIFY(isNear(averageMass(u"H2O"_s), 18.015));
        QVERIFY(isNear(averageMass(u"C6H6"_s), 78.114));
        QVERIFY(isNear(averageMass(u"D2O"_s), 20.027));
        QVERIFY(isNear(averageMass(u"[13C]O"_s), 29.002));
        QVERIFY(isNear(averageMass(u"UF6"_s), 352.019));
        QCOMPARE(averageMass(u"Tc"_s), -1.0);
        const auto result = parseFormula(u"C2HBrClF3"_s);
        const Formula &halothane = std::get<std::vector<Formula>>(result).front();
        QVERIFY(isNear(massOf(halothane, MassKind::Monoisotopic)->mass, 195.890));
        QCOMPARE(massOf(halothane, MassKind::Nominal)->mass, 196.0);
    }

    // Slips in the table would show: masses grow with the atomic number with few exceptions, and
    // the most abundant isotope is near the average.
    void theTableIsPlausible()
    {
        for (int number = 1; number <= 118; ++number) {
            const Element &element = elementOf(number);
            QCOMPARE(atomicNumber(QString::fromLatin1(element.symbol)), number);
            if (element.weight == 0)
                continue;
            QVERIFY2(element.lowest <= element.weight && element.weight <= element.highest,
                     element.symbol);
            QVERIFY2(element.highest - element.lowest > 0
                         && element.highest - element.lowest < 0.012 * element.weight,
                     element.symbol);
            QVERIFY(std::abs(element.mainMass - element.mainIsotope) < 0.12);
            QVERIFY2(std::abs(element.weight - element.mainMass) < 2.8, element.symbol);
            if (number > 1 && elementOf(number - 1).weight > 0 && number != 19 && number != 28
                && number != 53 && number != 91)
                QVERIFY2(element.weight > elementOf(number - 1).weight, element.symbol);
        }
    }

    void inchisAreReadAndChecked_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isGood");
        const auto row = [](const char *name, const QString &text, bool isGood) {
            QTest::newRow(name) << text << isGood;
        };
        row("water", u"InChI=1S/H2O/h1H2"_s, true);
        row("not standard", u"InChI=1/H2O/h1H2"_s, true);
        row("proton", u"InChI=1S/p+1"_s, true);
        row("hydrogen", u"InChI=1S/H2/h1H"_s, true);
        row("atom", u"InChI=1S/He"_s, true);
        row("salt", u"InChI=1S/2Al.3H2O4S/c;;3*1-5(2,3)4/h;;3*(H2,1,2,3,4)/q2*+3;;;/p-6"_s, true);
        row("stereo", u"InChI=1S/C3H7NO2/c1-2(4)3(5)6/h2H,4H2,1H3,(H,5,6)/t2-/m0/s1"_s, true);
        row("double bond", u"InChI=1S/C4H8/c1-3-4-2/h3-4H,1-2H3/b4-3+"_s, true);
        row("isotopes", u"InChI=1S/CH4/h1H4/i1D4"_s, true);
        row("bridges", u"InChI=1S/B2H6/c1-3-2-4-1/h1-2H2"_s, true);
        row("isotopes without a place", u"InChI=1S/H2O/h1H2/i/hD2"_s, true);
        row("isotope of an atom", u"InChI=1S/CH4O/c1-2/h2H,1H3/i1+1D3,2D"_s, true);
        row("usual isotope", u"InChI=1S/ClH/h1H/i1+0"_s, true);
        row("fixed hydrogen", u"InChI=1/CH2O2/c2-1-3/h1H,(H,2,3)/f/h2H"_s, true);
        row("fixed hydrogen, standard", u"InChI=1S/CH2O2/c2-1-3/h1H,(H,2,3)/f/h2H"_s, false);
        row("reconnected, standard", u"InChI=1S/ClH.Na/h1H;/q;+1/p-1/rClNa/c1-2"_s, false);
        row("atom 0", u"InChI=1S/C2H6/c0-1-2/h1-2H3"_s, false);
        row("atom 0 last", u"InChI=1S/C2H6/c1-2-0/h1-2H3"_s, false);
        row("leading zero", u"InChI=1S/C2H6/c01-2/h1-2H3"_s, false);
        row("leading zero of hydrogen", u"InChI=1S/C2H6/c1-2/h1-02H3"_s, false);
        row("ten", u"InChI=1S/C10H22/c1-3-5-7-9-10-8-6-4-2/h3-10H2,1-2H3"_s, true);
        row("isotope of no atom", u"InChI=1S/CH4/h1H4/i2D4"_s, false);
        row("no isotope", u"InChI=1S/CH4/h1H4/i1X"_s, false);
        row("version", u"InChI=2S/H2O/h1H2"_s, false);
        row("prefix", u"1S/H2O/h1H2"_s, false);
        row("no formula", u"InChI=1S//h1H2"_s, false);
        row("not Hill", u"InChI=1S/OH2/h1H2"_s, false);
        row("element twice", u"InChI=1S/CHC/c1-2/h1H"_s, false);
        row("no element", u"InChI=1S/Xx"_s, false);
        row("atom missing", u"InChI=1S/C2H6O/c1-2/h3H,2H2,1H3"_s, false);
        row("atom too many", u"InChI=1S/C2H6/c1-2-3/h1-2H3"_s, false);
        row("bond twice", u"InChI=1S/C2H6O/c1-2-1-3/h3H,2H2,1H3"_s, false);
        row("bond to itself", u"InChI=1S/C2H6/c1-1-2/h1-2H3"_s, false);
        row("no connections", u"InChI=1S/C2H6/h1-2H3"_s, false);
        row("hydrogen short", u"InChI=1S/C2H6/c1-2/h1H3"_s, false);
        row("hydrogen twice", u"InChI=1S/C2H6/c1-2/h1H3,1H3"_s, false);
        row("hydrogen nowhere", u"InChI=1S/C2H6/c1-2/h1H3,3H3"_s, false);
        row("layer", u"InChI=1S/H2O/x1H2"_s, false);
        row("layer order", u"InChI=1S/C2H6/h1-2H3/c1-2"_s, false);
        row("empty layer", u"InChI=1S/H2O/h1H2/"_s, false);
        row("parts", u"InChI=1S/ClH.Na/h1H/q;+1/p-1"_s, false);
        row("charge", u"InChI=1S/ClH.Na/h1H;/q;1/p-1"_s, false);
        row("stereo of nothing", u"InChI=1S/C4H8/c1-3-4-2/h3-4H,1-2H3/b2-1+"_s, false);
        row("key", u"XLYOFNOQVPJJNP-UHFFFAOYSA-N"_s, false);
        row("blank", u"InChI=1S/H2O /h1H2"_s, false);
        row("deep", u"InChI=1S/C9H9/c"_s + QString(u"1("_s).repeated(50'000), false);
        row("many", u"InChI=1S/99999He"_s, false);
    }

    void inchisAreReadAndChecked()
    {
        QFETCH(QString, text);
        QFETCH(bool, isGood);
        const auto result = parseInchi(text);
        const auto *error = std::get_if<InchiError>(&result);
        QVERIFY2(!error == isGood, error ? qPrintable(error->message) : "");
    }

    void anInchiKnowsItsAtomsAndItsCharge()
    {
        const auto ofIridium = parseInchi(u"InChI=1S/4FH.Ir/h4*1H;/q;;;;+4/p-4"_s);
        const auto &fluoride = std::get<Inchi>(ofIridium);
        QCOMPARE(fluoride.charge, 0);
        QCOMPARE(fluoride.atoms, (std::map<int, int>{{9, 4}, {77, 1}}));
        const auto ofHydronium = parseInchi(u"InChI=1S/H2O/h1H2/p+1"_s);
        const auto &hydronium = std::get<Inchi>(ofHydronium);
        QCOMPARE(hydronium.charge, 1);
        QCOMPARE(hydronium.atoms, (std::map<int, int>{{1, 3}, {8, 1}}));
    }

    void anInchiKnowsItsIsotopes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const QString &text, const QString &expected) {
            QTest::newRow(qPrintable(text)) << text << expected;
        };
        row(u"InChI=1S/H2O/h1H2"_s, u""_s);
        row(u"InChI=1S/H2O/h1H2/i/hD2"_s, u"2H 2"_s);
        row(u"InChI=1S/H2/h1H/i1+1D"_s, u"2H 2"_s);
        row(u"InChI=1S/CH4O/c1-2/h2H,1H3/i1+1D3,2D"_s, u"2H 4 13C 1"_s);
        row(u"InChI=1S/CO2/c2-1-3/i2+2,3+1"_s, u"17O 1 18O 1"_s);
        row(u"InChI=1S/BrH/h1H/i1-1T"_s, u"3H 1 79Br 1"_s);
        row(u"InChI=1S/2H2O/h2*1H2/i2*1+2/hD2;"_s, u"2H 2 18O 2"_s);
        row(u"InChI=1S/H2O/h1H2/i/hHD"_s, u"1H 1 2H 1"_s);
    }

    void anInchiKnowsItsIsotopes()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        const auto result = parseInchi(text);
        const auto *error = std::get_if<InchiError>(&result);
        QVERIFY2(!error, error ? qPrintable(error->message) : "");
        QStringList parts;
        for (const auto &[atom, count] : std::get<Inchi>(result).isotopes)
            parts.append(QString::number(atom.second) + QLatin1String(elementOf(atom.first).symbol)
                         + u' ' + QString::number(count));
        QCOMPARE(parts.join(u' '), expected);
    }
};

QTEST_GUILESS_MAIN(TestComposition)
#include "tst_composition.moc"

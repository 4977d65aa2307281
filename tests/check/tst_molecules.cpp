// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/filecheck.h"
#include "files/filebytes.h"
#include "species/speciesfile.h"
#include "support/warnings.h"
#include "testfiles.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <cmath>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

struct Molecule {
    QString name;
    QString cas;
    QString formula;
    QString mass;
    QString inchi;
};

QList<Molecule> molecules()
{
    QList<Molecule> list;
    const auto bytes = readFileBytes(QStringLiteral(ZORAVEL_TEST_DATA "/molecules.tsv"));
    const QStringList lines = QString::fromUtf8(bytes.value_or(QByteArray())).split(u'\n');
    for (const QString &line : lines.sliced(1)) {
        const QStringList cells = line.split(u'\t');
        if (cells.size() == 5)
            list.append({cells[0], cells[1], cells[2], cells[3], cells[4]});
    }
    return list;
}

// The checks that find something wrong in a profile with these values.
CheckSet findingsOf(const Molecule &molecule)
{
    const QJsonObject species{{u"Name"_s, molecule.name},    {u"Aliases"_s, QString()},
                              {u"CAS"_s, molecule.cas},      {u"Formula"_s, molecule.formula},
                              {u"InChI"_s, molecule.inchi},  {u"PubChem"_s, QString()},
                              {u"AIE"_s, QString()},         {u"VIE"_s, QString()},
                              {u"AIE_Comment"_s, QString()}, {u"VIE_Comment"_s, QString()}};
    QByteArray text = QJsonDocument(speciesFileObject(species, {})).toJson();
    // The mass keeps the digits that it has.
    text.replace("\"Name\":",
                 QByteArray("\"Mass\": " + molecule.mass.toUtf8() + ",\n        \"Name\":"));
    CheckSet found;
    for (const Finding &finding : checkBytes(u"a.json"_s, text, {}).findings)
        found.set(std::size_t(finding.check));
    return found;
}

// The characters that one may be mistaken for: all other digits, or other letters of its case.
QString othersThan(QChar c)
{
    QString others = c.isDigit()   ? u"0123456789"_s
                     : c.isUpper() ? u"ABCDEFGHIJKLMNOPQRSTUVWXYZ"_s
                                   : u"abcdefghijklmnopqrstuvwxyz"_s;
    return others.remove(c);
}

struct Outcome {
    int wrong = 0; // changes that make the record wrong
    int found = 0; // of these, those that the right check finds
    [[nodiscard]] double share() const { return double(found) / wrong; }
};

// Sanitizers are slow and look for other faults: with them only some changes are tried.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int changesForEachTried = 7;
#else
constexpr int changesForEachTried = 1;
#endif

// What becomes of a field when each of its digits and letters is changed to every other, one at a
// time. isWrong tells which changes make the record wrong.
template <typename Wrong>
Outcome changeEach(QString Molecule::*field, std::initializer_list<Check> right, Wrong &&isWrong)
{
    Outcome outcome;
    CheckSet expected;
    for (const Check check : right)
        expected.set(std::size_t(check));
    int change = 0;
    const auto tryChange = [&](const Molecule &molecule, const Molecule &other) {
        if (!isWrong(molecule, other) || ++change % changesForEachTried != 0)
            return;
        ++outcome.wrong;
        outcome.found += (findingsOf(other) & expected).any();
    };
    for (const Molecule &molecule : molecules()) {
        const QString &text = molecule.*field;
        for (qsizetype place = 0; place < text.size(); ++place) {
            if (!text[place].isLetterOrNumber())
                continue;
            const QString others = othersThan(text[place]);
            for (const QChar c : others) {
                Molecule other = molecule;
                (other.*field)[place] = c;
                tryChange(molecule, other);
            }
        }
    }
    return outcome;
}

} // namespace

class TestMolecules : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void twoHundredMoleculesGiveNoFinding()
    {
        const QList<Molecule> list = molecules();
        QCOMPARE(list.size(), 200);
        for (const Molecule &molecule : list) {
            const CheckSet found = findingsOf(molecule);
            for (const CheckInfo &info : allChecks())
                QVERIFY2(!found.test(std::size_t(info.check)),
                         qPrintable(molecule.name + u": "_s + info.id));
        }
    }

    void aMassByAnyOfficialWeightSince1961IsRight_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QString>("mass");
        QTest::addColumn<bool>("isRight");
        const auto row = [](const char *name, const QString &formula, const QString &mass,
                            bool isRight) { QTest::newRow(name) << formula << mass << isRight; };
        row("O 1961", u"O2"_s, u"31.9988"_s, true);
        row("O3 1961", u"O3"_s, u"47.9982"_s, true);
        row("O 2021", u"O2"_s, u"31.998"_s, true);
        row("O, a digit", u"O2"_s, u"31.9888"_s, false);
        row("Ge 1961", u"Ge"_s, u"72.59"_s, true);
        row("Ge 1985", u"Ge"_s, u"72.61"_s, true);
        row("Ge 1999", u"Ge"_s, u"72.64"_s, true);
        row("Ge, none", u"Ge"_s, u"72.46"_s, false);
        row("Se until 2013", u"H2Se"_s, u"80.97588"_s, true);
        row("Se 2021", u"H2Se"_s, u"80.987"_s, true);
        row("Mo 1961", u"MoO3"_s, u"143.9382"_s, true);
        row("Mo 2007", u"MoO3"_s, u"143.9582"_s, true);
        row("Zn 2001", u"Zn"_s, u"65.409"_s, true);
        row("S 1969", u"H2S"_s, u"34.076"_s, true);
        row("Br 1961", u"Br2"_s, u"159.818"_s, true);
        row("Ag 1961", u"Ag"_s, u"107.870"_s, true);
        row("Ag, none", u"Ag"_s, u"107.880"_s, false); // of 1960
        row("charge", u"SO<sub>4</sub> 2-"_s, u"96.06"_s, true);
        row("charge, long", u"C24H36O4 2-"_s, u"388.54"_s, true);
    }

    void aMassByAnyOfficialWeightSince1961IsRight()
    {
        QFETCH(QString, formula);
        QFETCH(QString, mass);
        QFETCH(bool, isRight);
        const CheckSet found = findingsOf({u"x"_s, {}, formula, mass, {}});
        QCOMPARE(!found.test(std::size_t(Check::MassFormula)), isRight);
        QVERIFY(!found.test(std::size_t(Check::FormulaSyntax)));
    }

    // A CAS number whose changed digits still fit the check digit is wrong but cannot be found. A
    // mass is wrong if it is off by more than atomic weights vary.
    void aChangedDigitOrLetterGivesTheRightFindingInNearlyAllCases()
    {
        const auto always = [](const Molecule &, const Molecule &) { return true; };
        constexpr double natural = 2e-4; // relative
        // Of all changes of a mass those by more than least and up to most. A first digit of 0
        // makes it no number of JSON.
        const auto massesOffBy = [](double least, double most) {
            return changeEach(&Molecule::mass, {Check::MassFormula, Check::JsonSyntax},
                              [=](const Molecule &before, const Molecule &after) {
                                  const double mass = before.mass.toDouble();
                                  const double off = std::abs(after.mass.toDouble() - mass) / mass;
                                  return off > least && off <= most;
                              });
        };
        const Outcome cas =
            changeEach(&Molecule::cas, {Check::CasForm, Check::CasCheckDigit}, always);
        const Outcome formula = changeEach(
            &Molecule::formula,
            {Check::FormulaSyntax, Check::FormulaElement, Check::FormulaInchi, Check::MassFormula},
            always);
        struct Size {
            const char *name;
            double least;
            double most;
        };
        Outcome mass;
        for (const Size &size :
             {Size{"more than 1 %", 1e-2, HUGE_VAL}, Size{"0.1 to 1 %", 1e-3, 1e-2},
              Size{"0.02 to 0.1 %", natural, 1e-3}, Size{"less", 0, natural}}) {
            const Outcome outcome = massesOffBy(size.least, size.most);
            std::printf("mass, changed by %s: %d of %d found (%.2f %%)\n", size.name, outcome.found,
                        outcome.wrong, 100 * outcome.share());
            if (size.least >= natural) {
                mass.wrong += outcome.wrong;
                mass.found += outcome.found;
            }
        }
        const Outcome inchi =
            changeEach(&Molecule::inchi, {Check::InchiForm, Check::FormulaInchi}, always);
        Outcome all;
        for (const auto &[name, outcome] : {std::pair("CAS", cas), std::pair("formula", formula),
                                            std::pair("mass", mass), std::pair("InChI", inchi)}) {
            std::printf("%s: %d of %d changes found (%.2f %%)\n", name, outcome.found,
                        outcome.wrong, 100 * outcome.share());
            QVERIFY(outcome.wrong > 500);
            all.wrong += outcome.wrong;
            all.found += outcome.found;
        }
        std::printf("all: %d of %d changes found (%.2f %%)\n", all.found, all.wrong,
                    100 * all.share());
        // Most of the changes are those of the long InChI: the fields count alike here.
        const double mean = (cas.share() + formula.share() + mass.share() + inchi.share()) / 4;
        std::printf("mean of the four fields: %.2f %%\n", 100 * mean);
        QVERIFY(mean >= 0.95);
        QVERIFY(all.share() >= 0.95);
        QVERIFY(cas.share() >= 0.85);
        QVERIFY(formula.share() >= 0.95);
        QVERIFY(mass.share() >= 0.95);
        QVERIFY(inchi.share() >= 0.95);
    }
};

QTEST_GUILESS_MAIN(TestMolecules)
#include "tst_molecules.moc"

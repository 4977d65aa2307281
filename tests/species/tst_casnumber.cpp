// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/casnumber.h"
#include "support/warnings.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

struct Substance {
    const char *name;
    QLatin1StringView cas;
};

constexpr Substance substances[] = {
    {"acetone", "67-64-1"_L1},
    {"benzene", "71-43-2"_L1},
    {"carbon dioxide", "124-38-9"_L1},
    {"ethanol", "64-17-5"_L1},
    {"formaldehyde", "50-00-0"_L1},
    {"methanol", "67-56-1"_L1},
    {"naphthalene", "91-20-3"_L1},
    {"phenol", "108-95-2"_L1},
    {"pyridine", "110-86-1"_L1},
    {"toluene", "108-88-3"_L1},
    {"aniline", "62-53-3"_L1},
    {"styrene", "100-42-5"_L1},
    {"1,3-butadiene", "106-99-0"_L1},
    {"pyrrole", "109-97-7"_L1},
    {"furan", "110-00-9"_L1},
    {"thiophene", "110-02-1"_L1},
    {"cyclohexane", "110-82-7"_L1},
    {"propene", "115-07-1"_L1},
    {"allene", "463-49-0"_L1},
    {"ammonia", "7664-41-7"_L1},
    {"water", "7732-18-5"_L1},
    {"nitric oxide", "10102-43-9"_L1},
    {"butyl formate", "592-84-7"_L1},
    {"iridium fluoride", "37501-24-9"_L1},
    {"4-vinylphenol", "2628-17-3"_L1},
    {"aluminum sulfate", "10043-01-3"_L1},
    {"lutetium boride", "12688-52-7"_L1},
    {"magnesium fluoride", "7783-40-6"_L1},
    {"thallium(I) nitrite", "13826-63-6"_L1},
    {"manganese silicate", "7759-00-4"_L1},
    {"copper oxide", "1317-39-1"_L1},
    {"nickel sulfide", "12137-12-1"_L1},
    {"sec-butyl acrylate", "2998-08-5"_L1},
    {"lithium borohydride", "16949-15-8"_L1},
    {"tartaric acid", "133-37-9"_L1},
    {"mono-methyl terephthalate", "1679-64-7"_L1},
    {"zirconium chloride", "10026-11-6"_L1},
    {"1-ethyl-4-[2-(4-ethylphenyl)ethyl]benzene", "51526-06-8"_L1},
    {"2-methylheptanal", "16630-91-4"_L1},
    {"hydrochloric acid", "7647-01-0"_L1},
    {"germanium", "7440-56-4"_L1},
    {"2-methyloctanal", "7786-29-0"_L1},
};

} // namespace

class TestCasNumber : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void formAndCheckDigitDecide_data()
    {
        QTest::addColumn<QString>("cas");
        QTest::addColumn<bool>("valid");

        QTest::newRow("example") << u"58-08-2"_s << true;
        QTest::newRow("example, wrong check digit") << u"58-08-3"_s << false;
        QTest::newRow("four leading digits") << u"7732-18-5"_s << true;
        QTest::newRow("four leading digits, wrong check digit") << u"7732-18-4"_s << false;
        QTest::newRow("shortest") << u"1-23-0"_s << true;
        QTest::newRow("shortest, wrong check digit") << u"1-23-5"_s << false;
        QTest::newRow("longest") << u"1234567-89-5"_s << true;
        QTest::newRow("longest, wrong check digit") << u"1234567-89-4"_s << false;
        // 12345678-89 would have the check digit 3, 01234567-89 the 5 of the number without its
        // zero.
        QTest::newRow("eight leading digits") << u"12345678-89-3"_s << false;
        QTest::newRow("eight leading digits with a zero") << u"01234567-89-5"_s << false;
        QTest::newRow("leading zero") << u"058-08-2"_s << true;
        QTest::newRow("leading zeros up to seven digits") << u"0000058-08-2"_s << true;
        QTest::newRow("all zeros") << u"0-00-0"_s << true;

        QTest::newRow("null") << QString() << false;
        QTest::newRow("empty") << u""_s << false;
        QTest::newRow("hyphens only") << u"--"_s << false;
        QTest::newRow("first hyphen missing") << u"5808-2"_s << false;
        QTest::newRow("both hyphens missing") << u"58082"_s << false;
        QTest::newRow("one middle digit") << u"58-8-2"_s << false;
        QTest::newRow("three middle digits") << u"58-008-2"_s << false;
        QTest::newRow("no first part") << u"-08-2"_s << false;
        QTest::newRow("no check digit") << u"58-08-"_s << false;
        QTest::newRow("two check digits") << u"58-08-02"_s << false;
        QTest::newRow("a fourth part") << u"58-08-2-2"_s << false;
        QTest::newRow("letter in the first part") << u"5a-08-2"_s << false;
        QTest::newRow("letter as check digit") << u"58-08-X"_s << false;
        QTest::newRow("sign") << u"+58-08-2"_s << false;
        QTest::newRow("underscores") << u"58_08_2"_s << false;

        QTest::newRow("leading blank") << u" 58-08-2"_s << false;
        QTest::newRow("trailing blank") << u"58-08-2 "_s << false;
        QTest::newRow("blank inside") << u"58 -08-2"_s << false;
        QTest::newRow("trailing line feed") << u"58-08-2\n"_s << false;
        QTest::newRow("two trailing line feeds") << u"58-08-2\n\n"_s << false;
        QTest::newRow("trailing carriage return") << u"58-08-2\r"_s << false;
        QTest::newRow("trailing CR LF") << u"58-08-2\r\n"_s << false;
        QTest::newRow("trailing line separator") << u"58-08-2\u2028"_s << false;
        QTest::newRow("leading line feed") << u"\n58-08-2"_s << false;
        QTest::newRow("on the second line") << u"x\n58-08-2"_s << false;
        QTest::newRow("trailing null character") << QString(u"58-08-2"_s + QChar(u'\0')) << false;
        QTest::newRow("markup around") << u"<sub>58-08-2</sub>"_s << false;

        QTest::newRow("Arabic-Indic digits") << u"٥٨-٠٨-٢"_s << false;
        QTest::newRow("one full-width digit") << u"58-08-２"_s << false;
        QTest::newRow("Devanagari middle digits") << u"58-०८-2"_s << false;
        QTest::newRow("superscript check digit") << u"58-08-²"_s << false;
        QTest::newRow("mathematical digit") << u"5𝟖-08-2"_s << false;
        QTest::newRow("en dashes") << u"58–08–2"_s << false;
        QTest::newRow("non-breaking hyphens") << u"58‑08‑2"_s << false;
        QTest::newRow("lone surrogate after it") << QString(u"58-08-2"_s + QChar(0xd83e)) << false;
    }
    void formAndCheckDigitDecide()
    {
        QFETCH(QString, cas);
        QFETCH(bool, valid);
        QCOMPARE(isValidCasNumber(cas), valid);
    }

    void realNumbersAreValidAndWithAnyOtherCheckDigitAreNot_data()
    {
        QTest::addColumn<QString>("cas");
        for (const Substance &substance : substances)
            QTest::newRow(substance.name) << QString(substance.cas);
    }
    void realNumbersAreValidAndWithAnyOtherCheckDigitAreNot()
    {
        QFETCH(QString, cas);
        QVERIFY(isValidCasNumber(cas));
        const QChar right = cas.back();
        for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
            cas.back() = digit;
            QCOMPARE(isValidCasNumber(cas), QChar(digit) == right);
        }
    }

    void hugeTextIsRefusedAtOnce_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("digits") << QString(100'000, u'1');
        QTest::newRow("hyphens") << QString(100'000, u'-');
        QTest::newRow("numbers") << u"58-08-2\n"_s.repeated(12'500);
        QTest::newRow("tag openings") << QString(100'000, u'<');
    }
    void hugeTextIsRefusedAtOnce()
    {
        QFETCH(QString, text);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!isValidCasNumber(text));
        QCOMPARE_LT(clock.elapsed(), 1'000);
    }
};

QTEST_GUILESS_MAIN(TestCasNumber)
#include "tst_casnumber.moc"

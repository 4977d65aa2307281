// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/asdf.h"
#include "exchange/jcampreader.h"
#include "exchange/jcampwriter.h"
#include "spectrum/spectrumobject.h"

#include <QTest>

#include <cmath>

using Numbers = QList<double>;
using Points = QList<QPointF>;

namespace
{

// The ordinates that the standard shows in all forms.
const Numbers ordinates{0,  0,  0,  0,  2,  4,  4,  4,  7,  5,  4,  4,  5,  5,   7,   10,  11, 11,
                        6,  5,  7,  6,  9,  9,  7,  10, 10, 9,  10, 11, 12, 15,  16,  16,  14, 17,
                        38, 38, 35, 38, 42, 47, 54, 59, 66, 75, 78, 88, 96, 104, 110, 121, 128};

QByteArray file(const QByteArray &header, const QByteArray &table)
{
    return "##TITLE= t\n##JCAMP-DX= 5.01\n##XUNITS= EV\n" + header + table + "##END=\n";
}

QByteArray run(const QByteArray &lines, const QByteArray &header = {})
{
    return file("##FIRSTX= 10\n##LASTX= 15\n##NPOINTS= 6\n##XFACTOR= 1\n##YFACTOR= 0.1\n" + header,
                "##XYDATA= (X++(Y..Y))\n" + lines);
}

bool same(const Points &left, const Points &right)
{
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](const QPointF &l, const QPointF &r) { return l.x() == r.x() && l.y() == r.y(); });
}

} // namespace

// Reading and writing JCAMP-DX.
class TestJcamp : public QObject
{
    Q_OBJECT

private slots:
    void everyFormOfTheStandardsExampleGivesTheSameOrdinates_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("endsInDifference");
        QByteArray plain;
        QByteArray packed;
        QByteArray squeezed;
        for (const double value : ordinates) {
            const QByteArray digits = QByteArray::number(int(value));
            plain += ' ' + digits;
            packed += '+' + digits;
            squeezed += char('@' + digits[0] - '0') + digits.sliced(1);
        }
        QTest::newRow("AFFN") << QByteArray("599.860" + plain) << false;
        QTest::newRow("AFFN, commas")
            << QByteArray("599.860," + plain.trimmed().replace(' ', ", ")) << false;
        QTest::newRow("PAC") << QByteArray("599.860" + packed) << false;
        QTest::newRow("SQZ") << QByteArray("599.860" + squeezed) << false;
        QTest::newRow("DIFDUP") << QByteArray(
            "599.860@VKT%TLkj%J%KLJ%njKjL%kL%jJULJ%kLK1%lLMNPNPRLJ0QTOJ1P")
                                << true;
        QTest::newRow("DIF") << QByteArray("599.860@%%%KK%%Lkj%J%KLJ%njKjL%kL%jJJJLJ%kLK1%lLMNPNPRL"
                                           "J0QQOJ1P")
                             << true;
    }
    void everyFormOfTheStandardsExampleGivesTheSameOrdinates()
    {
        QFETCH(QByteArray, line);
        const auto read = readAsdfLine(line);
        const auto *data = std::get_if<AsdfLine>(&read);
        QVERIFY(data);
        QCOMPARE(data->x, 599.86);
        QCOMPARE(data->xPrecision, 0.0005);
        QCOMPARE(data->values, ordinates);
        QTEST(data->endsInDifference, "endsInDifference");
    }

    void linesAreTakenApart_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<Numbers>("values");
        QTest::newRow("negative") << QByteArray("1-2-3+4") << Numbers{-2, -3, 4};
        QTest::newRow("squeezed signs") << QByteArray("1a2A2@") << Numbers{-12, 12, 0};
        QTest::newRow("exponent") << QByteArray("1 1.5E-02 2E+1") << Numbers{0.015, 20};
        QTest::newRow("E is five") << QByteArray("1E5E") << Numbers{55, 5};
        QTest::newRow("repeats of a plain one") << QByteArray("1 7U 8") << Numbers{7, 7, 7, 8};
        QTest::newRow("ten and twelve repeats")
            << QByteArray("1A S0B") << Numbers(10, 1) + Numbers{2};
        QTest::newRow("no ordinate") << QByteArray("1") << Numbers{};
    }
    void linesAreTakenApart()
    {
        QFETCH(QByteArray, line);
        const auto read = readAsdfLine(line);
        QVERIFY(std::get_if<AsdfLine>(&read));
        QTEST(std::get<AsdfLine>(read).values, "values");
    }

    void wrongLinesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("line");
        for (const char *line : {"A1 2", "1 x", "1J", "1S", "1 +-2", "1 1.2.3", "?", "1 A#",
                                 "1 AZ99999999999", "1 --"})
            QTest::newRow(line) << QByteArray(line);
    }
    void wrongLinesAreRefused()
    {
        QFETCH(QByteArray, line);
        QVERIFY(std::holds_alternative<AsdfError>(readAsdfLine(line)));
    }

    void aRunIsReadWithItsFactorAndCheckValues()
    {
        // The third line repeats the 14 that the second ends with; the last has only that check.
        const auto read = readJcamp(run("10 1 2\n12 A3J\n13 A4J$$ a comment\n14A5J\n15 A6\n"));
        const auto *spectrum = std::get_if<ExchangedSpectrum>(&read);
        QVERIFY2(spectrum, std::get_if<ExchangeError>(&read)
                               ? std::get<ExchangeError>(read).reason.constData()
                               : "");
        QVERIFY(same(spectrum->points,
                     {{10, 0.1}, {11, 0.2}, {12, 1.3}, {13, 1.4}, {14, 1.5}, {15, 1.6}}));
        QCOMPARE(spectrum->metadata[QLatin1String("Title")].toString(), QStringLiteral("t"));
        QCOMPARE(spectrum->warnings, QByteArrayList{"1 comments ($$) are not kept"});
    }

    void whatTheFileSaysTwiceHasToAgree_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("line");
        QTest::addColumn<QByteArray>("reason");
        const auto row = [](const char *name, const QByteArray &bytes, int line,
                            const char *reason) {
            QTest::newRow(name) << bytes << line << QByteArray(reason);
        };
        row("check value", run("10 1 2 A3J\n13 15 5 6\n"), 11,
            "the check value is 15 where 14 is due");
        row("no check value", run("10 1 2 A3J\n13\n"), 11, "the check value is 0 where 14 is due");
        row("abscissa", run("10 1 2 3\n15.5 4 5 6\n"), 11, "the abscissa is 15.5 where 13 is due");
        row("first abscissa", run("12 1 2 3 4 5 6\n"), 10, "the abscissa is 12 where 10 is due");
        row("too few", run("10 1 2 3\n"), 9, "there are 3 points, but NPOINTS is 6");
        row("too many", run("10 1 2 3 4 5 6 7\n"), 10,
            "there are 7 or more points, but NPOINTS is 6");
        row("no factor", run("10 1 2 3 4 5 6\n", "##XFACTOR= x\n").replace("##XFACTOR= 1\n", ""), 8,
            "XFACTOR is not a number");
        row("unit", run("10 1 2 3 4 5 6\n").replace("EV", "SECONDS"), 3,
            "\"SECONDS\" is no unit of energies");
        row("no end", run("10 1 2 3 4 5 6\n").replace("##END=\n", ""), 11,
            "the end is missing: no ##END=");
        row("pairs of one", file("", "##XYPOINTS= (XY..XY)\n1, 2; 3\n"), 5,
            "an abscissa without an ordinate");
        row("pairs of words", file("", "##XYPOINTS= (XY..XY)\n1, 2; 3, x\n"), 5,
            "\"x\" is not a number");
        row("count of pairs", file("##NPOINTS= 3\n", "##XYPOINTS= (XY..XY)\n1, 2; 3, 4\n"), 5,
            "there are 2 points, but NPOINTS is 3");
        row("end of pairs", file("##LASTX= 4\n", "##XYPOINTS= (XY..XY)\n1, 2; 3, 4\n"), 5,
            "the last abscissa is not LASTX");
        row("another form", file("", "##XYDATA= (XYA)\n"), 4, "the form (XYA) is not known");
        row("no table", file("", ""), 1, "there are no XYDATA or XYPOINTS");
        row("text before", "hello\n" + file("", ""), 1, "text outside a labelled data record");
        row("other label first", "##END=\n", 1, "the file does not begin with ##TITLE=");
    }
    void whatTheFileSaysTwiceHasToAgree()
    {
        QFETCH(QByteArray, bytes);
        const auto read = readJcamp(bytes);
        const auto *error = std::get_if<ExchangeError>(&read);
        QVERIFY(error);
        QTEST(error->reason, "reason");
        QTEST(int(error->line), "line");
    }

    void unitsBecomeElectronVolts_data()
    {
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("energy");
        QTest::newRow("eV") << QByteArray("eV") << 10.5 << 10.5;
        QTest::newRow("meV") << QByteArray("meV") << 10500.0 << 10.5;
        // 1 eV is 8065.543937 per centimetre and 1239.841984 nanometres (CODATA 2018).
        QTest::newRow("wave numbers") << QByteArray("1/CM") << 80655.43937349 << 10.0;
        QTest::newRow("nanometres") << QByteArray("NANOMETERS") << 123.9841984332 << 10.0;
        QTest::newRow("micrometres") << QByteArray("MICROMETERS") << 0.1239841984332 << 10.0;
    }
    void unitsBecomeElectronVolts()
    {
        QFETCH(QByteArray, unit);
        QFETCH(double, x);
        QFETCH(double, energy);
        const QByteArray bytes = "##TITLE=t\n##XUNITS=" + unit + "\n##XYPOINTS=(XY..XY)\n"
                                 + QByteArray::number(x, 'g', 14) + " 1\n##END=\n";
        const auto read = readJcamp(bytes);
        QVERIFY(std::get_if<ExchangedSpectrum>(&read));
        const auto &spectrum = std::get<ExchangedSpectrum>(read);
        QVERIFY(std::abs(spectrum.points.first().x() - energy) < 1e-9);
        QCOMPARE(spectrum.warnings.size(), unit == "eV" ? 0 : 1);
    }

    void labelsWithoutAFieldBecomeComments()
    {
        const auto read = readJcamp(file("##ORIGIN= here\n##SAMPLE DESCRIPTION=\n one\n two\n"
                                         "##YUNITS= ABSORBANCE\n",
                                         "##XYPOINTS= (XY..XY)\n1 2\n3 ?\n"));
        const auto *spectrum = std::get_if<ExchangedSpectrum>(&read);
        QVERIFY(spectrum);
        QCOMPARE(spectrum->metadata[QLatin1String("FurtherComments")].toString(),
                 QStringLiteral("ORIGIN= here<br>SAMPLE DESCRIPTION= one<br> two<br>"
                                "YUNITS= ABSORBANCE"));
        QCOMPARE(spectrum->points.size(), 1);
        QCOMPARE(spectrum->warnings,
                 QByteArrayList{"1 points without an ordinate (?) are left out"});
    }

    void blocksAreCounted()
    {
        const QByteArray inner = file("", "##XYPOINTS= (XY..XY)\n1 2\n");
        const QByteArray second = QByteArray(inner).replace("1 2", "3 4");
        const QByteArray link = "##TITLE= all\n##BLOCKS= 2\n" + inner + second + "##END=\n";
        QVERIFY(std::get<ExchangeError>(readJcamp(link)).reason.contains("--spectrum"));
        const auto read = readJcamp(link, {2});
        QVERIFY(same(std::get<ExchangedSpectrum>(read).points, {{3, 4}}));
        QVERIFY(std::holds_alternative<ExchangeError>(readJcamp(link, {3})));
    }

    void whatIsWrittenIsReadAgainToTheLastDigit_data()
    {
        QTest::addColumn<Points>("points");
        QTest::addColumn<QByteArray>("table");
        const auto row = [](const char *name, const Points &points, const char *table) {
            QTest::newRow(name) << points << QByteArray(table);
        };
        Points even;
        Points many;
        for (int i = 0; i < 1000; ++i) {
            even.append({(91000 + 25 * i) / 10000.0, std::round(1e5 * std::sin(i)) / 1e3});
            many.append({9 + 0.001 * i + 1e-7 * (i % 3), std::sin(i)});
        }
        row("even", even, "XYDATA");
        row("falling", {{12, 1}, {11, 2}, {10, -3}}, "XYDATA");
        row("many digits", many, "XYPOINTS");
        row("even with many digits", {{1, 0.123456789012}, {2, 1}, {3, 2}}, "XYPOINTS");
        row("small", {{1, 1.5e-12}, {2, 3e-300}}, "XYPOINTS");
        row("one", {{1, 2}}, "XYPOINTS");
        row("none", {}, "XYPOINTS");
        row("repeated", {{1, 2}, {1, 3}}, "XYPOINTS");
    }
    void whatIsWrittenIsReadAgainToTheLastDigit()
    {
        QFETCH(Points, points);
        QFETCH(QByteArray, table);
        const QString text = QStringLiteral("x $$ \"é\"\n##END=\n  <sub>2</sub> ")
                             + QString(300, QLatin1Char(' ')) + QLatin1String("##y\\");
        QJsonObject object{{QStringLiteral("Title"), text},
                           {QStringLiteral("T"), QString()},
                           {spectrumTypeKey, 4},
                           {lineSpectrumKey, true}};
        const QJsonObject metadata = object;
        storePoints(object, points);
        const QByteArray bytes = writeJcamp(object);
        QVERIFY(bytes.contains(QByteArray("##" + table + '=')));
        for (const QByteArray &line : bytes.split('\n')) {
            QVERIFY2(line.size() <= 80, line.constData());
            for (const char c : line)
                QVERIFY(c >= ' ' && c <= '~');
        }
        const auto read = readJcamp(bytes);
        const auto *spectrum = std::get_if<ExchangedSpectrum>(&read);
        QVERIFY2(spectrum, std::get_if<ExchangeError>(&read)
                               ? std::get<ExchangeError>(read).reason.constData()
                               : "");
        QVERIFY(same(spectrum->points, points));
        QCOMPARE(spectrum->metadata, metadata);
        QVERIFY(spectrum->warnings.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestJcamp)
#include "tst_jcamp.moc"

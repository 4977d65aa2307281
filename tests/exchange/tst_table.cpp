// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/tablereader.h"
#include "exchange/tablewriter.h"
#include "spectrum/spectrumobject.h"

#include <QTest>

#include <cmath>

using Points = QList<QPointF>;

namespace
{

bool same(const Points &left, const Points &right)
{
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](const QPointF &l, const QPointF &r) { return l.x() == r.x() && l.y() == r.y(); });
}

} // namespace

// Reading and writing tables of numbers.
class TestTable : public QObject
{
    Q_OBJECT

private slots:
    void tablesAreRead_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Points>("points");
        const auto row = [](const QByteArray &bytes, const Points &points) {
            QTest::newRow(bytes.constData()) << bytes << points;
        };
        const Points two{{9.5, 100}, {9.6, 200.25}};
        row("9.5,100\n9.6,200.25\n", two);
        row("9.5 100\n9.6 200.25", two);
        row("  9.5 \t 100\r\n\r\n9.6\t 200.25\r\n", two);
        row("9.5;100;\r9.6;200.25;\r", two);
        row("9.5; 100\n9.6; 200.25\n", two);
        row("9.5, 100\n9.6, 2.0025e+02\n", two);
        row("9,5;100\n9,6;200,25\n", two);
        row("9,5\t100\n9,6\t200,25\n", two);
        row("9,5 100\n9,6 200,25\n", two);
        row("\"9,5\",\"100\"\n\"9,6\",\"200,25\"\n", two);
        row("\xef\xbb\xbf"
            "E,I\n9.5,100\n9.6,200.25\n",
            two);
        row("Energy / eV,Intensity\n9.5,100\n9.6,200.25\n", two);
        row("# made by hand\n\nhv (eV)\tI\n9.5\t100\n9.6\t200.25\n", two);
        row("9.5,100\n9.6,200\n10,300\n", {{9.5, 100}, {9.6, 200}, {10, 300}});
        row("12.345,1234\n", {{12.345, 1234}});
        row("9,100\n10,200\n", {{9, 100}, {10, 200}});
        row(QByteArray("\xff\xfe"
                       "9\0.\0"
                       "5\0;\0"
                       "1\0\n\0",
                       14),
            {{9.5, 1}});
    }
    void tablesAreRead()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Points, points);
        const auto read = readTable(bytes, {});
        const auto *spectrum = std::get_if<ExchangedSpectrum>(&read);
        QVERIFY2(spectrum, std::get_if<ExchangeError>(&read)
                               ? std::get<ExchangeError>(read).reason.constData()
                               : "");
        QVERIFY(same(spectrum->points, points));
    }

    void doubtfulTablesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("line");
        QTest::addColumn<QByteArray>("reason");
        const auto row = [](const QByteArray &bytes, int line, const char *reason) {
            QTest::newRow(bytes.constData()) << bytes << line << QByteArray(reason);
        };
        row("", 0, "there is no row of numbers");
        row("hello\n", 0, "there is no row of numbers");
        row("1\n2\n3\n", 0, "there is no row of numbers");
        row("1,2,3\n", 1, "3 columns: name the two that count by --columns");
        row("9,1,100,2\n", 1,
            "4 columns: name the two that count by --columns (or, if the commas are decimal ones, "
            "separate the numbers otherwise)");
        row("1,2\n3,4\nend\n", 3, "1 column, but 2 above");
        row("1,2\n3,nan\n", 2, "\"nan\" is not a finite number");
        row("1,2\n3,1e999\n", 2, "\"1e999\" is not a finite number");
        row("1,2\n3,0x5\n", 2, "\"0x5\" is not a finite number");
        row("1.5,2\n3,\n", 2, "1 column, but 2 above");
        row("1,234\t5,678\n", 1,
            "the commas could be decimal ones or between thousands: say "
            "--decimal comma, or take them out");
        row("wavelength,I\n120,5\n", 1, "\"wavelength\" names wavelengths without a unit");
        row("E / J;I\n80000;5\n", 1,
            "\"E / J\" does not name a unit that can be converted to eV: J");
    }
    void doubtfulTablesAreRefused()
    {
        QFETCH(QByteArray, bytes);
        const auto read = readTable(bytes, {});
        const auto *error = std::get_if<ExchangeError>(&read);
        QVERIFY(error);
        QTEST(error->reason, "reason");
        QTEST(int(error->line), "line");
    }

    void whatIsSaidSettlesTheDoubt()
    {
        const auto comma = readTable("1,234\t5,678\n", {',', {}});
        QVERIFY(same(std::get<ExchangedSpectrum>(comma).points, {{1.234, 5.678}}));
        const auto columns = readTable("t,I,E\n1,2,3\n4,5,6\n", {0, {"E", "2"}});
        QVERIFY(same(std::get<ExchangedSpectrum>(columns).points, {{3, 2}, {6, 5}}));
        QCOMPARE(std::get<ExchangedSpectrum>(columns).warnings,
                 QByteArrayList{"column 1 is not kept: t"});
        const auto none = readTable("1,2\n", {0, {"1", "x"}});
        QCOMPARE(std::get<ExchangeError>(none).reason, "there is no column x");
    }

    void whatIsNotKeptIsSaid()
    {
        const auto read =
            readTable("# Title: a\n# beam: 4\nmade today\nE,counts\n1,2\n# end\n", {});
        const auto &spectrum = std::get<ExchangedSpectrum>(read);
        QCOMPARE(spectrum.metadata[QLatin1String("Title")].toString(), QStringLiteral("a"));
        QCOMPARE(spectrum.warnings,
                 (QByteArrayList{"line 2 is not kept: # beam: 4", "line 6 is not kept: # end",
                                 "line 3 is not kept: made today",
                                 "the heading \"counts\" is not kept"}));
        const auto latin = readTable("\xb5\n1,2\n", {});
        QCOMPARE(std::get<ExchangedSpectrum>(latin).warnings.first(),
                 "the text is not UTF-8; read as Latin-1");
    }

    void whatIsWrittenIsReadAgain_data()
    {
        QTest::addColumn<char>("separator");
        QTest::addColumn<char>("decimal");
        QTest::newRow("csv") << ',' << '.';
        QTest::newRow("tsv") << '\t' << '.';
        QTest::newRow("csv, decimal comma") << ';' << ',';
        QTest::newRow("tsv, decimal comma") << '\t' << ',';
    }
    void whatIsWrittenIsReadAgain()
    {
        QFETCH(char, separator);
        QFETCH(char, decimal);
        QJsonObject object{
            {QStringLiteral("Title"), QStringLiteral(" a\n\"b\" é, x: y")},
            {QStringLiteral("T"), QString()},
            {QStringLiteral("Uploader"), QStringLiteral("\"quoted\"")},
            {QStringLiteral("AIE"), QStringLiteral("9.1")},
            {spectrumTypeKey, 4},
            {lineSpectrumKey, true},
        };
        const QJsonObject metadata = object;
        Points points;
        for (int i = 0; i < 100; ++i)
            points.append({9 + i / 3.0, std::pow(-1.7, i)});
        storePoints(object, points);
        const auto read = readTable(writeTable(object, separator, decimal), {});
        const auto &spectrum = std::get<ExchangedSpectrum>(read);
        QVERIFY(same(spectrum.points, points));
        QCOMPARE(spectrum.metadata, metadata);
        QVERIFY(spectrum.warnings.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestTable)
#include "tst_table.moc"

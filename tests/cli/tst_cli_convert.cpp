// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"
#include "testconsole.h"
#include "testfiles.h"

#include <QDate>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QByteArray furan = ZORAVEL_EXAMPLES "/furan.json";

} // namespace

// zoravel convert.
class TestCliConvert : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
    }

    void aSpectrumComesBackFromEveryFormat_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArrayList>("options");
        QTest::newRow("csv") << QByteArray("x.csv") << QByteArrayList();
        QTest::newRow("csv, comma") << QByteArray("x.csv") << QByteArrayList{"--decimal", "comma"};
        QTest::newRow("tsv") << QByteArray("x.tsv") << QByteArrayList();
        QTest::newRow("jcamp") << QByteArray("x.jdx") << QByteArrayList();
        QTest::newRow("json") << QByteArray("x.json") << QByteArrayList();
    }
    void aSpectrumComesBackFromEveryFormat()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArrayList, options);
        const QJsonObject species = fileObject(QString::fromUtf8(furan));
        for (const char *number : {"1", "2", "3"}) {
            TestConsole console;
            QCOMPARE(
                console.run(QByteArrayList{"convert", "-s", number, "-o", name, furan} + options),
                0);
            QCOMPARE(console.output + console.errors, "");
            QCOMPARE(console.run({"convert", "-t", "json", name}), 0);
            QCOMPARE(console.errors, "");
            QJsonObject spectrum = QJsonDocument::fromJson(console.output).object();
            QCOMPARE(spectrum.take(QLatin1String("Type")).toString(),
                     QStringLiteral("Spectrum v1"));
            QCOMPARE(spectrum,
                     species[QLatin1String("Dataset") + QString::fromUtf8(number)].toObject());
        }
    }

    void fieldsAreSetAndTodayIsTheDate()
    {
        TestConsole console;
        console.input = "1,2\n";
        QCOMPARE(console.run({"convert", "-t", "json", "--meta", "title=a=b", "--meta",
                              "SpectType=pes", "--meta", "Source=lamp", "-"}),
                 0);
        const QJsonObject spectrum = QJsonDocument::fromJson(console.output).object();
        QCOMPARE(spectrum[QLatin1String("Title")].toString(), QStringLiteral("a=b"));
        QCOMPARE(spectrum[QLatin1String("Source")].toString(), QStringLiteral("lamp"));
        QCOMPARE(spectrum[QLatin1String("SpectType")].toInt(), 3);
        QCOMPARE(spectrum[QLatin1String("E")].toArray(), QJsonArray{1});
        const QString date = spectrum[QLatin1String("CreatedDate")].toString();
        QVERIFY(QDate::fromString(date, Qt::ISODate).daysTo(QDate::currentDate()) <= 1);
        QCOMPARE(spectrum.size(), 16);
    }

    void whatDoesNotBelongToTheSpectrumIsSaid()
    {
        writeFile(QStringLiteral("s.json"), R"({"Type": "Spectrum v1", "SpectType": 0, "AIE": "9",
            "Foo": 1, "T": 300, "DOI": "x", "DOI": "", "CreatedDate": "x", "E": [1.23456789], "I": [2]})");
        TestConsole console;
        QCOMPARE(console.run({"convert", "-t", "csv", "s.json"}), 0);
        QCOMPARE(console.errors, "zoravel: s.json: not kept: /DOI: the key is written again below\n"
                                 "zoravel: s.json: not kept: AIE: 9\n"
                                 "zoravel: s.json: not kept: Foo: 1\n"
                                 "zoravel: s.json: not kept: T: 300\n");
        QVERIFY(console.output.endsWith("E / eV,I\n1.23456789,2\n"));
    }

    void ofAFieldThatIsKeptInPartBothAreSaid()
    {
        TestConsole console;
        const auto run = [&](const QByteArray &field) {
            console.input = "9.1 1\n9.2 2\n";
            return console.run({"convert", "-t", "csv", "--meta", field, "-"});
        };
        QCOMPARE(run("Title=Größe <b>"), 0);
        QCOMPARE(console.errors,
                 "zoravel: <stdin>: not kept: Title: Größe <b> becomes \"Größe \"\n");
        QVERIFY(console.output.contains("# Title: \"Größe \"\n"));
        QCOMPARE(run("Title=a<b>c</b>d"), 0);
        QCOMPARE(console.errors, "zoravel: <stdin>: not kept: Title: a<b>c</b>d becomes acd\n");
        QCOMPARE(run("Title=<b>"), 0);
        QCOMPARE(console.errors, "zoravel: <stdin>: not kept: Title: <b>\n");
        QCOMPARE(run("SpectType=17"), 0);
        QCOMPARE(console.errors, "");
        QCOMPARE(run("Title=a<sub>2</sub>"), 0);
        QCOMPARE(console.errors, "");
    }

    void withoutAFormatTheReasonIsSaid()
    {
        writeFile(QStringLiteral("in.csv"), "9.1,1\n9.2,2\n");
        TestConsole console;
        for (const QByteArrayList &words :
             QList<QByteArrayList>{{"gone"}, {"-o", "scan.xyz", "gone"}, {"-o", "scan", "gone"}}) {
            QCOMPARE(console.run(QByteArrayList{"convert"} + words), 3);
            QCOMPARE(console.errors, "zoravel: gone: no such file\n");
        }
        const auto refusal = [&](const QByteArray &output) {
            const int status = console.run({"convert", "-o", output, "in.csv"});
            return status == 2 ? console.errors.left(console.errors.indexOf('\n')) : QByteArray();
        };
        const QByteArray start = "zoravel convert: ";
        QCOMPARE(refusal("scan.xyz"),
                 start + "the ending .xyz tells no format, and --to FORMAT is missing");
        QCOMPARE(refusal("a.b/scan"),
                 start
                     + "a.b/scan has no ending that tells the format, and --to FORMAT is missing");
        QCOMPARE(refusal("scan."),
                 start + "scan. has no ending that tells the format, and --to FORMAT is missing");
        QCOMPARE(
            refusal("a.csv/scan"),
            start + "a.csv/scan has no ending that tells the format, and --to FORMAT is missing");
        QCOMPARE(refusal("-"), start + "--to FORMAT is missing");
    }

    void aHyphenIsStandardOutputToo()
    {
        TestConsole console;
        console.input = "9.1 1\n9.2 2\n";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-o", "-", "-"}), 0);
        QVERIFY(console.output.endsWith("9.1\t1\n9.2\t2\n"));
        QVERIFY(QDir().isEmpty());
    }

    void aByteOrderMarkIsPassedOver()
    {
        TestConsole console;
        console.input = "\xef\xbb\xbf{\"Type\": \"Spectrum v1\", \"E\": [9.1], \"I\": [1]}";
        QCOMPARE(console.run({"convert", "-t", "tsv", "-"}), 0);
        QVERIFY(console.output.endsWith("9.1\t1\n"));
    }

    void badInputIsRefusedWithItsPlace_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("error");
        const auto row = [](const QByteArray &bytes, const char *error) {
            QTest::newRow(error) << bytes << QByteArray(error);
        };
        row("1,2\nx\n", ":2: 1 column, but 2 above");
        row("##TITLE=\n##END=\n", ":1: there are no XYDATA or XYPOINTS");
        row("{\"Type\":\n 1,}", ":2: no JSON: ");
        row("{}", ": neither a species nor a spectrum file");
        row(R"({"Type": "Species v1"})", ": there is no spectrum");
        row(R"({"Type": "Species v1", "Dataset1": {}, "Dataset2": {}})",
            ": there are 2 spectra: say which one by --spectrum");
        row(R"({"Type": "Spectrum v1", "E": [1, 2], "I": [1]})",
            ": the points are not sound: 2 energies and 1 intensities");
        row(R"({"Type": "Spectrum v1", "E": ["1"], "I": [1]})",
            ": the points are not sound: 1 values that are no numbers");
    }
    void badInputIsRefusedWithItsPlace()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, error);
        writeFile(QStringLiteral("in"), bytes);
        writeFile(QStringLiteral("out.csv"), "old");
        TestConsole console;
        QCOMPARE(console.run({"convert", "-o", "out.csv", "in"}), 3);
        QVERIFY2(console.errors.startsWith(QByteArray("zoravel: in" + error)),
                 console.errors.constData());
        QCOMPARE(console.errors.count('\n'), 1);
        QCOMPARE(fileBytes(QStringLiteral("out.csv")), "old");
    }

    void wrongUsageIsRefused_data()
    {
        QTest::addColumn<QByteArrayList>("words");
        QTest::addColumn<QByteArray>("error");
        const auto row = [](const QByteArrayList &words, const char *error) {
            QTest::newRow(error) << words << QByteArray(error);
        };
        row({"water.json"}, "--to FORMAT is missing");
        row({"-t", "jcmp", "x"}, "the format jcmp is none of csv, tsv, jcamp, json; did you mean "
                                 "jcamp?");
        row({"-t", "csv", "x", "y"}, "one file has to be named");
        row({"-t", "csv", "-s", "all", "x"}, "--spectrum all is not a number");
        row({"-t", "csv", "--decimal", ",", "x"}, "the decimal sign is point or comma, not ,");
        row({"-t", "csv", "--columns", "1", "x"}, "--columns needs two columns, as 1,2");
        row({"-t", "csv", "--meta", "x", "x"}, "--meta x is not of the form KEY=VALUE");
        row({"-t", "csv", "--meta", "titel=x", "x"},
            "a spectrum has no field titel; did you mean Title?");
        row({"-t", "csv", "--meta", "SpectType=XPS", "x"}, "XPS is no value of SpectType");
        row({"-o", "water.json", "x"}, "water.json is a species file, which is not overwritten");
        row({"-t", "csv", "-o", "water.json", "water.json"}, "OUT is FILE itself");
    }
    void wrongUsageIsRefused()
    {
        QFETCH(QByteArrayList, words);
        QFETCH(QByteArray, error);
        QVERIFY(QFile::copy(QStringLiteral(ZORAVEL_EXAMPLES "/water.json"),
                            QStringLiteral("water.json")));
        const QByteArray before = fileBytes(QStringLiteral("water.json"));
        TestConsole console;
        QCOMPARE(console.run(QByteArrayList{"convert"} + words), 2);
        QCOMPARE(console.errors,
                 "zoravel convert: " + error + "\nSee \"zoravel convert --help\".\n");
        QCOMPARE(fileBytes(QStringLiteral("water.json")), before);
    }

    void standardInputThatIsClosedIsSaid()
    {
        TestConsole console;
        QCOMPARE(console.run({"convert", "-t", "csv", "-"}), 3);
        QCOMPARE(console.errors, "zoravel: standard input cannot be read\n");
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestCliConvert)
#include "tst_cli_convert.moc"

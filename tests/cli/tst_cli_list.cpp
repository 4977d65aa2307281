// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"
#include "testconsole.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

// zoravel list.
class TestCliList : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        writeFile(path(QStringLiteral("w.json")),
                  R"({"Type": "Species v1", "Species": {"Name": "Wasser <br>é", "Formula":
                  "H<sub>2</sub>O<sup>+</sup>", "CAS": "7732-18-5", "AIE": "12.6", "VIE": 12.7},
                  "Dataset1": {"SpectType": 5}, "Dataset02": {"SpectType": 0}, "Dataset3":
                  {"SpectType": 0}, "Dataset4": {"SpectType": 17}, "Datasetx": {}})");
        writeFile(path(QStringLiteral("empty.json")), R"({"Type": "Species v1"})");
    }

    void theTableIsAligned()
    {
        TestConsole console;
        QCOMPARE(console.run({"list", "w.json", "empty.json"}), 0);
        QCOMPARE(console.output,
                 "file        name      formula  CAS        AIE   VIE  spectra  types\n"
                 "w.json      Wasser é  H2O+     7732-18-5  12.6       4        "
                 "2 ms-TPES, PIS, type 17\n"
                 "empty.json                                           0\n");
    }

    void tabsSeparateTheColumnsOfTsv()
    {
        TestConsole console;
        QCOMPARE(console.run({"list", "--format=tsv", "."}), 0);
        QCOMPARE(console.output,
                 "file\tname\tformula\tCAS\tAIE\tVIE\tspectra\ttypes\n"
                 "./empty.json\t\t\t\t\t\t0\t\n"
                 "./w.json\tWasser é\tH2O+\t7732-18-5\t12.6\t\t4\t2 ms-TPES, PIS, type 17\n");
    }

    void jsonIsAnArrayOfObjects()
    {
        TestConsole console;
        QCOMPARE(console.run({"list", "-fjson", "."}), 0);
        const QJsonArray rows = QJsonDocument::fromJson(console.output).array();
        QCOMPARE(rows.size(), 2);
        const QJsonObject row = rows[1].toObject();
        QCOMPARE(row.size(), 8);
        QCOMPARE(row[QLatin1String("file")].toString(), QStringLiteral("./w.json"));
        QCOMPARE(row[QLatin1String("formula")].toString(), QStringLiteral("H2O+"));
        QCOMPARE(row[QLatin1String("spectra")].toInt(), 4);
        QCOMPARE(row[QLatin1String("types")].toObject()[QLatin1String("ms-TPES")].toInt(), 2);
    }

    void controlCharactersOfTextsDoNotReachTheTerminal()
    {
        writeFile(QStringLiteral("w.json"),
                  "{\"Type\": \"Species v1\", \"Species\": {\"Name\": \"a\\u001b[31m\"}}");
        TestConsole console;
        for (const char *form : {"text", "tsv"}) {
            QCOMPARE(console.run({"list", "-f", form, "w.json"}), 0);
            QVERIFY(console.output.contains("a\\x1b[31m"));
            QVERIFY(!console.output.contains('\x1b'));
        }
    }

    void aFolderWithoutSpeciesIsSaid()
    {
        QDir().mkpath(path(QStringLiteral("none")));
        QDir().mkpath(path(QStringLiteral("other")));
        writeFile(QStringLiteral("other/db.json"), R"({"Type": "Database v1"})");
        TestConsole console;
        QCOMPARE(console.run({"list", "none"}), 3);
        QCOMPARE(console.output, "");
        QCOMPARE(console.errors, "zoravel: none: there is no species file in it\n");
        QCOMPARE(console.run({"list", "-f", "json", "none"}), 3);
        QCOMPARE(console.output, "[]\n");
        QCOMPARE(console.run({"list", "other"}), 3);
        QCOMPARE(console.errors, "zoravel: there is no species file\n");
        QCOMPARE(console.run({"list", "-f", "tsv", "none", "w.json"}), 3);
        QCOMPARE(console.output.count('\n'), 2);
        QCOMPARE(console.errors, "zoravel: none: there is no species file in it\n");
        for (const char *form : {"text", "tsv", "json"})
            QCOMPARE(console.run({"list", "-f", form, "other", "w.json"}), 0);
    }

    void otherKindsOfFilesInAFolderArePassedOver()
    {
        writeFile(QStringLiteral("db.json"), R"({"Type": "Database v1"})");
        writeFile(QStringLiteral("s.json"), R"({"Type": "Spectrum v1"})");
        TestConsole console;
        QCOMPARE(console.run({"list", "-ftsv", "."}), 0);
        QCOMPARE(console.errors, "");
        QCOMPARE(console.output.count('\n'), 3);
        QCOMPARE(console.run({"list", "-ftsv", ".", "s.json"}), 3);
        QCOMPARE(console.errors, "zoravel: s.json: not a species file\n");
        writeFile(QStringLiteral("x.json"), R"({"Type": "Species v2"})");
        QCOMPARE(console.run({"list", "-ftsv", "."}), 3);
        QCOMPARE(console.errors, "zoravel: ./x.json: not a species file\n");
    }

    void aBadFileIsNamedAndTheOthersAreListed()
    {
        writeFile(path(QStringLiteral("a.json")), "x");
        TestConsole console;
        QCOMPARE(console.run({"list", "-f", "tsv", "gone.json", "."}), 3);
        QCOMPARE(console.errors, "zoravel: gone.json: no such file\n"
                                 "zoravel: ./a.json: not a species file\n");
        QCOMPARE(console.output.count('\n'), 3);
    }

private:
    // Within the test's folder, which is the current one meanwhile.
    QString path(const QString &name) const
    {
        QDir::setCurrent(m_folder->path());
        return m_folder->filePath(name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestCliList)
#include "tst_cli_list.moc"

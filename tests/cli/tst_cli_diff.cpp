// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/pointdifference.h"
#include "support/files.h"
#include "testconsole.h"
#include "testfiles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <array>

// Sanitizers need many times the program's memory.
#if defined(Q_OS_UNIX) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define MEASURES_MEMORY
#include <sys/resource.h>
#endif

using Points = QList<QPointF>;

// zoravel diff.
class TestCliDiff : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
    }

    void pointsOfTheSameEnergyBelongTogether_data()
    {
        QTest::addColumn<Points>("before");
        QTest::addColumn<Points>("after");
        QTest::addColumn<QList<int>>("counts"); // added, removed, changed, reordered
        QTest::addColumn<QPointF>("largest");   // where and how much
        const auto row = [](const char *name, const Points &before, const Points &after,
                            const QList<int> &counts, const QPointF &largest = {}) {
            QTest::newRow(name) << before << after << counts << largest;
        };
        row("nothing", {}, {}, {0, 0, 0, 0});
        row("equal", {{1, 2}, {3, 4}}, {{1, 2}, {3, 4}}, {0, 0, 0, 0});
        row("added", {{1, 2}}, {{0.5, 1}, {1, 2}, {3, 4}}, {2, 0, 0, 0});
        row("removed", {{1, 2}, {3, 4}}, {{3, 4}}, {0, 1, 0, 0});
        row("changed", {{1, 2}, {3, 4}, {5, 6}}, {{1, 2.5}, {3, 1}, {5, 6}}, {0, 0, 2, 0}, {3, 3});
        row("another energy", {{1, 2}}, {{1.0000001, 2}}, {1, 1, 0, 0});
        row("the last digit", {{1, 2}}, {{1, 2.0000000000000004}}, {0, 0, 1, 0},
            {1, 4.440892098500626e-16});
        row("repeated energies", {{1, 2}, {1, 3}}, {{1, 2}, {1, 4}, {1, 5}}, {1, 0, 1, 0}, {1, 1});
        row("another order", {{1, 2}, {3, 4}}, {{3, 4}, {1, 2}}, {0, 0, 0, 1});
    }
    void pointsOfTheSameEnergyBelongTogether()
    {
        QFETCH(Points, before);
        QFETCH(Points, after);
        QFETCH(QPointF, largest);
        const PointDifference d = differenceOf(before, after);
        QTEST((QList<int>{int(d.added), int(d.removed), int(d.changed), d.reordered ? 1 : 0}),
              "counts");
        QVERIFY(d.largestAtEv == largest.x() && d.largest == largest.y());
    }

    void equalFilesHaveNoDifference()
    {
        TestConsole console;
        QCOMPARE(
            console.run({"diff", ZORAVEL_EXAMPLES "/furan.json", ZORAVEL_EXAMPLES "/furan.json"}),
            0);
        QCOMPARE(console.output + console.errors, "");
    }

    void fieldsAndPointsAreComparedOneByOne()
    {
        writeFile(QStringLiteral("a.json"), R"({"Type": "Species v1", "Species":
            {"Name": "a", "Mass": 1, "CAS": "1"}, "Dataset1": {"Title": "t", "SpectType": 1, "T": "3",
            "E": [1, 2, 3], "I": [1, 1, 1]}})");
        writeFile(QStringLiteral("b.json"), R"({"Type": "Species v1", "Species":
            {"Name": "b\n", "Mass": 1, "Note": true}, "Dataset1": {"Title": "u"},
            "Dataset7": {"Title": "t", "SpectType": 1, "T": "4", "E": [1, 2, 4, 5], "I":
            [1, 1.5, 1, 1]}, "X": 1})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 1);
        QCOMPARE(console.errors, "");
        QCOMPARE(console.output, "Profile\n"
                                 "  CAS: \"1\" -> nothing\n"
                                 "  Name: \"a\" -> \"b\\n\"\n"
                                 "  Note: nothing -> true\n"
                                 "File\n"
                                 "  X: nothing -> 1\n"
                                 "Dataset1 -> Dataset7 (t)\n"
                                 "  points: 2 added, 1 removed, 1 changed, by up to 0.5 at 2 eV\n"
                                 "  T: \"3\" -> \"4\"\n"
                                 "Dataset1 (u)\n"
                                 "  added, with 0 points\n");
    }

    void spectraThatOnlyGotAnotherNumberDoNotDiffer()
    {
        writeFile(QStringLiteral("a.json"), R"({"Type": "Species v1", "Dataset1": {"T": "1"},
            "Dataset2": {"T": "2"}})");
        writeFile(QStringLiteral("b.json"), R"({"Type": "Species v1", "Dataset1": {"T": "2"},
            "Dataset2": {"T": "1"}})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 0);
    }

    void theSpectraThatAreMostAlikeBelongTogether_data()
    {
        QTest::addColumn<QByteArray>("before"); // spectra
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QByteArray>("output");
        const auto row = [](const char *name, const QByteArrayList &before,
                            const QByteArrayList &after, const QByteArray &output) {
            QTest::newRow(name) << before.join(", ") << after.join(", ") << output;
        };
        const auto spectrum = [](int number, const QByteArray &intensities,
                                 const QByteArray &title = "t") -> QByteArray {
            return "\"Dataset" + QByteArray::number(number) + "\": {\"E\": [1, 2, 3, 4], \"I\": ["
                   + intensities + "], \"Title\": \"" + title + "\"}";
        };
        const QByteArray one = "1, 2.1234567, 3, 4";
        const QByteArray rounded = "1, 2.123457, 3, 4";
        const QByteArray other = "5, 6, 7, 8";
        const auto changed = [](const QByteArray &heading) -> QByteArray {
            return heading + "\n  points: 0 added, 0 removed, 1 changed, by up to 3e-07 at 2 eV\n";
        };
        row("one of several copies is changed",
            {spectrum(1, one), spectrum(2, other), spectrum(4, one), spectrum(5, one)},
            {spectrum(1, rounded), spectrum(2, other), spectrum(4, one), spectrum(5, one)},
            changed("Dataset1 (t)"));
        row("the last copy is changed", {spectrum(1, one), spectrum(2, one)},
            {spectrum(1, one), spectrum(2, rounded)}, changed("Dataset2 (t)"));
        row("one is taken out before a changed one", {spectrum(1, other), spectrum(2, one)},
            {spectrum(1, rounded)},
            changed("Dataset2 -> Dataset1 (t)") + "Dataset1 (t)\n  removed, with 4 points\n");
        row("one is put in before a changed one", {spectrum(1, one)},
            {spectrum(1, other), spectrum(2, rounded)},
            changed("Dataset1 -> Dataset2 (t)") + "Dataset1 (t)\n  added, with 4 points\n");
        row("two are changed", {spectrum(1, one, "a"), spectrum(2, other, "b")},
            {spectrum(1, one, "c"), spectrum(2, other, "d")},
            "Dataset1 (a)\n  Title: \"a\" -> \"c\"\n"
            "Dataset2 (b)\n  Title: \"b\" -> \"d\"\n");
        row("nothing is alike but the keys", {spectrum(2, one, "a"), spectrum(3, one, "b")},
            {spectrum(1, other, "c"), spectrum(3, other, "d")},
            "Dataset2 -> Dataset1 (a)\n  points: 0 added, 0 removed, 4 changed, by up to 4 at 1 "
            "eV\n"
            "  Title: \"a\" -> \"c\"\n"
            "Dataset3 (b)\n  points: 0 added, 0 removed, 4 changed, by up to 4 at 1 eV\n"
            "  Title: \"b\" -> \"d\"\n");
    }
    void theSpectraThatAreMostAlikeBelongTogether()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        writeFile(QStringLiteral("a.json"), R"({"Type": "Species v1", )" + before + '}');
        writeFile(QStringLiteral("b.json"), R"({"Type": "Species v1", )" + after + '}');
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 1);
        QTEST(console.output, "output");
    }

    void thousandsOfSpectraThatAreAllAlikeArePairedByTheirKeys()
    {
        constexpr int count = 10'000;
        const auto write = [](const char *name, const QByteArray &members) {
            QByteArray text = R"({"Type": "Species v1")";
            for (int i = 1; i <= count; ++i)
                text += ", \"Dataset" + QByteArray::number(i) + "\": {" + members + '}';
            writeFile(QString::fromLatin1(name), text + '}');
        };
        write("a.json", "");
        write("b.json", R"("DOI": "x")");
        TestConsole console;
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 1);
        QCOMPARE_LT(clock.elapsed(), 20'000);
        QCOMPARE(console.output.count("\n  DOI: nothing -> \"x\"\n"), count);
        QVERIFY(!console.output.contains(" -> Dataset"));
    }

    void controlCharactersOfKeysAndTitlesDoNotReachTheTerminal()
    {
        writeFile(QStringLiteral("a.json"), "{\"Type\": \"Species v1\", \"k\\n\": 1,"
                                            "\"Dataset1\": {\"Title\": \"\\u001b[31m\"}}");
        writeFile(QStringLiteral("b.json"), R"({"Type": "Species v1", "k\n": 2})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 1);
        QCOMPARE(console.output, "File\n  k\\n: 1 -> 2\n"
                                 "Dataset1 (\\x1b[31m)\n  removed, with 0 points\n");
    }

    void spectrumFilesAreCompared()
    {
        writeFile(QStringLiteral("a.json"), R"({"Type": "Spectrum v1", "E": [1], "I": [2]})");
        writeFile(QStringLiteral("b.json"),
                  R"({"Type": "Spectrum v1", "Spectrum": [{"E": 1, "I": 2}]})");
        writeFile(QStringLiteral("c.json"), R"({"Type": "Spectrum v1", "E": [1, 2], "I": [2]})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 0);
        QCOMPARE(console.run({"diff", "a.json", "c.json"}), 1);
        QVERIFY(console.output.contains("points: 0 added, 1 removed, 0 changed\n"));
        QVERIFY(console.output.contains("E: nothing -> [1,2]\n"));
    }

    void otherFilesAreRefused()
    {
        writeFile(QStringLiteral("a.json"), R"({"Type": "Spectrum v1"})");
        writeFile(QStringLiteral("b.json"), R"({"Type": "Species v1"})");
        writeFile(QStringLiteral("c.json"), R"({"Type": "Database v1"})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 3);
        QVERIFY(console.errors.contains("cannot be compared"));
        QCOMPARE(console.run({"diff", "a.json", "c.json"}), 3);
        QCOMPARE(console.errors, "zoravel: a spectrum file and a database cannot be compared\n");
        writeFile(QStringLiteral("d.json"), "{}");
        QCOMPARE(console.run({"diff", "a.json", "d.json"}), 3);
        QCOMPARE(console.errors,
                 "zoravel: d.json: neither a species nor a spectrum file, nor a database\n");
        QCOMPARE(console.run({"diff", "a.json", "."}), 3);
        QCOMPARE(console.errors, "zoravel: a spectrum file and a folder cannot be compared\n");
        QCOMPARE(console.run({"diff", "gone.json", "c.json"}), 3);
    }

    void foldersAreComparedByTheNamesOfTheirFiles()
    {
        makeFolder(QStringLiteral("old"), {{"a.json", "A", "1"},
                                           {"b.json", "B", "2"},
                                           {"s/c.json", "C", "3"},
                                           {"same.json", "S", "9"}});
        makeFolder(QStringLiteral("new"), {{"a.json", "A", "7"},
                                           {"moved.json", "B", "2"},
                                           {"same.json", "S", "9"},
                                           {"z.json", "Z", "8"}});
        writeFile(QStringLiteral("new/d.json"), R"({"Type": "Database v1"})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "old", "new/"}), 1);
        QCOMPARE(console.errors, "");
        QCOMPARE(console.output, "a.json (A)\n"
                                 "  Profile\n"
                                 "    CAS: \"1\" -> \"7\"\n"
                                 "s/c.json (C)\n"
                                 "  removed\n"
                                 "z.json (Z)\n"
                                 "  added\n");
        QCOMPARE(console.run({"diff", "old", "old"}), 0);
        QCOMPARE(console.output + console.errors, "");
    }

    void databasesAreComparedByEntryWhateverItsNumber()
    {
        const auto entry = [](const char *number, const char *name,
                              const char *rest) -> QByteArray {
            return QByteArray("\"Entry") + number + "\": {\"Species\": {\"Name\": \"" + name
                   + "\", " + rest + "}}";
        };
        const QByteArray start = R"({"Type": "Database v1", "Header": {"Version": "1"}, )";
        writeFile(QStringLiteral("a.json"), start + entry("1", "A", R"("CAS": "1", "VIE": "9")")
                                                + ", " + entry("2", "B", R"("CAS": "2")") + ", "
                                                + entry("10", "C", R"("InChI": "x", "VIE": "8")")
                                                + '}');
        writeFile(QStringLiteral("b.json"),
                  QByteArray(start).replace("\"1\"", "\"2\"") + entry("1", "N", R"("CAS": "5")")
                      + ", " + entry("2", "A2", R"("CAS": "1", "VIE": "9")") + ", "
                      + entry("3", "B", R"("CAS": "2")") + ", "
                      + entry("4", "C", R"("InChI": "x", "VIE": "7")") + '}');
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 1);
        QCOMPARE(console.output, "Header\n"
                                 "  Version: \"1\" -> \"2\"\n"
                                 "Entry1 -> Entry2 (A2)\n"
                                 "  Profile\n"
                                 "    Name: \"A\" -> \"A2\"\n"
                                 "Entry10 -> Entry4 (C)\n"
                                 "  Profile\n"
                                 "    VIE: \"8\" -> \"7\"\n"
                                 "Entry1 (N)\n"
                                 "  added\n");
    }

    void ofAnEntryThatIsThereTwiceTheLastCounts()
    {
        const QByteArray entry = R"("Entry1": {"Species": {"CAS": "1"}}, )";
        const QByteArray other = R"("Entry1": {"Species": {"CAS": "2"}}, )";
        writeFile(QStringLiteral("a.json"), '{' + other + entry + R"("Type": "Database v1"})");
        writeFile(QStringLiteral("b.json"), '{' + entry + R"("Type": "Database v1"})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 0);
        QCOMPARE(console.output + console.errors, "");
    }

    void keysOfADatabaseBesideItsEntriesAreCompared()
    {
        const QByteArray start = R"({"Header": {}, "Entry1": {"Species": {}}, )";
        writeFile(QStringLiteral("a.json"), start + R"("Note": 1, "Type": "Database v1"})");
        writeFile(QStringLiteral("b.json"), start + R"("Note": 2, "Type": "Database v1"})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 1);
        QCOMPARE(console.output, "Header\n  Note: 1 -> 2\n");
    }

    void aDatabaseWhoseFirstKeysAreOfAnotherFileIsADatabaseAndTheOtherWayRound()
    {
        writeFile(QStringLiteral("a.json"),
                  R"({"Species": 1, "Entry1": {"Species": {"CAS": "1"}}, "Type": "Database v1"})");
        writeFile(QStringLiteral("b.json"),
                  R"({"Header": 1, "Species": {"CAS": "1"}, "Type": "Species v1"})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "a.json", "b.json"}), 3);
        QCOMPARE(console.errors, "zoravel: a database and a species file cannot be compared\n");
        QCOMPARE(console.run({"diff", "a.json", "a.json"}), 0);
        QCOMPARE(console.run({"diff", "b.json", "b.json"}), 0);
    }

    void aBrokenDatabaseIsNotCompared_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("message");
        const QByteArray start = R"({"Type": "Database v1", "Entry1": )";
        QTest::newRow("cut off within an entry")
            << QByteArray(start + R"({"Species": {)") << QByteArray("Entry1: no JSON");
        QTest::newRow("wrong entry")
            << QByteArray(start + "{], \"Entry2\": {}}") << QByteArray("Entry1: no JSON");
        QTest::newRow("more behind it")
            << QByteArray(start + "{}} x") << QByteArray("line 1: More follows");
        QTest::newRow("comma missing")
            << QByteArray(start + "{}\n\"Entry2\": {}}") << QByteArray("line 2: A comma");
    }
    void aBrokenDatabaseIsNotCompared()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, message);
        writeFile(QStringLiteral("a.json"),
                  R"({"Entry1": {"Species": {}}, "Type": "Database v1"})");
        writeFile(QStringLiteral("b.json"), text);
        for (const QByteArrayList &names :
             {QByteArrayList{"a.json", "b.json"}, {"b.json", "a.json"}}) {
            TestConsole console;
            QCOMPARE(console.run(QByteArrayList{"diff"} + names), 3);
            QCOMPARE(console.output, "");
            QVERIFY2(console.errors.startsWith(QByteArray("zoravel: b.json: " + message)),
                     console.errors.constData());
            QCOMPARE(console.errors.count('\n'), 1);
        }
    }

    void databasesOfAnySizeNeedTheMemoryOfAnEntry()
    {
#ifndef MEASURES_MEMORY
        QSKIP("memory is not that of the program");
#else
        // Returns the process's peak memory in MB.
        const auto compare = [](int entries) {
            writeDatabase(QStringLiteral("a.json"), entries, 0);
            writeDatabase(QStringLiteral("b.json"), entries, 3);
            TestConsole console;
            if (console.run({"diff", "a.json", "b.json"}) != 1
                || console.output != "Entry3\n  Profile\n    VIE: \"1\" -> \"2\"\n")
                qFatal("the databases are not compared");
            rusage usage{};
            getrusage(RUSAGE_SELF, &usage);
            return double(usage.ru_maxrss) / 1024;
        };
        const double small = compare(5);
        const double large = compare(60); // 24 MB each
        QVERIFY2(large - small < 16, qPrintable(QString::number(large - small)));
#endif
    }

    void aFolderIsComparedWithItsDatabase()
    {
        makeFolder(QStringLiteral("f"), {{"a.json", "A", "1"}, {"b.json", "B", "2"}});
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", "db.json", "f"}), 0);
        QCOMPARE(console.run({"diff", "db.json", "f"}), 0);
        QCOMPARE(console.output + console.errors, "");
        makeFolder(QStringLiteral("f"), {{"a.json", "A", "7"}});
        QCOMPARE(console.run({"diff", "db.json", "f"}), 1);
        QCOMPARE(console.output, "Entry1 -> a.json (A)\n  Profile\n    CAS: \"1\" -> \"7\"\n");
    }

    void whatOfAFolderCannotBeReadIsSaid()
    {
        makeFolder(QStringLiteral("f"), {{"a.json", "A", "1"}});
        makeFolder(QStringLiteral("g"), {{"a.json", "A", "1"}});
        writeFile(QStringLiteral("g/broken.json"), "{");
        TestConsole console;
        QCOMPARE(console.run({"diff", "f", "g"}), 3);
        QCOMPARE(console.errors, "zoravel: g/broken.json: neither a species nor a spectrum file\n");
    }

    void differencesAreWrittenAsJson()
    {
        writeFile(QStringLiteral("a.json"), R"({"Type": "Species v1", "Species": {"CAS": "1"},
            "Dataset1": {"Title": "t", "E": [1, 2], "I": [1, 2]}, "Dataset2": {"Title": "r"}})");
        writeFile(QStringLiteral("b.json"), R"({"Type": "Species v1", "Species": {"Name": "B"},
            "Dataset1": {"Title": "t", "T": "3", "E": [1, 3], "I": [1.5, 2]}})");
        TestConsole console;
        QCOMPARE(console.run({"diff", "-f", "json", "a.json", "b.json"}), 1);
        const QJsonObject report = QJsonDocument::fromJson(console.output).object();
        const QJsonObject expected = QJsonDocument::fromJson(R"({
            "before": "a.json", "after": "b.json", "differences": [{
                "before": "a.json", "after": "b.json", "species": "", "file": [],
                "profile": [{"key": "CAS", "before": "1"}, {"key": "Name", "after": "B"}],
                "spectra": [
                    {"before": "Dataset1", "after": "Dataset1", "title": "t",
                     "fields": [{"key": "T", "after": "3"}],
                     "points": {"added": 1, "removed": 1, "changed": 1, "reordered": false,
                                "largest": 0.5, "largestAtEv": 1}},
                    {"before": "Dataset2", "title": "r", "count": 0}]}]})")
                                         .object();
        QCOMPARE(report, expected);
        QCOMPARE(console.run({"diff", "-f", "json", "a.json", "a.json"}), 0);
        QVERIFY(QJsonDocument::fromJson(console.output)
                    .object()[QLatin1String("differences")]
                    .toArray()
                    .isEmpty());
    }

private:
    // Files of species with a name and a CAS number.
    // Of entries of 400 kB; the changed one has another VIE.
    static void writeDatabase(const QString &name, int entries, int changed)
    {
        const QByteArray points = "[0" + QByteArray(",1").repeated(100'000) + ']';
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"Type\": \"Database v1\"");
        for (int i = 1; i <= entries; ++i) {
            const QByteArray number = QByteArray::number(i);
            file.write(",\n\"Entry" + number + "\": {\"Species\": {\"CAS\": \"" + number
                       + "\", \"VIE\": \"" + (i == changed ? '2' : '1')
                       + "\"}, \"Dataset1\": {\"E\": " + points + ", \"I\": " + points + "}}");
        }
        file.write("}");
    }

    static void makeFolder(const QString &folder, const QList<std::array<const char *, 3>> &files)
    {
        for (const auto &[file, name, cas] : files) {
            const QString path = folder + QLatin1Char('/') + QLatin1String(file);
            QVERIFY(QDir().mkpath(QFileInfo(path).path()));
            writeFile(path, QByteArray(R"({"Type": "Species v1", "Species": {"Name": ")") + name
                                + R"(", "CAS": ")" + cas + "\"}}");
        }
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestCliDiff)
#include "tst_cli_diff.moc"

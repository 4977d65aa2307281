// SPDX-License-Identifier: GPL-3.0-or-later
#include "database/createdatabase.h"
#include "files/jsonfile.h"
#include "files/jsonfolder.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "testconsole.h"
#include "testfiles.h"

#include <QDate>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

// zoravel compile.
class TestCliCompile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        const QStringList names = jsonFilesIn(QStringLiteral(ZORAVEL_EXAMPLES));
        QVERIFY(names.size() > 4);
        for (const QString &name : names)
            QVERIFY(QFile::copy(QStringLiteral(ZORAVEL_EXAMPLES "/") + name, path(name)));
    }

    void theWindowAndTheCommandWriteTheSameBytes_data()
    {
        QTest::addColumn<bool>("compact");
        QTest::newRow("indented") << false;
        QTest::newRow("compact") << true;
    }
    void theWindowAndTheCommandWriteTheSameBytes()
    {
        QFETCH(bool, compact);
        MainWindowFixture fixture;
        const CreateDatabase dialog(&fixture.window);
        QStringList files;
        for (const QString &name : jsonFilesIn(m_folder->path()))
            files.append(path(name));
        const QString byWindow = path(QStringLiteral("window.db"));
        const QByteArray byCommand = path(QStringLiteral("command.db")).toUtf8();
        QByteArrayList words{"compile", "-o", byCommand, root()};
        if (compact)
            words.append("--compact");
        // The day may change in between.
        QDate day;
        TestConsole console;
        do {
            day = QDate::currentDate();
            QVERIFY(fixture.window.compileSpeciesFiles(
                files, byWindow, dialog.version(), dialog.databaseName(), dialog.title(), compact));
            QCOMPARE(console.run(words), 0);
        } while (day != QDate::currentDate());
        QCOMPARE(console.output + console.errors, "");
        QVERIFY(fileBytes(byWindow).size() > 100'000);
        QVERIFY(fileBytes(byWindow) == fileBytes(QString::fromUtf8(byCommand)));
    }

    void theHeaderIsAsAsked()
    {
        TestConsole console;
        QCOMPARE(console.run({"compile", "--db-version", "2", "--release=R ü", "--title", "T", "-o",
                              root() + "/x", root()}),
                 0);
        const QJsonObject header =
            fileObject(path(QStringLiteral("x")))[QLatin1String("Header")].toObject();
        QCOMPARE(header[QLatin1String("Version")].toString(), QStringLiteral("2"));
        QCOMPARE(header[QLatin1String("Database")].toString(), QStringLiteral("R ü"));
        QCOMPARE(header[QLatin1String("Title")].toString(), QStringLiteral("T"));
    }

    void allBadInputsAreNamedAndNothingIsWritten()
    {
        writeFile(path(QStringLiteral("a.json")), "no JSON");
        writeFile(path(QStringLiteral("z.json")), "{\"Type\": \"Spectrum v1\"}");
        writeFile(path(QStringLiteral("old.db")), "old");
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", root() + "/old.db", root(), root() + "/gone.json",
                              "/dev/null"}),
                 3);
        QCOMPARE(console.errors, "zoravel: " + root() + "/a.json: not a species file\n"
                                     + "zoravel: " + root() + "/z.json: not a species file\n"
                                     + "zoravel: " + root() + "/gone.json: no such file\n"
                                     + "zoravel: /dev/null: not a regular file\n");
        QCOMPARE(fileBytes(path(QStringLiteral("old.db"))), "old");
    }

    void theNamingOfBadInputsShowsItsProgress()
    {
        writeFile(path(QStringLiteral("bad.json")), "no JSON");
        const QByteArray large = root() + "/large.json";
        writeFile(QString::fromUtf8(large), "{\"Type\": \"Species v1\", \"E\": ["
                                                + QByteArray("1,").repeated(500'000) + "1]}");
        QByteArrayList words{"compile", "--check", "-o", root() + "/db", root() + "/bad.json"};
        words += QByteArrayList(100, large);
        TestConsole console;
        console.terminal = true;
        QCOMPARE(console.run(words), 3);
        const QByteArray line = "zoravel: " + root() + "/bad.json: not a species file\n";
        QVERIFY(console.errors.startsWith(line));
        QVERIFY(console.errors.contains("\rReading again "));
        QVERIFY(console.errors.endsWith("\r\x1b[K"));
    }

    void anEntryThatWouldBeTooLargeToBeReadIsNamedAndNothingIsWritten()
    {
        // Control characters take six bytes each in our files, but one in this.
        writeFile(path(QStringLiteral("a.json")), "{\"Type\": \"Species v1\", \"a\": \""
                                                      + QByteArray(largestJsonFile / 6, '\x01')
                                                      + "\"}");
        writeFile(path(QStringLiteral("old.db")), "old");
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", root() + "/old.db", root() + "/a.json"}), 3);
        QCOMPARE(console.errors, "zoravel: " + root() + "/a.json: too large\n");
        QCOMPARE(fileBytes(path(QStringLiteral("old.db"))), "old");
    }

    void anEmptyFolderIsAnError()
    {
        const QTemporaryDir empty;
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", root() + "/x", empty.path().toUtf8()}), 3);
        QCOMPARE(console.errors,
                 "zoravel: " + empty.path().toUtf8() + ": there is no species file in it\n");
        QVERIFY(!QFile::exists(path(QStringLiteral("x"))));
    }

    void aDatabaseAmongItsInputsIsWrittenAgain()
    {
        TestConsole console;
        const QByteArrayList words{"compile", "-o", root() + "/db.json", root()};
        QCOMPARE(console.run(words), 0);
        const QByteArray first = fileBytes(path(QStringLiteral("db.json")));
        QCOMPARE(console.run(words), 0);
        QVERIFY(first.contains("\"Database v1\""));
        QCOMPARE(fileBytes(path(QStringLiteral("db.json"))), first);
    }

    void aSpeciesFileIsNeverOverwritten()
    {
        const QString victim = path(QStringLiteral("water.json"));
        const QByteArray before = fileBytes(victim);
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", victim.toUtf8(), root()}), 2);
        QVERIFY(console.errors.contains("is a species file, which is not overwritten"));
        QCOMPARE(fileBytes(victim), before);
    }

    void aBrokenSpeciesFileIsNotOverwrittenEither()
    {
        const QString victim = path(QStringLiteral("water.json"));
        const QByteArray half = fileBytes(victim).first(1000);
        writeFile(victim, half);
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", victim.toUtf8(), root() + "/benzene.json"}), 2);
        QVERIFY(console.errors.contains("is a species file, which is not overwritten"));
        QCOMPARE(fileBytes(victim), half);
    }

    void whatBeginsAsADatabaseIsWrittenAgain()
    {
        // Only its first keys are read.
        writeFile(path(QStringLiteral("db.json")), "{\"Entry1\": {\"Species\": \"Species v1");
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", root() + "/db.json", root()}), 0);
        QVERIFY(fileBytes(path(QStringLiteral("db.json"))).endsWith("\"Database v1\"\n}\n"));
    }

    void strictRefusesFilesWithErrorsAndNamesThemAll()
    {
        const QByteArray wrong = R"({"Species": {"CAS": "106-97-3"}, "Type": "Species v1"})";
        writeFile(path(QStringLiteral("a.json")), wrong);
        writeFile(path(QStringLiteral("z.json")), wrong);
        writeFile(path(QStringLiteral("old.db")), "old");
        const QByteArrayList words{"compile", "--strict", "-o", root() + "/old.db", root()};
        TestConsole console;
        QCOMPARE(console.run(words), 1);
        const QByteArray line = ":1:21: error: CAS number 106-97-3 has check digit 3, expected 8 "
                                "[cas-check-digit]\n";
        for (const char *name : {"/a.json", "/z.json"})
            QVERIFY(console.errors.contains(QByteArray(root() + name + line)));
        QVERIFY(console.errors.contains("2 errors, 0 warnings and 0 notes in "));
        QVERIFY(console.errors.endsWith("/old.db: not written\n"));
        QCOMPARE(fileBytes(path(QStringLiteral("old.db"))), "old");
        QCOMPARE(console.run(words + QByteArrayList{"--check"}), 1);
        QVERIFY(console.errors.contains("cas-check-digit"));
        QVERIFY(console.errors.endsWith("/old.db: not compared\n"));
        writeFile(path(QStringLiteral("b.json")), "no JSON");
        QCOMPARE(console.run(words), 3);
        QVERIFY(console.errors.contains("/b.json:1:"));
        for (const char *name : {"a.json", "b.json", "z.json"})
            QVERIFY(QFile::remove(path(QLatin1String(name))));
        QCOMPARE(console.run(words), 0);
        QCOMPARE(console.errors, "");
    }

    void withoutStrictOneLineSaysHowManyErrorsThereAre()
    {
        const QByteArray wrong =
            R"({"Species": {"CAS": "106-97-3", "Formula": "Xx"}, "Type": "Species v1"})";
        writeFile(path(QStringLiteral("a.json")), wrong);
        TestConsole console;
        const QByteArrayList words{"compile", "-o", root() + "/db.json", root()};
        QCOMPARE(console.run(words), 0);
        QCOMPARE(console.errors, "zoravel: 2 errors in 1 file, which \"zoravel check\" names\n");
        QCOMPARE(console.output, "");
        QVERIFY(fileBytes(path(QStringLiteral("db.json"))).contains("106-97-3"));
        QCOMPARE(console.run(words + QByteArrayList{"--check"}), 0);
        QCOMPARE(console.errors, "");
    }

    void anOutputThatCannotBeWrittenIsSaid()
    {
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", root() + "/no/such/folder.json", root()}), 3);
        QCOMPARE(console.errors,
                 "zoravel: " + root()
                     + "/no/such/folder.json: cannot be written: there is no such folder\n");
        QCOMPARE(console.run({"compile", "-o", "-", root()}), 2);
        QVERIFY(console.errors.startsWith("zoravel compile: DB.json has to be a file\n"));
    }

    void upToDateIsWhatWouldBeWrittenApartFromTheDate_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QByteArrayList>("more");
        QTest::addColumn<int>("status");
        const QByteArray today = QDate::currentDate().toString(Qt::ISODate).toUtf8();
        const auto row = [](const char *name, const QByteArray &from, const QByteArray &to,
                            const QByteArrayList &more,
                            int status) { QTest::newRow(name) << from << to << more << status; };
        row("as it is", "", "", {}, 0);
        row("another day", "\"Date\": \"" + today, "\"Date\": \"1999-12-31", {}, 0);
        row("no day", "\"Date\": \"" + today, "\"Date\": \"1999-13-31", {}, 1);
        row("a digit", "0.5", "0.6", {}, 1);
        row("a byte at the end", "\"Database v1\"\n}\n", "\"Database v1\"\n}\n\n", {}, 1);
        row("a byte less", "\"Database v1\"\n}\n", "\"Database v1\"\n}", {}, 1);
        row("another type", "Database v1", "Database v2", {}, 1);
        row("another title", "\"Title\": \"ZORAVEL", "\"Title\": \"zORAVEL", {}, 1);
        row("another form", "", "", {"--compact"}, 1);
        row("another version", "", "", {"--db-version", "9"}, 1);
    }
    void upToDateIsWhatWouldBeWrittenApartFromTheDate()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(QByteArrayList, more);
        const QString database = path(QStringLiteral("db.json"));
        TestConsole console;
        QCOMPARE(console.run({"compile", "-o", database.toUtf8(), root()}), 0);
        QByteArray bytes = fileBytes(database);
        const qsizetype at = bytes.lastIndexOf(from);
        QVERIFY(at >= 0);
        writeFile(database, bytes.replace(at, from.size(), to));
        const QByteArrayList words{"compile", "--check", "-o", database.toUtf8(), root()};
        QTEST(console.run(words + more), "status");
        QCOMPARE(console.errors, "");
        QCOMPARE(fileBytes(database), bytes);
    }

    void aTitleThatLooksLikeADateKeyDoesNotConfuseTheComparison()
    {
        const QByteArrayList words{"compile",   "-o",        root() + "/db.json", "--title",
                                   "\"Date\":", "--release", "\"Date\": \"2",     root()};
        TestConsole console;
        QCOMPARE(console.run(words), 0);
        QCOMPARE(console.run(words + QByteArrayList{"--check"}), 0);
    }

    void anInputThatChangedOrADatabaseThatIsMissingIsOutOfDate()
    {
        TestConsole console;
        const QByteArray database = root() + "/db.json";
        const QByteArrayList words{"compile", "--check", "-o", database, root()};
        QCOMPARE(console.run(words), 1);
        QCOMPARE(console.output, database + ": not up to date\n");
        QCOMPARE(console.run({"compile", "-o", database, root()}), 0);
        QCOMPARE(console.run(words), 0);
        QVERIFY(QFile::remove(path(QStringLiteral("water.json"))));
        QCOMPARE(console.run(words), 1);
        QVERIFY(QFile::remove(path(QStringLiteral("db.json"))));
        writeFile(path(QStringLiteral("bad.json")), "{}");
        QCOMPARE(console.run(words), 3);
        QVERIFY(console.errors.contains("bad.json: not a species file"));
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QByteArray root() const { return m_folder->path().toUtf8(); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestCliCompile)
#include "tst_cli_compile.moc"

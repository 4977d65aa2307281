// SPDX-License-Identifier: GPL-3.0-or-later
#include "database/databasecompiler.h"
#include "support/files.h"
#include "support/warnings.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace
{

const DatabaseHeader header{QStringLiteral("1.0"), QStringLiteral("3.0"),
                            QStringLiteral("A \"title\"\nof <two> lines, \u00e4\u03bd"),
                            QDate(2026, 3, 9)};

QJsonObject species(int number)
{
    QRandomGenerator random(number);
    QJsonArray energies;
    for (int i = random.bounded(4); i > 0; --i)
        energies.append(random.generateDouble() * 20);
    return {
        {QStringLiteral("Type"), QStringLiteral("Species v1")},
        {QStringLiteral("Species"),
         QJsonObject{{QStringLiteral("Name"), QStringLiteral("species\n%1\u2028").arg(number)}}},
        {QStringLiteral("Dataset1"), QJsonObject{{QStringLiteral("E"), energies}}},
        {QStringLiteral("Empty"), QJsonObject()},
        {QStringLiteral("Nested"), QJsonArray{QJsonArray(), QJsonObject(), QJsonValue()}},
        {QStringLiteral("Foreign \"key\""), true}};
}

// The database as one document in memory.
QByteArray plainDatabase(const QStringList &files, QJsonDocument::JsonFormat format)
{
    QJsonObject database{{QStringLiteral("Type"), QStringLiteral("Database v1")},
                         {QStringLiteral("Header"),
                          QJsonObject{{QStringLiteral("Version"), header.version},
                                      {QStringLiteral("Database"), header.database},
                                      {QStringLiteral("Title"), header.title},
                                      {QStringLiteral("Date"), QStringLiteral("2026-03-09")}}}};
    int number = 0;
    for (const QString &file : files) {
        QJsonObject entry = fileObject(file);
        entry.remove(QLatin1String("Type"));
        database.insert(QStringLiteral("Entry%1").arg(++number), entry);
    }
    return QJsonDocument(database).toJson(format);
}

} // namespace

// Many species files as one database file.
class TestDatabaseCompiler : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        failOnWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
    }

    void theBytesAreThoseOfOneDocument_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("compact");
        for (int count : {0, 1, 2, 9, 10, 11, 101, 1000}) {
            QTest::addRow("%d indented", count) << count << false;
            QTest::addRow("%d compact", count) << count << true;
        }
    }
    void theBytesAreThoseOfOneDocument()
    {
        QFETCH(int, count);
        QFETCH(bool, compact);
        const auto format = compact ? QJsonDocument::Compact : QJsonDocument::Indented;
        const QStringList files = makeSpecies(count);
        QVERIFY(!compileDatabase(files, output(), header, format));
        QVERIFY(fileBytes(output()) == plainDatabase(files, format));
    }

    void filesThatAreEmptyButForTheirTypeAreEmptyEntries()
    {
        writeFile(path("a.json"), QByteArray("{\"Type\": \"Species v1\"}"));
        const QStringList files{path("a.json")};
        for (const auto format : {QJsonDocument::Compact, QJsonDocument::Indented}) {
            QVERIFY(!compileDatabase(files, output(), header, format));
            QCOMPARE(fileBytes(output()), plainDatabase(files, format));
        }
    }

    void entriesStandInTheOrderOfTheListAndAFileListedTwiceStandsTwice()
    {
        QStringList files = makeSpecies(3);
        files = {files[2], files[0], files[2]};
        QVERIFY(!compileDatabase(files, output(), header, QJsonDocument::Indented));
        const QJsonObject database = fileObject(output());
        const auto name = [&](const char *entry) {
            return database[QLatin1String(entry)][QLatin1String("Species")][QLatin1String("Name")]
                .toString();
        };
        QCOMPARE(name("Entry1"), QStringLiteral("species\n2\u2028"));
        QCOMPARE(name("Entry2"), QStringLiteral("species\n0\u2028"));
        QCOMPARE(name("Entry3"), QStringLiteral("species\n2\u2028"));
    }

    void anEntryIsItsFileWithoutTheType()
    {
        const QStringList files = makeSpecies(1);
        QVERIFY(!compileDatabase(files, output(), header, QJsonDocument::Compact));
        QJsonObject expected = species(0);
        expected.remove(QLatin1String("Type"));
        QCOMPARE(fileObject(output())[QLatin1String("Entry1")].toObject(), expected);
    }

    void theFirstBadFileOfTheListIsNamedAndNothingIsWritten_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("kind");
        QTest::newRow("spectrum") << QByteArray("{\"Type\": \"Spectrum v1\"}")
                                  << int(CompileError::InvalidInput);
        QTest::newRow("database") << QByteArray("{\"Type\": \"Database v1\"}")
                                  << int(CompileError::InvalidInput);
        QTest::newRow("no type") << QByteArray("{}") << int(CompileError::InvalidInput);
        QTest::newRow("no JSON") << QByteArray("hello") << int(CompileError::InvalidInput);
        QTest::newRow("cut off") << QByteArray("{\"Type\": \"Species v1\"")
                                 << int(CompileError::InvalidInput);
        QTest::newRow("missing") << QByteArray() << int(CompileError::UnreadableInput);
    }
    void theFirstBadFileOfTheListIsNamedAndNothingIsWritten()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, kind);
        QStringList files = makeSpecies(12);
        // Entry 2 is written after entry 10, but stands before it in the list.
        for (int bad : {9, 1}) {
            QVERIFY(QFile::remove(files[bad]));
            if (!bytes.isEmpty())
                writeFile(files[bad], bytes);
        }
        const QByteArray old = "an older database";
        writeFile(output(), old);
        const QStringList before = QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
        const auto error = compileDatabase(files, output(), header, QJsonDocument::Indented);
        QVERIFY(error);
        QCOMPARE(int(error->kind), kind);
        QCOMPARE(error->file, files[1]);
        QCOMPARE(fileBytes(output()), old);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden), before);
    }

    void anOutputThatCannotBeWrittenIsSaidUnlessAnInputIsBad()
    {
        QStringList files = makeSpecies(2);
        const QString nowhere = path("missing/db.json");
        auto error = compileDatabase(files, nowhere, header, QJsonDocument::Indented);
        QVERIFY(error);
        QCOMPARE(error->kind, CompileError::UnwritableOutput);
        files.append(path("gone.json"));
        error = compileDatabase(files, nowhere, header, QJsonDocument::Indented);
        QVERIFY(error);
        QCOMPARE(error->kind, CompileError::UnreadableInput);
        QCOMPARE(error->file, path("gone.json"));
    }

    void lookingForABadInputShowsProgressAndCanBeCancelled()
    {
        const QStringList files = makeSpecies(5);
        int calls = 0;
        const auto cancelAt = [&](int call) {
            calls = 0;
            return compileDatabase(files, path("missing/db.json"), header, QJsonDocument::Indented,
                                   [&](int done, int index) {
                                       if (done != calls || index != done)
                                           QTest::qFail("wrong progress", __FILE__, __LINE__);
                                       return ++calls < call;
                                   });
        };
        const auto unwritable = cancelAt(6);
        QVERIFY(unwritable);
        QCOMPARE(unwritable->kind, CompileError::UnwritableOutput);
        QCOMPARE(calls, 5);
        const auto cancelled = cancelAt(3);
        QVERIFY(cancelled);
        QCOMPARE(cancelled->kind, CompileError::Cancelled);
        QCOMPARE(calls, 3);
    }

    // Checking the files again beforehand would seem to hang and could not be cancelled.
    void behindABadFileNoFileIsReadAgainAndProgressGoesOn_data()
    {
        QTest::addColumn<QByteArray>("database");
        QTest::newRow("compiled") << QByteArray("db.json");
        QTest::newRow("into no folder") << QByteArray("missing/db.json");
    }
    void behindABadFileNoFileIsReadAgainAndProgressGoesOn()
    {
        QFETCH(QByteArray, database);
        constexpr int bad = 24; // behind it come the entries 3 to 9
        const QStringList files = makeSpecies(30);
        writeFile(files[bad], QByteArray("{}"));
        QList<int> read;
        int last = -1;
        const auto note = [&](int done, int index) {
            if (done <= last || done >= files.size())
                QTest::qFail("wrong progress", __FILE__, __LINE__);
            last = done;
            // What was read is bad from now on.
            if (!read.isEmpty() && read.last() == bad)
                writeFile(files[0], QByteArray("{}"));
            read.append(index);
            return true;
        };
        const auto error = compileDatabase(files, path(database.constData()), header,
                                           QJsonDocument::Compact, note);
        QVERIFY(error);
        QCOMPARE(error->file, files[bad]);
        for (int index = 0; index <= bad; ++index)
            QCOMPARE(read.count(index), 1);
    }

    void comparingReadsEachFileOnceAndShowsItsProgress()
    {
        const QStringList files = makeSpecies(12);
        QVERIFY(!compileDatabase(files, output(), header, QJsonDocument::Compact));
        writeFile(files[11], QByteArray("{}"));
        QList<int> read;
        const auto same = isDatabaseUpToDate(files, output(), header, QJsonDocument::Compact,
                                             [&](int, int index) {
                                                 read.append(index);
                                                 return true;
                                             });
        QVERIFY(std::holds_alternative<CompileError>(same));
        QCOMPARE(std::get<CompileError>(same).file, files[11]);
        std::sort(read.begin(), read.end());
        QCOMPARE(read, (QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    }

    void lookingForTheFirstBadFileCanBeCancelled()
    {
        const QStringList files = makeSpecies(30);
        writeFile(files[24], QByteArray("{}"));
        bool found = false;
        int behind = 0;
        const auto error =
            compileDatabase(files, output(), header, QJsonDocument::Compact, [&](int, int index) {
                behind += found ? 1 : 0;
                found = found || index == 24;
                return behind < 3;
            });
        QVERIFY(error);
        QCOMPARE(error->kind, CompileError::Cancelled);
        QCOMPARE(behind, 3);
        QVERIFY(!QFile::exists(output()));
    }

    void cancellingWritesNothing()
    {
        const QStringList files = makeSpecies(5);
        writeFile(output(), QByteArray("old"));
        int calls = 0;
        const auto error = compileDatabase(
            files, output(), header, QJsonDocument::Indented, [&](int done, int index) {
                if (done != calls || index != done)
                    QTest::qFail("wrong progress", __FILE__, __LINE__);
                return ++calls < 4;
            });
        QVERIFY(error);
        QCOMPARE(error->kind, CompileError::Cancelled);
        QCOMPARE(calls, 4);
        QCOMPARE(fileBytes(output()), QByteArray("old"));
    }

    void aDatabaseMayReplaceOneOfItsInputs()
    {
        const QStringList files = makeSpecies(2);
        const QByteArray expected = plainDatabase(files, QJsonDocument::Indented);
        QVERIFY(!compileDatabase(files, files[0], header, QJsonDocument::Indented));
        QCOMPARE(fileBytes(files[0]), expected);
    }

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QString output() const { return path("db.json"); }

    QStringList makeSpecies(int count) const
    {
        QStringList files;
        for (int i = 0; i < count; ++i) {
            files.append(m_folder->filePath(QStringLiteral("s%1.json").arg(i)));
            writeFile(files.last(), species(i));
        }
        return files;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestDatabaseCompiler)
#include "tst_databasecompiler.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/jsonfolder.h"
#include "support/files.h"
#include "support/warnings.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

// The files of a folder in natural order. Run under several locales: the collator of the C locales
// does not know numbers, and the order must be natural there too.
class TestJsonFolder : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void numbersCountByTheirValueAndLettersWithoutCase_data()
    {
        QTest::addColumn<QString>("sorted");
        QTest::newRow("formulas") << "C2H4.json C10H8.json";
        QTest::newRow("case") << "a.json b.json C.json d.json";
        QTest::newRow("stepping") << "A1.json A2.json A10.json";
        QTest::newRow("long runs") << "x9.json x10.json x123456789012345678901234567890.json "
                                      "x123456789012345678901234567891.json";
        QTest::newRow("several runs") << "a1b2.json a1b10.json a2b1.json a10b1.json";
        QTest::newRow("digits before letters") << "1.json 2.json 10.json a.json";
        QTest::newRow("upper and lower mixed") << "A1.json a2.json A3.json a20.json";
    }
    void numbersCountByTheirValueAndLettersWithoutCase()
    {
        QFETCH(QString, sorted);
        const QStringList expected = sorted.split(QLatin1Char(' '));
        QStringList names = expected;
        std::reverse(names.begin(), names.end());
        sortNaturally(names);
        QCOMPARE(names, expected);
    }

    void namesThatAreEqualNaturallyAreSortedTheSameWhateverTheirOrderBefore()
    {
        QStringList names;
        for (const char *name : {"a1.json", "A1.json", "a01.json", "A01.json", "a001.json"})
            names.append(QLatin1String(name));
        std::sort(names.begin(), names.end());
        QStringList first = names;
        sortNaturally(first);
        while (std::next_permutation(names.begin(), names.end())) {
            QStringList again = names;
            sortNaturally(again);
            QCOMPARE(again, first);
        }
    }

    void everyNameSurvivesSorting()
    {
        QRandomGenerator random(7);
        const QString alphabet = QStringLiteral("aAbB0123456789 -_.äÖß\u0663\U0001F600\u200b");
        QStringList names;
        for (int i = 0; i < 2000; ++i) {
            QString name;
            for (int length = random.bounded(12); length >= 0; --length)
                name += alphabet[random.bounded(int(alphabet.size()))];
            names.append(name);
        }
        QStringList sorted = names;
        sortNaturally(sorted);
        QStringList again = sorted;
        std::reverse(again.begin(), again.end());
        sortNaturally(again);
        QCOMPARE(again, sorted);
        std::sort(names.begin(), names.end());
        std::sort(sorted.begin(), sorted.end());
        QCOMPARE(sorted, names);
    }

    void aFolderListsItsVisibleJsonFilesOnly()
    {
        QTemporaryDir folder;
        for (const char *name : {"b.json", "C.JSON", "a10.Json", "a2.json", ".hidden.json", "x.txt",
                                 "json", "y.json.bak"})
            writeFile(folder.filePath(QLatin1String(name)), QByteArray("{}"));
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("folder.json")));
        QCOMPARE(jsonFilesIn(folder.path()).join(QLatin1Char(' ')),
                 QStringLiteral("a2.json a10.Json b.json C.JSON"));
    }

    void aFolderThatIsMissingListsNothing()
    {
        QCOMPARE(jsonFilesIn(QStringLiteral("/nowhere/at/all")), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestJsonFolder)
#include "tst_jsonfolder.moc"

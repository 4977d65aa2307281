// SPDX-License-Identifier: GPL-3.0-or-later
// Replacing files on systems without the interfaces of Unix; the code is built into this test on
// every system.
#include "files/filebytes.h"
#include "files/replacementfile.h"
#include "support/files.h"
#include "support/warnings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

using namespace Qt::StringLiterals;

namespace
{

const QByteArray oldBytes = "the old contents\n"_ba;
const QByteArray newBytes("new contents,\r\nbinary \0\xff\xfe ones", 30);

} // namespace

class TestAtomicFileOther : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        failOnWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
    }

    void aFileIsMadeOrReplaced_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("usual") << u"file.json"_s;
        QTest::newRow("hidden") << u".file"_s;
        QTest::newRow("any letters") << u"α 数据 🧪 e\u0301.json"_s;
        // The second file has a name that is made of this one.
        QTest::newRow("long") << QString(240, u'n');
    }
    void aFileIsMadeOrReplaced()
    {
        QFETCH(QString, name);
        for (const QByteArray &bytes : {oldBytes, newBytes, ""_ba, QByteArray(3'000'000, 'x')}) {
            QVERIFY(replaceFileBytes(path(name), bytes));
            QVERIFY(fileBytes(path(name)) == bytes);
            QCOMPARE(namesIn(m_folder->path()), QStringList{name});
        }
    }

    // If there is no room for the second name, the file is refused but never lost.
    void aFileOfTheLongestNameIsReplacedOrKept()
    {
        const QString name(255, u'n');
        writeFile(path(name), oldBytes);
        const bool written = replaceFileBytes(path(name), newBytes);
        QCOMPARE(fileBytes(path(name)), written ? newBytes : oldBytes);
        QCOMPARE(namesIn(m_folder->path()), QStringList{name});
    }

    void theOldFileStaysUntilTheCommit()
    {
        writeFile(path(), oldBytes);
        ReplacementFile file(path());
        QVERIFY(file.open());
        QVERIFY(file.write(QByteArray(1'000'000, '<')));
        QCOMPARE(fileBytes(path()), oldBytes);
        QCOMPARE(QDir(m_folder->path()).entryList({u"*.json"_s}, QDir::Files),
                 QStringList{u"file.json"_s});
        QVERIFY(file.commit());
        QCOMPARE(fileBytes(path()), QByteArray(1'000'000, '<'));
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file.json"_s});
    }

    void whatIsNotCommittedLeavesNothing()
    {
        for (const bool existed : {false, true}) {
            if (existed)
                writeFile(path(), oldBytes);
            {
                ReplacementFile file(path());
                QVERIFY(file.open());
                QVERIFY(file.write(newBytes));
            }
            QCOMPARE(namesIn(m_folder->path()).size(), existed ? 1 : 0);
        }
        QCOMPARE(fileBytes(path()), oldBytes);
    }

    void whereThereIsNoFolderNothingIsMade()
    {
        QVERIFY(!replaceFileBytes(path(u"none/file.json"_s), newBytes));
        QVERIFY(!replaceFileBytes(m_folder->path(), newBytes));
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

#ifdef Q_OS_UNIX
    void aLinkIsKeptAndItsFileReplaced()
    {
        writeFile(path(u"target"_s), oldBytes);
        QVERIFY(QFile::link(u"target"_s, path(u"link"_s)));
        QVERIFY(replaceFileBytes(path(u"link"_s), newBytes));
        QVERIFY(QFileInfo(path(u"link"_s)).isSymLink());
        QCOMPARE(fileBytes(path(u"target"_s)), newBytes);
        QCOMPARE(namesIn(m_folder->path()), (QStringList{u"link"_s, u"target"_s}));
    }

    void aShortWriteLeavesTheOldFileAndNothingElse_data()
    {
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("size");
        // Below and above what Qt holds back before it writes.
        QTest::newRow("held back") << 1'000 << 5'000;
        QTest::newRow("held back, by one byte") << 4'999 << 5'000;
        QTest::newRow("at once") << 20'000 << 100'000;
        QTest::newRow("far behind") << 1'500'000 << 3'000'000;
        QTest::newRow("from the first byte") << 0 << 5'000;
    }
    void aShortWriteLeavesTheOldFileAndNothingElse()
    {
        QFETCH(int, limit);
        QFETCH(int, size);
        writeFile(path(), oldBytes);
        rlimit before = {};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit full{static_cast<rlim_t>(limit), before.rlim_max};
        const auto oldAction = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &full), 0);
        const bool written = replaceFileBytes(path(), QByteArray(size, 'n'));
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
        std::signal(SIGXFSZ, oldAction);
        QVERIFY(!written);
        QCOMPARE(fileBytes(path()), oldBytes);
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file.json"_s});
    }
#endif

private:
    [[nodiscard]] QString path(const QString &name = u"file.json"_s) const
    {
        return m_folder->filePath(name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestAtomicFileOther)
#include "tst_atomicfile_other.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/lastfolder.h"
#include "support/files.h"
#include "support/warnings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

const QString organisation = u"Tarnwick Institute"_s;
const QString application = u"ZORAVEL"_s;
const QString key = u"lastOpenFolder"_s;

QString storeFile()
{
    return QSettings(organisation, application).fileName();
}

// Puts the working folder back at the end.
class WorkingFolder
{
    Q_DISABLE_COPY_MOVE(WorkingFolder)

public:
    explicit WorkingFolder(const QString &path) : m_old(QDir::currentPath())
    {
        QVERIFY(QDir::setCurrent(path));
    }
    ~WorkingFolder() { QDir::setCurrent(m_old); }

private:
    QString m_old;
};

} // namespace

// Each test has a settings store of its own, empty at its start.
class TestLastFolder : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        failOnWarnings();
        m_store.emplace();
        QVERIFY(m_store->isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_store->path());
        QVERIFY(storeFile().startsWith(m_store->path()));
    }

    void cleanup() { m_store.reset(); }

    void withoutAStoredValueItIsTheHomeFolder()
    {
        QVERIFY(!QSettings(organisation, application).contains(key));
        QCOMPARE(lastFolder(), QDir::homePath());
    }

    void readingStoresNothing()
    {
        QVERIFY(!lastFolder().isEmpty());
        QVERIFY(!QFileInfo::exists(storeFile()));
    }

    void theFolderOfAFileIsStored_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("folder");

        QTest::newRow("file") << u"/a/b/c.json"_s << u"/a/b"_s;
        QTest::newRow("file in the root") << u"/c.json"_s << u"/"_s;
        QTest::newRow("file without an extension") << u"/a/b/c"_s << u"/a/b"_s;
        QTest::newRow("hidden file") << u"/a/b/.c"_s << u"/a/b"_s;
        QTest::newRow("a folder gives its parent")
            << QDir::tempPath() + u"/parent"_s << QDir::tempPath();
        QTest::newRow("a folder that ends in a slash") << u"/a/b/"_s << u"/a/b"_s;
        QTest::newRow("spaces") << u"/my data/new entries/c.json"_s << u"/my data/new entries"_s;
        QTest::newRow("comma") << u"/a,b/c.json"_s << u"/a,b"_s;
        QTest::newRow("signs of the store's format")
            << u"/a;b=c%20\\x41[d]\"e\"/@x/c.json"_s << u"/a;b=c%20\\x41[d]\"e\"/@x"_s;
        QTest::newRow("line feed") << u"/a\nb/c.json"_s << u"/a\nb"_s;
        QTest::newRow("non-ASCII") << u"/Gerät/Ωμέγα/数据/c.json"_s << u"/Gerät/Ωμέγα/数据"_s;
        QTest::newRow("beyond the basic plane") << u"/🧪/c.json"_s << u"/🧪"_s;
        QTest::newRow("right to left") << u"/ספקטרום/c.json"_s << u"/ספקטרום"_s;
        const QString deep = u"/folder"_s.repeated(580);
        QTest::newRow("as long as a path can be") << QString(deep + u"/c.json"_s) << deep;
    }
    void theFolderOfAFileIsStored()
    {
        QFETCH(QString, file);
        QFETCH(QString, folder);
        setLastFolder(file);
        QCOMPARE(QSettings(organisation, application).value(key), QVariant(folder));
        QCOMPARE(lastFolder(), folder);
    }

    void aRelativePathIsTakenFromTheWorkingFolder()
    {
        const QTemporaryDir folder;
        const WorkingFolder working(folder.path());
        const QString here = QDir::currentPath();
        setLastFolder(u"c.json"_s);
        QCOMPARE(lastFolder(), here);
        setLastFolder(u"sub/c.json"_s);
        QCOMPARE(lastFolder(), QString(here + u"/sub"_s));
    }

    void aFolderThatWasDeletedIsStillReturned()
    {
        QString path;
        {
            const QTemporaryDir folder;
            path = folder.path();
            setLastFolder(folder.filePath(u"c.json"_s));
        }
        QVERIFY(!QFileInfo::exists(path));
        QCOMPARE(lastFolder(), path);
    }

    void theLatestFileCounts()
    {
        setLastFolder(u"/first/c.json"_s);
        setLastFolder(u"/second/c.json"_s);
        QCOMPARE(lastFolder(), u"/second"_s);
    }

    void itIsTheOnlyValueOfTheStore()
    {
        setLastFolder(u"/a/b/c.json"_s);
        QCOMPARE(QSettings(organisation, application).allKeys(), QStringList{key});
    }

    void whatASecondEditorStoresIsSeenAtOnce()
    {
        setLastFolder(u"/ours/c.json"_s);
        QCOMPARE(lastFolder(), u"/ours"_s);
        writeFile(storeFile(), QByteArrayLiteral("[General]\nlastOpenFolder=/of/the/other\n"));
        QCOMPARE(lastFolder(), u"/of/the/other"_s);
    }

    void storingKeepsWhatASecondEditorStoredBeside()
    {
        setLastFolder(u"/ours/c.json"_s);
        writeFile(storeFile(), QByteArrayLiteral("[General]\nlastOpenFolder=/other\nbeside=7\n"));
        setLastFolder(u"/ours/again/c.json"_s);
        const QSettings store(organisation, application);
        QCOMPARE(store.value(u"beside"_s).toInt(), 7);
        QCOMPARE(store.value(key).toString(), u"/ours/again"_s);
    }

private:
    std::optional<QTemporaryDir> m_store;
};

QTEST_GUILESS_MAIN(TestLastFolder)
#include "tst_lastfolder.moc"

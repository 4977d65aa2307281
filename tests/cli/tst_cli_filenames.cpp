// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/filenames.h"
#include "files/filebytes.h"
#include "files/jsonfolder.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

namespace
{

const QByteArray oddName("caf\xe9\n.json");

// A file whose name is not UTF-8.
void writeOdd(const QByteArray &name, const QByteArray &bytes)
{
    std::FILE *file = std::fopen(name.constData(), "wb");
    QVERIFY2(file, name.constData());
    QCOMPARE(std::fwrite(bytes.constData(), 1, bytes.size(), file), std::size_t(bytes.size()));
    QCOMPARE(std::fclose(file), 0);
}

QByteArray readOdd(const QByteArray &name)
{
    std::FILE *file = std::fopen(name.constData(), "rb");
    if (!file)
        return "<none>";
    QByteArray bytes(1000, '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    std::fclose(file);
    return bytes;
}

} // namespace

// Names of files as the command line has them.
class TestCliFilenames : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    // Qt does not remove files whose names are not UTF-8.
    void cleanup()
    {
        std::filesystem::remove_all(m_folder->path().toStdString());
        m_folder.reset();
    }

    void aFolderStandsForWhatTheEditorStepsThroughThenItsSubfolders()
    {
        const QStringList files{QStringLiteral("C10H8.json"), QStringLiteral("C2H4.JSON"),
                                QStringLiteral("b.json"), QStringLiteral("B2.json")};
        for (const QString &file : files)
            writeFile(path(file), "{}");
        for (const char *other : {"notes.txt", ".hidden.json", "x10/a.json", "x2/a.json",
                                  "x2/deep/er.json", ".git/a.json"}) {
            const QString name = path(QLatin1String(other));
            QDir().mkpath(QFileInfo(name).path());
            writeFile(name, "{}");
        }
        QDir().mkpath(path(QStringLiteral("folder.json")));
        QVERIFY(QFile::link(path(QStringLiteral("x2")), path(QStringLiteral("loop"))));

        const InputList list = listInputs({root()});
        QByteArrayList expected;
        for (const QString &name : jsonFilesIn(m_folder->path()))
            expected.append(name.toUtf8());
        QCOMPARE(expected.size(), 4);
        expected << "x2/a.json"
                 << "x2/deep/er.json"
                 << "x10/a.json";
        QCOMPARE(namesIn(list), expected);
        QVERIFY(list.unreadableFolders.isEmpty());
        for (const InputFile &file : list.files)
            QCOMPARE(readFileBytes(file.path), QByteArray("{}"));
    }

    void whatIsNoFileUnderTheNameOfOneIsListedToo()
    {
        writeFile(path(QStringLiteral("a.json")), "{}");
        writeFile(path(QStringLiteral("c.json")), "{}");
        QDir().mkpath(path(QStringLiteral("folder")));
        QVERIFY(QFile::link(path(QStringLiteral("gone")), path(QStringLiteral("b.JSON"))));
        QVERIFY(QFile::link(path(QStringLiteral("gone")), path(QStringLiteral("b.txt"))));
        QVERIFY(QFile::link(path(QStringLiteral("folder")), path(QStringLiteral("f.json"))));
        QVERIFY(mkfifo(QByteArray(root() + "/pipe.json").constData(), 0600) == 0);
        const InputList list = listInputs({root()});
        QCOMPARE(namesIn(list), (QByteArrayList{"a.json", "b.JSON", "c.json", "pipe.json"}));
        QVERIFY(!readFileBytes(list.files[1].path));
        QVERIFY(!readFileBytes(list.files[3].path));
        QVERIFY(QFile::remove(path(QStringLiteral("a.json"))));
        QVERIFY(QFile::remove(path(QStringLiteral("c.json"))));
        QVERIFY(listInputs({root()}).emptyFolders.isEmpty());
    }

    void operandsKeepTheirOrderAndAreNotLookedAt()
    {
        const InputList list = listInputs({root() + "/z", root() + "/a", root() + "/z"});
        QCOMPARE(namesIn(list), (QByteArrayList{"z", "a", "z"}));
    }

    void theOutputIsLeftOutOfFoldersOnly()
    {
        writeFile(path(QStringLiteral("a.json")), "{}");
        writeFile(path(QStringLiteral("db.json")), "{}");
        const QByteArray output =
            root() + "/../" + QFileInfo(m_folder->path()).fileName().toUtf8() + "/db.json";
        QCOMPARE(namesIn(listInputs({root()}, output)), QByteArrayList{"a.json"});
        QCOMPARE(namesIn(listInputs({root() + "/db.json"}, output)), QByteArrayList{"db.json"});
    }

    void aFolderThatCannotBeReadIsNamed()
    {
        const InputList missing = listInputs({root() + "/nothing"});
        QCOMPARE(missing.files.size(), 1);
        if (geteuid() == 0)
            QSKIP("root reads every folder");
        QDir().mkpath(path(QStringLiteral("closed")));
        QVERIFY(chmod(QByteArray(root() + "/closed").constData(), 0) == 0);
        QCOMPARE(listInputs({root()}).unreadableFolders, QByteArrayList{root() + "/closed"});
        chmod(QByteArray(root() + "/closed").constData(), 0700);
    }

    void foldersWithoutAnyFileAreNamed()
    {
        for (const char *folder : {"empty", "texts", "deep/er", "full/er"})
            QDir().mkpath(path(QLatin1String(folder)));
        for (const char *file : {"texts/a.txt", "full/er/a.json", "deep/er/.hidden.json"})
            writeFile(path(QLatin1String(file)), "{}");
        const QByteArray empty = root() + "/empty";
        const QByteArray texts = root() + "/texts";
        const QByteArray deep = root() + "/deep";
        const QByteArray full = root() + "/full";
        const InputList list = listInputs({empty, full, texts, root() + "/gone.json", deep});
        QCOMPARE(list.emptyFolders, (QByteArrayList{empty, texts, deep}));
        QCOMPARE(list.files.size(), 2);
        QCOMPARE(listInputs({full}, full + "/er/a.json").emptyFolders, QByteArrayList{full});
        QVERIFY(listInputs({root()}).emptyFolders.isEmpty());
    }

    void namesOfAnyBytesAreRead()
    {
        writeOdd(root() + '/' + oddName, "odd");
        writeFile(path(QStringLiteral("caf.json")), "even");
        QVERIFY(mkdir(QByteArray(root() + "/\xfe").constData(), 0700) == 0);
        writeOdd(root() + "/\xfe/in.json", "inner");
        for (const QByteArray &operand : QByteArrayList{root(), root() + "/./"}) {
            const InputList list = listInputs({operand});
            QByteArrayList contents;
            for (const InputFile &file : list.files)
                contents.append(readFileBytes(file.path).value_or("<none>"));
            std::sort(contents.begin(), contents.end());
            QCOMPARE(contents, (QByteArrayList{"even", "inner", "odd"}));
        }
        QCOMPARE(readFileBytes(libraryPath(root() + '/' + oddName)), QByteArray("odd"));
        QCOMPARE(shownName(oddName), "caf\xe9\\n.json");
    }

    void aNameLikeAResourceIsAFile()
    {
        const QString old = QDir::currentPath();
        QDir::setCurrent(m_folder->path());
        writeOdd(":icons", "colon");
        QCOMPARE(readFileBytes(libraryPath(":icons")), QByteArray("colon"));
        QDir::setCurrent(old);
    }

    void namesOfAnyBytesAreWrittenAsAWholeOrNotAtAll()
    {
        const QByteArray name = root() + '/' + oddName;
        writeOdd(name, "old");
        QVERIFY(chmod(name.constData(), 0640) == 0);
        {
            OutputFile output(name);
            QVERIFY(replaceFileBytes(output.path(), "new"));
            QCOMPARE(readOdd(name), "old");
        }
        QCOMPARE(readOdd(name), "old");
        QCOMPARE(namesIn(listInputs({root()})).size(), 1);
        {
            OutputFile output(name);
            QVERIFY(replaceFileBytes(output.path(), "new"));
            QVERIFY(output.putInPlace());
        }
        QCOMPARE(readOdd(name), "new");
        struct stat status = {};
        QVERIFY(stat(name.constData(), &status) == 0);
        QCOMPARE(int(status.st_mode & 0777), 0640);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 0);
    }

    void aPlainOutputIsWrittenDirectly()
    {
        OutputFile output(root() + "/db.json");
        QCOMPARE(output.path(), path(QStringLiteral("db.json")));
        QVERIFY(output.putInPlace());
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QByteArray root() const { return m_folder->path().toUtf8(); }
    QByteArrayList namesIn(const InputList &list) const
    {
        QByteArrayList names;
        for (const InputFile &file : list.files)
            names.append(file.name.sliced(root().size() + 1));
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestCliFilenames)
#include "tst_cli_filenames.moc"

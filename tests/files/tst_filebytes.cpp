// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/filebytes.h"
#include "files/pathnames.h"
#include "files/replacementfile.h"
#include "support/files.h"
#include "support/warnings.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#include <sys/xattr.h>
#endif

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray oldBytes = "the old contents\n"_ba;
const QByteArray newBytes("new contents,\r\nbinary \0\xff\xfe ones", 30);

QFileDevice::Permissions ownerBits(const QString &path)
{
    return QFile::permissions(path)
           & (QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

constexpr QFileDevice::Permissions readAndEnter = QFileDevice::ReadOwner | QFileDevice::ExeOwner;
constexpr QFileDevice::Permissions readAndWrite = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

#ifdef Q_OS_UNIX

// Permissions do not bind the administrator: makes the process an ordinary user's for a while.
class OrdinaryUser
{
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

public:
    explicit OrdinaryUser(const QString &folder)
    {
        if (geteuid() != 0)
            return;
        constexpr uid_t nobody = 65'534;
        if (chown(qPrintable(folder), nobody, nobody) != 0)
            return;
        // The real identity changes too, as it decides what access() answers.
        m_changed = setresgid(nobody, nobody, 0) == 0 && setresuid(nobody, nobody, 0) == 0;
    }

    ~OrdinaryUser()
    {
        if (!m_changed)
            return;
        if (setresuid(0, 0, 0) != 0 || setresgid(0, 0, 0) != 0)
            QTest::qFail("the administrator's identity is lost", __FILE__, __LINE__);
#ifdef Q_OS_LINUX
        // A change of identity takes away the right to inspect the process, which leak checkers
        // need.
        prctl(PR_SET_DUMPABLE, 1);
#endif
    }

    // Whether the process is bound by permissions now.
    [[nodiscard]] bool isBound() const
    {
        return geteuid() != 0;
    }

private:
    bool m_changed = false;
};

// No file can grow beyond some bytes, as if the disk were full.
class FileSizeLimit
{
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

public:
    explicit FileSizeLimit(rlim_t bytes) : m_oldAction(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_oldLimit);
        const rlimit limit{bytes, m_oldLimit.rlim_max};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            QTest::qFail("the limit cannot be set", __FILE__, __LINE__);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_oldLimit);
        std::signal(SIGXFSZ, m_oldAction);
    }

private:
    rlimit m_oldLimit{};
    void (*m_oldAction)(int);
};

// New files get all permissions but these.
class CreationMask
{
    Q_DISABLE_COPY_MOVE(CreationMask)

public:
    explicit CreationMask(mode_t mask) : m_old(umask(mask)) {}
    ~CreationMask() { umask(m_old); }

private:
    mode_t m_old;
};

#endif

// A folder that can be entered and read but takes no new file, nor lets one go.
class ClosedFolder
{
    Q_DISABLE_COPY_MOVE(ClosedFolder)

public:
    explicit ClosedFolder(const QString &path) : m_path(path)
    {
        if (!QFile::setPermissions(path, readAndEnter))
            QTest::qFail("the folder cannot be closed", __FILE__, __LINE__);
    }
    ~ClosedFolder() { QFile::setPermissions(m_path, readAndEnter | QFileDevice::WriteOwner); }

private:
    QString m_path;
};

} // namespace

class TestFileBytes : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        failOnWarnings();
        m_folder.emplace();
        QVERIFY(m_folder->isValid());
    }

    void cleanup() { m_folder.reset(); }

    // Reading.

    void allBytesAreRead_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << ""_ba;
        QTest::newRow("text") << oldBytes;
        QTest::newRow("binary") << newBytes;
        QTest::newRow("zeros") << QByteArray(70'000, '\0');
        QTest::newRow("huge") << QByteArray(10'000'000, '<');
    }
    void allBytesAreRead()
    {
        QFETCH(QByteArray, bytes);
        writeFile(path(), bytes);
        const std::optional<QByteArray> read = readFileBytes(path());
        QVERIFY(read.has_value());
        QCOMPARE(*read, bytes);
    }

    void whatIsNoFileIsNotRead()
    {
        QVERIFY(!readFileBytes(path()).has_value());
        QVERIFY(!readFileBytes(m_folder->path()).has_value());
        QVERIFY(!readFileBytes(path(u"none/file"_s)).has_value());
        QVERIFY(!readFileBytes({}).has_value());
        QVERIFY(QFile::link(path(u"none"_s), path(u"dangling"_s)));
        QVERIFY(!readFileBytes(path(u"dangling"_s)).has_value());
    }

    void aLinkIsReadThrough()
    {
        writeFile(path(), oldBytes);
        QVERIFY(QFile::link(path(), path(u"link"_s)));
        QCOMPARE(readFileBytes(path(u"link"_s)).value_or("nothing"_ba), oldBytes);
    }

#ifdef Q_OS_UNIX
    void aPipeIsNotWaitedFor()
    {
        QCOMPARE(mkfifo(qPrintable(path()), 0600), 0);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!readFileBytes(path()).has_value());
        QCOMPARE_LT(clock.elapsed(), 5'000);
    }

    void anUnreadableFileIsNotRead()
    {
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        writeFile(path(), oldBytes);
        QVERIFY(QFile::setPermissions(path(), QFileDevice::WriteOwner));
        QVERIFY(!readFileBytes(path()).has_value());
    }
#endif

#ifdef Q_OS_LINUX
    void aFileThatCannotBeReadToItsEndIsNotRead()
    {
        // The memory of the process: nothing is mapped at its start.
        const QString unreadable = u"/proc/self/mem"_s;
        QVERIFY(QFileInfo(unreadable).isFile());
        QVERIFY(!readFileBytes(unreadable).has_value());
    }
#endif

#ifdef Q_OS_LINUX
    // System files lie about their size: this one says 0 bytes and has terabytes.
    void aFileThatNeverEndsIsReadUpToTheLimit()
    {
        QVERIFY(QFile::link(u"/proc/self/pagemap"_s, path()));
        QCOMPARE(QFileInfo(path()).size(), 0);
        FileProblem problem = FileProblem::None;
        QVERIFY(!readFileBytes(path(), 1'000'000, &problem).has_value());
        QCOMPARE(problem, FileProblem::TooLarge);
    }
#endif

    void noMoreThanTheLimitIsRead()
    {
        constexpr qsizetype most = 3 << 20;
        FileProblem problem = FileProblem::TooLarge;
        writeFile(path(), QByteArray(most, 'x'));
        QCOMPARE(readFileBytes(path(), most, &problem).value_or("nothing"_ba).size(), most);
        QCOMPARE(problem, FileProblem::None);
        QVERIFY(!readFileBytes(path(), most - 1, &problem).has_value());
        QCOMPARE(problem, FileProblem::TooLarge);
        QVERIFY(!readFileBytes(path(u"none"_s), most, &problem).has_value());
        QCOMPARE(problem, FileProblem::Inaccessible);
        qsizetype read = 0;
        QVERIFY(!readFilePieces(path(), [&](QByteArrayView piece) {
            read += piece.size();
            return false;
        }));
        QCOMPARE_LE(read, qsizetype{1} << 20);
    }

    // Names.

    void aStepToTheParentFollowsTheLinkBeforeIt()
    {
        const QDir folder(m_folder->path());
        QVERIFY(folder.mkpath(u"elsewhere/inside"_s));
        QVERIFY(QFile::link(path(u"elsewhere/inside"_s), path(u"dl"_s)));
        QVERIFY(QFile::link(u"z.json"_s, path(u"elsewhere/l.json"_s)));
        const QString canonical = QFileInfo(m_folder->path()).canonicalFilePath();
        const QHash<QString, QString> meant{
            {path(u"dl/../z.json"_s), canonical + u"/elsewhere/z.json"_s},
            {path(u"dl/../inside/z.json"_s), canonical + u"/elsewhere/inside/z.json"_s},
            {path(u"dl/.././z.json"_s), canonical + u"/elsewhere/./z.json"_s},
            {path(u"dl/../l.json"_s), canonical + u"/elsewhere/l.json"_s},
            {path(u"dl/.."_s), canonical + u"/elsewhere"_s},
            {path(u"dl/z.json"_s), path(u"dl/z.json"_s)},
            {path(u"dl/..z.json"_s), path(u"dl/..z.json"_s)},
            {path(u"none/../z.json"_s), path(u"none/../z.json"_s)},
            {QString(), QString()}};
        for (auto it = meant.begin(); it != meant.end(); ++it)
            QCOMPARE(withoutParentSteps(it.key()), it.value());
    }

    // Writing where nothing stands in the way.

    void aNewFileIsWritten_data()
    {
        allBytesAreRead_data();
    }
    void aNewFileIsWritten()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(replaceFileBytes(path(), bytes));
        QCOMPARE(fileBytes(path()), bytes);
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    void anOldFileIsReplaced_data()
    {
        allBytesAreRead_data();
    }
    void anOldFileIsReplaced()
    {
        QFETCH(QByteArray, bytes);
        for (const QByteArray &old : {"x"_ba, QByteArray(100'000, 'x'), ""_ba}) {
            writeFile(path(), old);
            QVERIFY(replaceFileBytes(path(), bytes));
            QCOMPARE(fileBytes(path()), bytes);
        }
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    void aNameOfAnyLettersIsWritten_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("spaces") << u" a  b .json "_s;
        QTest::newRow("umlauts") << u"Gerät.json"_s;
        QTest::newRow("combining") << u"Gera\u0308t.json"_s;
        QTest::newRow("Chinese") << u"数据.json"_s;
        QTest::newRow("beyond the basic plane") << u"🧪.json"_s;
        QTest::newRow("right to left") << u"ספקטרום.json"_s;
        QTest::newRow("format characters") << u"a\u202eb\u200bc"_s;
        QTest::newRow("signs") << u"a%1 %20 #?*:|<>\"'&;$`\\.json"_s;
        QTest::newRow("template") << u"XXXXXX.XXXXXX"_s;
        QTest::newRow("line feed") << u"a\nb"_s;
        QTest::newRow("hidden") << u".json"_s;
        QTest::newRow("dash") << u"-rf"_s;
    }
    void aNameOfAnyLettersIsWritten()
    {
        QFETCH(QString, name);
        QVERIFY(QDir(m_folder->path()).mkdir(name));
        const QString inside = path(name) + u'/' + name;
        QVERIFY(replaceFileBytes(inside, oldBytes));
        QVERIFY(replaceFileBytes(inside, newBytes));
        QCOMPARE(fileBytes(inside), newBytes);
        QCOMPARE(readFileBytes(inside).value_or("nothing"_ba), newBytes);
        QCOMPARE(namesIn(path(name)), QStringList{name});
    }

    void aNameWithHalfALetterThrowsNothing()
    {
        const QString half = path(u"a"_s + QChar(0xd83e) + u".json"_s);
        QVERIFY(replaceFileBytes(half, oldBytes));
        QVERIFY(replaceFileBytes(half, newBytes));
        QCOMPARE(readFileBytes(half).value_or("nothing"_ba), newBytes);
        QCOMPARE(namesIn(m_folder->path()).size(), 1);
    }

    // The system would end the name at the null character.
    void aNameWithANullIsRefused()
    {
        QVERIFY(replaceFileBytes(path(u"b"_s), oldBytes));
        QVERIFY(!replaceFileBytes(path(u"b"_s) + QChar::Null + u"c.json"_s, newBytes));
        QCOMPARE(fileBytes(path(u"b"_s)), oldBytes);
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"b"_s});
    }

    // A second file beside it cannot have a name made of this one.
    void aNameAsLongAsItCanBeIsWritten_data()
    {
        QTest::addColumn<QString>("name");
        for (int size = 245; size <= 255; ++size)
            QTest::addRow("%d letters", size) << QString(size, u'n');
        QTest::newRow("two bytes a letter") << QString(u'n' + QString(127, u'ä'));
    }
    void aNameAsLongAsItCanBeIsWritten()
    {
        QFETCH(QString, name);
        QVERIFY(replaceFileBytes(path(name), oldBytes));
        QCOMPARE(fileBytes(path(name)), oldBytes);
        QVERIFY(replaceFileBytes(path(name), newBytes));
        QCOMPARE(fileBytes(path(name)), newBytes);
        QVERIFY(replaceFileBytes(path(name), "short"));
        QCOMPARE(fileBytes(path(name)), "short"_ba);
        QCOMPARE(namesIn(m_folder->path()), QStringList{name});
    }

    void aNameThatIsTooLongFails()
    {
        QVERIFY(!replaceFileBytes(path(QString(256, u'n')), newBytes));
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void aRelativePathIsTakenFromTheWorkingFolder()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder->path()));
        const bool written = replaceFileBytes(u"file"_s, newBytes);
        QVERIFY(QDir::setCurrent(before));
        QVERIFY(written);
        QCOMPARE(fileBytes(path()), newBytes);
    }

    void aFolderIsNotWrittenOver()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"file"_s));
        QVERIFY(!replaceFileBytes(path(), newBytes));
        QVERIFY(QFileInfo(path()).isDir());
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    void aMissingFolderFailsAndIsNotMade()
    {
        QVERIFY(!replaceFileBytes(path(u"none/file"_s), newBytes));
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void aFileTakenForAFolderFails()
    {
        writeFile(path(), oldBytes);
        QVERIFY(!replaceFileBytes(path(u"file/inside"_s), newBytes));
        QCOMPARE(fileBytes(path()), oldBytes);
    }

    // Links.

    void aLinkIsKeptAndItsFileReplaced()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"elsewhere"_s));
        const QString target = path(u"elsewhere/target"_s);
        writeFile(target, oldBytes);
        QVERIFY(QFile::link(target, path(u"first"_s)));
        QVERIFY(QFile::link(u"first"_s, path(u"second"_s)));
        QVERIFY(replaceFileBytes(path(u"second"_s), newBytes));
        QCOMPARE(fileBytes(target), newBytes);
        QVERIFY(!QFileInfo(target).isSymLink());
        QCOMPARE(QFileInfo(path(u"first"_s)).symLinkTarget(), target);
        QCOMPARE(QFileInfo(path(u"second"_s)).symLinkTarget(), path(u"first"_s));
        QCOMPARE(namesIn(path(u"elsewhere"_s)), QStringList{u"target"_s});
        QCOMPARE(namesIn(m_folder->path()), (QStringList{u"elsewhere"_s, u"first"_s, u"second"_s}));
    }

    void aDanglingLinkIsKeptAndItsFileMade()
    {
        QVERIFY(QFile::link(path(u"target"_s), path(u"link"_s)));
        QVERIFY(replaceFileBytes(path(u"link"_s), newBytes));
        QVERIFY(QFileInfo(path(u"link"_s)).isSymLink());
        QCOMPARE(fileBytes(path(u"target"_s)), newBytes);
        QCOMPARE(namesIn(m_folder->path()), (QStringList{u"link"_s, u"target"_s}));
    }

    void aLinkIntoAMissingFolderFailsAndIsKept()
    {
        QVERIFY(QFile::link(path(u"none/target"_s), path(u"link"_s)));
        QVERIFY(!replaceFileBytes(path(u"link"_s), newBytes));
        QVERIFY(QFileInfo(path(u"link"_s)).isSymLink());
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"link"_s});
    }

    void linksInACircleFailAndAreKept()
    {
        QVERIFY(QFile::link(path(u"second"_s), path(u"first"_s)));
        QVERIFY(QFile::link(path(u"first"_s), path(u"second"_s)));
        QVERIFY(!replaceFileBytes(path(u"first"_s), newBytes));
        QVERIFY(QFileInfo(path(u"first"_s)).isSymLink());
        QVERIFY(QFileInfo(path(u"second"_s)).isSymLink());
        QCOMPARE(namesIn(m_folder->path()), (QStringList{u"first"_s, u"second"_s}));
    }

    void aLinkedFolderIsEntered()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"real"_s));
        QVERIFY(QFile::link(path(u"real"_s), path(u"linked"_s)));
        QVERIFY(replaceFileBytes(path(u"linked/file"_s), newBytes));
        QVERIFY(QFileInfo(path(u"linked"_s)).isSymLink());
        QCOMPARE(fileBytes(path(u"real/file"_s)), newBytes);
    }

    // The other name is a separate file afterwards.
    void aHardLinkKeepsTheOldContents()
    {
#ifdef Q_OS_UNIX
        writeFile(path(), oldBytes);
        QCOMPARE(link(qPrintable(path()), qPrintable(path(u"other"_s))), 0);
        QVERIFY(replaceFileBytes(path(), newBytes));
        QCOMPARE(fileBytes(path()), newBytes);
        QCOMPARE(fileBytes(path(u"other"_s)), oldBytes);
#else
        QSKIP("needs hard links");
#endif
    }

    // In pieces.

    void theOldFileStaysUntilAllPiecesAreCommitted()
    {
        writeFile(path(), oldBytes);
        ReplacementFile file(path());
        QVERIFY(file.open());
        const QByteArray piece(1'000'000, '<');
        for (int i = 0; i < 5; ++i) {
            QVERIFY(file.write(piece));
            QCOMPARE(fileBytes(path()), oldBytes);
        }
        QVERIFY(file.commit());
        QCOMPARE(fileBytes(path()), piece.repeated(5));
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    void whoHasTheOldFileOpenReadsItToItsEnd_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("short name") << u"file"_s;
        QTest::newRow("longest name") << QString(255, u'n');
    }
    void whoHasTheOldFileOpenReadsItToItsEnd()
    {
        QFETCH(QString, name);
        writeFile(path(name), oldBytes);
        QFile reader(path(name));
        QVERIFY(reader.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        QVERIFY(replaceFileBytes(path(name), newBytes));
        QCOMPARE(reader.readAll(), oldBytes);
    }

    void nothingIsListedBeforeTheCommit()
    {
        ReplacementFile file(path());
        QVERIFY(file.open());
        QVERIFY(file.write(QByteArray(1'000'000, '<')));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList());
    }

    void piecesThatAreNotCommittedLeaveNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("short name") << u"file"_s;
        QTest::newRow("longest name") << QString(255, u'n');
    }
    void piecesThatAreNotCommittedLeaveNothing()
    {
        QFETCH(QString, name);
        for (const bool existed : {false, true}) {
            if (existed)
                writeFile(path(name), oldBytes);
            {
                ReplacementFile file(path(name));
                QVERIFY(file.open());
                QVERIFY(file.write(newBytes));
            }
            QCOMPARE(namesIn(m_folder->path()), existed ? QStringList{name} : QStringList());
        }
        QCOMPARE(fileBytes(path(name)), oldBytes);
    }

#ifdef Q_OS_UNIX

    // Modes and permissions.

    void theModeIsKept_data()
    {
        QTest::addColumn<uint>("mode");
        for (const uint mode : {0600U, 0640U, 0644U, 0664U, 0666U, 0755U, 0700U, 0606U})
            QTest::addRow("%o", mode) << mode;
    }
    void theModeIsKept()
    {
        QFETCH(uint, mode);
        const CreationMask mask(022);
        writeFile(path(), oldBytes);
        QCOMPARE(chmod(qPrintable(path()), mode), 0);
        QVERIFY(replaceFileBytes(path(), newBytes));
        QCOMPARE(fileBytes(path()), newBytes);
        struct stat status = {};
        QCOMPARE(stat(qPrintable(path()), &status), 0);
        QCOMPARE(status.st_mode & 07777U, mode);
    }

    void aNewFileHasTheModeOfTheUsersMask_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("short name") << u"file"_s;
        QTest::newRow("longest name") << QString(255, u'n');
    }
    void aNewFileHasTheModeOfTheUsersMask()
    {
        QFETCH(QString, name);
        const CreationMask mask(027);
        QVERIFY(replaceFileBytes(path(name), newBytes));
        struct stat status = {};
        QCOMPARE(stat(qPrintable(path(name)), &status), 0);
        QCOMPARE(status.st_mode & 07777U, 0640U);
    }

    void theGroupAndTheOwnerAreKept()
    {
        if (geteuid() != 0)
            QSKIP("only the administrator can give a file away");
        constexpr uid_t somebody = 12'345;
        writeFile(path(), oldBytes);
        QCOMPARE(chown(qPrintable(path()), somebody, somebody), 0);
        QVERIFY(replaceFileBytes(path(), newBytes));
        struct stat status = {};
        QCOMPARE(stat(qPrintable(path()), &status), 0);
        QCOMPARE(status.st_uid, somebody);
        QCOMPARE(status.st_gid, somebody);
    }

    // The rights of the old group must not pass to the user's own.
    void aGroupThatCannotBeKeptGivesItsPermissionsToNobody()
    {
        if (geteuid() != 0)
            QSKIP("only the administrator can give a file away");
        writeFile(path(), oldBytes);
        QCOMPARE(chown(qPrintable(path()), 12'345, 12'345), 0);
        QCOMPARE(chmod(qPrintable(path()), 0666 & ~04), 0);
        {
            const OrdinaryUser user(m_folder->path());
            if (!user.isBound())
                QSKIP("permissions do not bind this process");
            QVERIFY(replaceFileBytes(path(), newBytes));
        }
        struct stat status = {};
        QCOMPARE(stat(qPrintable(path()), &status), 0);
        QCOMPARE(status.st_mode & 07777U, 0622U);
        QCOMPARE(fileBytes(path()), newBytes);
    }

#ifdef Q_OS_LINUX
    void extendedAttributesAreKept()
    {
        const QByteArray name = QFile::encodeName(path());
        writeFile(path(), oldBytes);
        if (setxattr(name.constData(), "user.colour", "red", 3, 0) != 0)
            QSKIP("the file system knows no attributes");
        QVERIFY(replaceFileBytes(path(), newBytes));
        QByteArray value(10, '\0');
        QCOMPARE(getxattr(name.constData(), "user.colour", value.data(), value.size()), 3);
        QCOMPARE(value.left(3), "red"_ba);
    }
#endif

    void aReadOnlyFileIsNotReplaced()
    {
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        writeFile(path(), oldBytes);
        QVERIFY(QFile::setPermissions(path(), QFileDevice::ReadOwner));
        QVERIFY(!QFileInfo(path()).isWritable());
        QVERIFY(!replaceFileBytes(path(), newBytes));
        QCOMPARE(fileBytes(path()), oldBytes);
        QCOMPARE(ownerBits(path()), QFileDevice::Permissions(QFileDevice::ReadOwner));
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    void aReadOnlyFileBehindALinkIsNotReplaced()
    {
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        writeFile(path(), oldBytes);
        QVERIFY(QFile::setPermissions(path(), QFileDevice::ReadOwner));
        QVERIFY(QFile::link(path(), path(u"link"_s)));
        QVERIFY(!replaceFileBytes(path(u"link"_s), newBytes));
        QCOMPARE(fileBytes(path()), oldBytes);
        QVERIFY(QFileInfo(path(u"link"_s)).isSymLink());
    }

    void aWritableFileInAReadOnlyFolderIsWrittenInPlace_data()
    {
        QTest::addColumn<QByteArray>("old");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("longer") << oldBytes << QByteArray(100'000, '<');
        QTest::newRow("shorter") << QByteArray(100'000, 'x') << newBytes;
        QTest::newRow("as long") << QByteArray(33, 'x') << newBytes;
        QTest::newRow("emptied") << oldBytes << ""_ba;
        QTest::newRow("filled") << ""_ba << newBytes;
        QTest::newRow("huge") << QByteArray(5'000'000, 'x') << QByteArray(3'000'001, '<');
    }
    void aWritableFileInAReadOnlyFolderIsWrittenInPlace()
    {
        QFETCH(QByteArray, old);
        QFETCH(QByteArray, bytes);
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        writeFile(path(), old);
        QVERIFY(QFile::setPermissions(path(), readAndWrite));
        const ClosedFolder closed(m_folder->path());
        QVERIFY(!QFile(path(u"second"_s)).open(QIODevice::WriteOnly));

        QVERIFY(replaceFileBytes(path(), bytes));
        QCOMPARE(fileBytes(path()), bytes);
        QCOMPARE(ownerBits(path()), readAndWrite);
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    void aLinkIntoAReadOnlyFolderIsWrittenThrough()
    {
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        QVERIFY(QDir(m_folder->path()).mkdir(u"closed"_s));
        const QString target = path(u"closed/target"_s);
        writeFile(target, oldBytes);
        QVERIFY(QFile::link(target, path(u"link"_s)));
        const ClosedFolder closed(path(u"closed"_s));
        QVERIFY(replaceFileBytes(path(u"link"_s), newBytes));
        QCOMPARE(fileBytes(target), newBytes);
        QVERIFY(QFileInfo(path(u"link"_s)).isSymLink());
        QCOMPARE(namesIn(m_folder->path()), (QStringList{u"closed"_s, u"link"_s}));
    }

    void aNewFileInAReadOnlyFolderFails()
    {
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        const ClosedFolder closed(m_folder->path());
        QVERIFY(!replaceFileBytes(path(), newBytes));
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void aReadOnlyFileInAReadOnlyFolderFails()
    {
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        writeFile(path(), oldBytes);
        QVERIFY(QFile::setPermissions(path(), QFileDevice::ReadOwner));
        const ClosedFolder closed(m_folder->path());
        QVERIFY(!replaceFileBytes(path(), newBytes));
        QCOMPARE(fileBytes(path()), oldBytes);
    }

    // The folder accepts a second file but keeps other people's, like the system's temporary
    // folder.
    void whereTheOldFileCannotBeTakenAwayItIsWrittenInPlace()
    {
        if (geteuid() != 0)
            QSKIP("only the administrator can give a file away");
        writeFile(path(), oldBytes);
        QCOMPARE(chmod(qPrintable(path()), 0666), 0);
        QCOMPARE(chmod(qPrintable(m_folder->path()), 01777), 0);
        bool written = false;
        {
            const OrdinaryUser user(m_folder->path());
            if (!user.isBound())
                QSKIP("permissions do not bind this process");
            written = replaceFileBytes(path(), newBytes);
        }
        QVERIFY(written);
        QCOMPARE(fileBytes(path()), newBytes);
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    // Disks that are full.

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
        // Shorter and longer than what can be written.
        for (const int oldSize : {0, 500, 6'000, 4'000'000}) {
            const QByteArray old(oldSize, 'o');
            writeFile(path(), old);
            bool written = true;
            {
                const FileSizeLimit full(static_cast<rlim_t>(limit));
                written = replaceFileBytes(path(), QByteArray(size, 'n'));
            }
            QVERIFY(!written);
            QCOMPARE(fileBytes(path()).size(), oldSize);
            QVERIFY(fileBytes(path()) == old);
            QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
        }
    }

    void aShortWriteOfANewFileLeavesNothing_data()
    {
        aShortWriteLeavesTheOldFileAndNothingElse_data();
    }
    void aShortWriteOfANewFileLeavesNothing()
    {
        QFETCH(int, limit);
        QFETCH(int, size);
        bool written = true;
        {
            const FileSizeLimit full(static_cast<rlim_t>(limit));
            written = replaceFileBytes(path(), QByteArray(size, 'n'));
        }
        QVERIFY(!written);
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void aShortWriteInPlacePutsTheOldContentsBack_data()
    {
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("size");
        QTest::newRow("at once") << 20'000 << 100'000;
        QTest::newRow("by one byte") << 99'999 << 100'000;
        QTest::newRow("far behind") << 1'500'000 << 3'000'000;
        // Qt holds a short last piece back until it is told to flush.
        QTest::newRow("in the last bytes") << (1 << 20) + 1'000 << (1 << 20) + 5'000;
    }
    void aShortWriteInPlacePutsTheOldContentsBack()
    {
        QFETCH(int, limit);
        QFETCH(int, size);
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        for (const int oldSize : {0, 500, 19'000}) {
            const QByteArray old(oldSize, 'o');
            writeFile(path(), old);
            const ClosedFolder closed(m_folder->path());
            ReplacementFile file(path());
            QVERIFY(file.open());
            QVERIFY(file.write(QByteArray(size, 'n')));
            bool written = true;
            {
                // Filled up by somebody else meanwhile.
                const FileSizeLimit full(static_cast<rlim_t>(limit));
                written = file.commit();
            }
            QVERIFY(!written);
            QCOMPARE(fileBytes(path()).size(), oldSize);
            QVERIFY(fileBytes(path()) == old);
            QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
        }
    }

    void aFullTemporaryFolderLeavesTheOldFileInPlace()
    {
        const OrdinaryUser user(m_folder->path());
        if (!user.isBound())
            QSKIP("permissions do not bind this process");
        writeFile(path(), oldBytes);
        const ClosedFolder closed(m_folder->path());
        bool written = true;
        {
            const FileSizeLimit full(1'000);
            written = replaceFileBytes(path(), QByteArray(5'000, 'n'));
        }
        QVERIFY(!written);
        QCOMPARE(fileBytes(path()), oldBytes);
    }

    void whatJustFitsIsWritten()
    {
        const QByteArray bytes(5'000, 'n');
        for (const QString &name : {u"file"_s, QString(255, u'n')}) {
            bool written = false;
            {
                const FileSizeLimit full(5'000);
                written = replaceFileBytes(path(name), bytes);
            }
            QVERIFY(written);
            QCOMPARE(fileBytes(path(name)), bytes);
        }
    }

    void aPieceThatDoesNotFitFailsTheCommit()
    {
        writeFile(path(), oldBytes);
        QList<bool> taken;
        bool committed = true;
        {
            const FileSizeLimit full(50'000);
            ReplacementFile file(path());
            taken.append(file.open());
            taken.append(file.write(QByteArray(40'000, 'n')));
            taken.append(file.write(QByteArray(40'000, 'n')));
            taken.append(file.write("n"));
            committed = file.commit();
        }
        QCOMPARE(taken, (QList<bool>{true, true, false, false}));
        QVERIFY(!committed);
        QCOMPARE(fileBytes(path()), oldBytes);
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    // What is no regular file.

    void aPipeIsRefusedAtOnceAndStays()
    {
        QCOMPARE(mkfifo(qPrintable(path()), 0600), 0);
        QVERIFY(!replaceFileBytes(path(), newBytes));
        struct stat status = {};
        QCOMPARE(stat(qPrintable(path()), &status), 0);
        QVERIFY(S_ISFIFO(status.st_mode));
        QCOMPARE(namesIn(m_folder->path()), QStringList{u"file"_s});
    }

    void theNullDeviceIsWrittenToAndStays()
    {
        QVERIFY(replaceFileBytes(u"/dev/null"_s, newBytes));
        struct stat status = {};
        QCOMPARE(stat("/dev/null", &status), 0);
        QVERIFY(S_ISCHR(status.st_mode));
    }

#endif

private:
    [[nodiscard]] QString path(const QString &name = u"file"_s) const
    {
        return m_folder->filePath(name);
    }

    std::optional<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestFileBytes)
#include "tst_filebytes.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/faultlibrary.h"
#include "files/filebytes.h"
#include "support/files.h"
#include "support/warnings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray oldBytes = "the old contents\n"_ba;
const QByteArray newBytes = QByteArray(100'000, 'n');

// Makes a call on the files of a folder fail while it is there.
class Fault
{
    Q_DISABLE_COPY_MOVE(Fault)

public:
    Fault(const QString &folder, const char *calls, const char *action, bool noNameless = false,
          bool always = true)
        : m_path(QFile::encodeName(folder))
    {
        zoravel_fault_plan plan = {};
        plan.path = m_path.constData();
        plan.calls = calls;
        plan.action = action;
        plan.nth = 1;
        plan.always = always;
        plan.no_nameless = noNameless;
        zoravel_fault_arm(&plan);
    }
    ~Fault() { zoravel_fault_disarm(); }

private:
    QByteArray m_path;
};

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

// A save while the system fails at something other than writing.
class TestSaveFaults : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        failOnWarnings();
        m_folder.emplace();
        writeFile(path(), oldBytes);
        QCOMPARE(::chmod(qPrintable(path()), 0640), 0);
    }

    void cleanup() { m_folder.reset(); }

    void aSaveThatCannotKeepTheModeOrTheOwnerFailsWithTheOldFileWhole_data()
    {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<QByteArray>("error");
        QTest::addColumn<bool>("noNameless");
        for (const char *call : {"stat", "fstat", "fchmod"}) {
            for (const char *error : {"EIO", "EPERM", "EACCES", "ENOMEM"}) {
                QTest::addRow("%s %s", call, error)
                    << QByteArray(call) << QByteArray(error) << false;
                QTest::addRow("%s %s, hidden", call, error)
                    << QByteArray(call) << QByteArray(error) << true;
            }
        }
        QTest::newRow("fchown EIO") << "fchown"_ba
                                    << "EIO"_ba << false;
        QTest::newRow("fchown EDQUOT, hidden") << "fchown"_ba
                                               << "EDQUOT"_ba << true;
    }
    void aSaveThatCannotKeepTheModeOrTheOwnerFailsWithTheOldFileWhole()
    {
        QFETCH(QByteArray, call);
        QFETCH(QByteArray, error);
        QFETCH(bool, noNameless);
        if (call == "fchown" && !giveAway())
            QSKIP("only the administrator gives files away");
        struct stat before = {};
        QCOMPARE(::stat(qPrintable(path()), &before), 0);
        {
            const Fault fault(m_folder->path(), call.constData(), error.constData(), noNameless);
            QVERIFY(!replaceFileBytes(path(), newBytes));
            QVERIFY(zoravel_fault_fired());
        }
        struct stat after = {};
        QCOMPARE(::stat(qPrintable(path()), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
        QCOMPARE(after.st_mode, before.st_mode);
        QCOMPARE(after.st_uid, before.st_uid);
        QCOMPARE(after.st_gid, before.st_gid);
        QCOMPARE(fileBytes(path()), oldBytes);
        QCOMPARE(names(), QStringList{u"file"_s});
    }

    // The group's rights shrink to those of everybody.
    void anOwnerAndAGroupThatMayNotBeGivenStayBehind()
    {
        if (!giveAway())
            QSKIP("only the administrator gives files away");
        {
            const Fault fault(m_folder->path(), "fchown", "EPERM");
            QVERIFY(replaceFileBytes(path(), newBytes));
        }
        QCOMPARE(fileBytes(path()), newBytes);
        QCOMPARE(modeOf(path()), mode_t{0600});
    }

    void anAttributeThatCannotBeKeptFailsTheSave()
    {
        constexpr char name[] = "user.zoravel";
        if (::setxattr(qPrintable(path()), name, "note", 4, 0) != 0)
            QSKIP("there are no extended attributes here");
        for (const char *error : {"EIO", "ENOSPC"}) {
            const Fault fault(m_folder->path(), "fsetxattr", error);
            QVERIFY(!replaceFileBytes(path(), newBytes));
        }
        QCOMPARE(fileBytes(path()), oldBytes);
        // An attribute that this user may not set is lost.
        const Fault fault(m_folder->path(), "fsetxattr", "EPERM");
        QVERIFY(replaceFileBytes(path(), newBytes));
    }

    void whatMayNotBeLinkedIsWrittenUnderAName_data()
    {
        QTest::addColumn<QByteArray>("error");
        for (const char *error : {"EPERM", "EACCES", "EIO", "ENOMEM"})
            QTest::newRow(error) << QByteArray(error);
    }
    void whatMayNotBeLinkedIsWrittenUnderAName()
    {
        QFETCH(QByteArray, error);
        {
            const Fault fault(m_folder->path(), "link", error.constData());
            QVERIFY(replaceFileBytes(path(), newBytes));
            QVERIFY(replaceFileBytes(path(u"new"_s), newBytes));
        }
        QCOMPARE(fileBytes(path()), newBytes);
        QCOMPARE(modeOf(path()), mode_t{0640});
        const mode_t mask = ::umask(0);
        ::umask(mask);
        QCOMPARE(fileBytes(path(u"new"_s)), newBytes);
        QCOMPARE(modeOf(path(u"new"_s)), mode_t{0666} & ~mask);
        QCOMPARE(names(), (QStringList{u"file"_s, u"new"_s}));
    }

    // Network file systems behave like this if the answer is lost and the request is repeated.
    void whatWasPutInPlaceAndThenFailedCountsAsSaved_data()
    {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<bool>("noNameless");
        QTest::newRow("rename") << "rename"_ba << false;
        QTest::newRow("rename, hidden") << "rename"_ba << true;
        QTest::newRow("link") << "link"_ba << false;
    }
    void whatWasPutInPlaceAndThenFailedCountsAsSaved()
    {
        QFETCH(QByteArray, call);
        QFETCH(bool, noNameless);
        for (const QString &name : {u"file"_s, u"new"_s}) {
            const Fault fault(m_folder->path(), call.constData(), "done", noNameless);
            QVERIFY(replaceFileBytes(path(name), newBytes));
            QCOMPARE(fileBytes(path(name)), newBytes);
        }
        QCOMPARE(names(), (QStringList{u"file"_s, u"new"_s}));
        const Fault fault(m_folder->path(), "rename", "EIO");
        QVERIFY(!replaceFileBytes(path(), oldBytes));
        QCOMPARE(fileBytes(path()), newBytes);
    }

    // A dead process leaves a hidden file; a living one keeps its own.
    void whatADeadProcessHasLeftGoesWithTheNextSave()
    {
        pid_t child = ::fork();
        if (child == 0) {
            const Fault fault(m_folder->path(), "rename", "kill");
            ::_exit(replaceFileBytes(path(), newBytes) ? 0 : 1);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(names().size(), 2);
        QVERIFY(names().constFirst().startsWith(u".zoravel-"_s));
        QVERIFY(replaceFileBytes(path(), newBytes));
        QCOMPARE(names(), QStringList{u"file"_s});
    }

    void whatALivingProcessWritesStays_data()
    {
        QTest::addColumn<bool>("noNameless");
        QTest::newRow("nameless") << false;
        QTest::newRow("hidden") << true;
    }
    void whatALivingProcessWritesStays()
    {
        QFETCH(bool, noNameless);
        const pid_t child = ::fork();
        if (child == 0) {
            zoravel_fault_plan plan = {};
            const QByteArray folder = QFile::encodeName(m_folder->path());
            plan.path = folder.constData();
            plan.calls = "rename";
            plan.slow = 3'000'000;
            plan.no_nameless = noNameless;
            zoravel_fault_arm(&plan);
            ::_exit(replaceFileBytes(path(), newBytes) ? 0 : 1);
        }
        const bool seen = QTest::qWaitFor([&] { return names().size() == 2; }, 20'000);
        const QString hidden = names().constFirst();
        const bool saved = replaceFileBytes(path(u"other"_s), newBytes);
        const bool stays = QFile::exists(path(hidden));
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(seen && saved && stays);
        QCOMPARE(status, 0);
        QCOMPARE(fileBytes(path()), newBytes);
        QCOMPARE(names(), (QStringList{u"file"_s, u"other"_s}));
    }

    void onlyLeftoversAreTidiedUp()
    {
        const QStringList others{u".zoravel-0123456789abcdeg"_s, u".zoravel-0123456789abcde"_s,
                                 u".zoravel-0123456789ABCDEF"_s, u".zoravel-0123456789abcdef0"_s,
                                 u"zoravel-0123456789abcdef"_s};
        for (const QString &name : others)
            writeFile(path(name), oldBytes);
        const QString folder = u".zoravel-00000000000000aa"_s;
        const QString link = u".zoravel-00000000000000bb"_s;
        QVERIFY(QDir(m_folder->path()).mkdir(folder));
        QVERIFY(QFile::link(path(), path(link)));
        QCOMPARE(::mkfifo(qPrintable(path(u".zoravel-00000000000000cc"_s)), 0600), 0);
        writeFile(path(u".zoravel-0123456789abcdef"_s), oldBytes);
        QVERIFY(replaceFileBytes(path(), newBytes));
        QStringList left =
            others + QStringList{u"file"_s, folder, link, u".zoravel-00000000000000cc"_s};
        left.sort();
        QCOMPARE(names(), left);
    }

private:
    QString path(const QString &name = u"file"_s) const { return m_folder->filePath(name); }

    // All names in the folder, by their code units.
    QStringList names() const
    {
        QStringList names =
            QDir(m_folder->path())
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        names.sort();
        return names;
    }

    bool giveAway() const { return ::chown(qPrintable(path()), 65'534, 65'534) == 0; }

    std::optional<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestSaveFaults)
#include "tst_savefaults.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/campaigns.h"
#include "faults/faultlibrary.h"
#include "faults/trial.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype usualSize = 40'000;

// Saves and compares the outcome with the one that is wanted.
QString complaintAfterSave(Trial &trial, int number, Trial::Result wanted)
{
    trial.prepare(number);
    trial.carryOut([] {});
    QString complaint = trial.complaint();
    if (complaint.isEmpty() && trial.result() != wanted)
        return wanted == Trial::Result::New ? u"it is not written"_s : u"it is written"_s;
    return complaint;
}

// Twice: the leftovers of the first save must not hinder the second.
QString complaintAfterTwoSaves(Trial &trial)
{
    QString complaint = complaintAfterSave(trial, 1, Trial::Result::New);
    return complaint.isEmpty() ? complaintAfterSave(trial, 2, Trial::Result::New) : complaint;
}

// The mode of a file or folder for a while.
class Mode
{
    Q_DISABLE_COPY_MOVE(Mode)

public:
    Mode(const QString &path, mode_t mode) : m_path(QFile::encodeName(path))
    {
        struct stat status = {};
        if (stat(m_path.constData(), &status) != 0 || chmod(m_path.constData(), mode) != 0)
            qFatal("cannot change the mode of %s", m_path.constData());
        m_old = status.st_mode & 07777;
    }
    ~Mode() { chmod(m_path.constData(), m_old); }

private:
    QByteArray m_path;
    mode_t m_old = 0;
};

// A limit of the process for a while.
class Limit
{
    Q_DISABLE_COPY_MOVE(Limit)

public:
    Limit(__rlimit_resource resource, rlim_t value) : m_resource(resource)
    {
        getrlimit(m_resource, &m_old);
        const rlimit limit{value, m_old.rlim_max};
        if (setrlimit(m_resource, &limit) != 0)
            qFatal("cannot set a limit");
    }
    ~Limit() { setrlimit(m_resource, &m_old); }

private:
    __rlimit_resource m_resource;
    rlimit m_old = {};
};

QString closedFolder(Editor &editor, const QString &folder)
{
    Trial trial(editor, Editor::Save, usualSize, folder);
    const Mode closed(folder, 0555);
    return complaintAfterTwoSaves(trial);
}

// What is wrong after a save in place of which every call has failed from some one on: the old
// contents must be in the file or in the temporary folder, and nothing else there.
QString complaintAfterLastingFault(const Editor &editor, const Trial &trial,
                                   const QString &temporary)
{
    const QStringList kept = QDir(temporary).entryList(QDir::Files | QDir::Hidden);
    if (kept.isEmpty())
        return trial.complaint();
    const QString copy = temporary + u'/' + kept.constFirst();
    const bool isWhole = fileContents(copy) == trial.oldBytes();
    QFile::remove(copy);
    if (kept.size() > 1 || !isWhole)
        return u"left in the temporary folder: "_s + kept.join(u", "_s);
    if (trial.result() == Trial::Result::Old)
        return trial.complaint();
    if (editor.boxes.size() != 1)
        return u"the file is a mixture, and %1 boxes came up"_s.arg(editor.boxes.size());
    return {};
}

QString complaintAfterPassingFault(const Trial &trial, const QString &temporary)
{
    QString complaint = trial.complaint();
    if (complaint.isEmpty() && !QDir(temporary).isEmpty())
        return u"left in the temporary folder"_s;
    return complaint;
}

// Every call that writes the file itself, or the copies in the temporary folder, fails: once, or it
// and all after it.
QString faultsInPlace(Editor &editor, const QString &folder, bool isLasting, Tally &tally)
{
    const QString temporary = folder + u"-temporary"_s;
    QDir().mkpath(temporary);
    qputenv("TMPDIR", QFile::encodeName(temporary));
    Trial trial(editor, Editor::Save, usualSize, folder);
    const Mode closed(folder, 0555);
    const QByteArray path = QFile::encodeName(folder);
    int number = 0;
    for (const char *action : {"ENOSPC", "EIO", "EDQUOT", "EACCES", "EROFS", "EMFILE"}) {
        for (long nth = 1;; ++nth) {
            zoravel_fault_plan plan = {};
            plan.path = path.constData();
            plan.action = action;
            plan.nth = nth;
            plan.always = isLasting;
            trial.prepare(++number);
            trial.carryOut([&] { zoravel_fault_arm(&plan); });
            zoravel_fault_disarm();
            if (!zoravel_fault_fired())
                break;
            tally.count(u"in place: %1 at call %2 (%3 %4)"_s.arg(QLatin1String(action))
                            .arg(nth)
                            .arg(QLatin1String(zoravel_fault_fired()),
                                 QFile::decodeName(zoravel_fault_fired_path())),
                        isLasting ? complaintAfterLastingFault(editor, trial, temporary)
                                  : complaintAfterPassingFault(trial, temporary));
        }
    }
    qunsetenv("TMPDIR");
    return {};
}

QString newFileInClosedFolder(Editor &editor, const QString &folder)
{
    const Trial trial(editor, Editor::Save, usualSize, folder);
    const Mode closed(folder, 0555);
    const QString path = folder + u"/new.json"_s;
    editor.type(Editor::SaveAs, u"Unsaved"_s);
    editor.carryOut(Editor::SaveAs, path, {}, [] {});
    if (editor.boxes.size() != 1 || editor.boxes[0].text != u"Could not open file for writing."_s)
        return u"%1 boxes came up"_s.arg(editor.boxes.size());
    if (!editor.isModified() || editor.typed(Editor::SaveAs) != u"Unsaved"_s)
        return u"the edit counts as saved"_s;
    return QFile::exists(path) ? u"there is a file"_s : QString();
}

QString closedTemporaryFolder(Editor &editor, const QString &folder)
{
    Trial trial(editor, Editor::Save, usualSize, folder);
    const Mode closed(folder, 0555);
    qputenv("TMPDIR", "/none");
    QString complaint = complaintAfterSave(trial, 1, Trial::Result::Old);
    qunsetenv("TMPDIR");
    return complaint;
}

QString closedFile(Editor &editor, const QString &folder)
{
    Trial trial(editor, Editor::Save, usualSize, folder);
    trial.prepare(1);
    const Mode closed(trial.target(), 0444);
    trial.carryOut([] {});
    QString complaint = trial.complaint();
    if (complaint.isEmpty() && trial.result() != Trial::Result::Old)
        return u"it is written"_s;
    return complaint;
}

QString deletedFolder(Editor &editor, const QString &folder)
{
    Trial trial(editor, Editor::Save, usualSize, folder);
    trial.prepare(1);
    QDir(folder).removeRecursively();
    trial.carryOut([] {});
    if (QFile::exists(folder))
        return u"the folder is there again"_s;
    if (editor.boxes.size() != 1 || !editor.isModified())
        return u"it counts as saved"_s;
    QDir().mkpath(folder);
    trial.carryOut([] {});
    QString complaint = trial.complaint();
    return complaint.isEmpty() && trial.result() != Trial::Result::New ? u"it is not written"_s
                                                                       : complaint;
}

QString symbolicLink(Editor &editor, const QString &folder)
{
    const QString elsewhere = folder + u"-elsewhere"_s;
    QDir().mkpath(folder);
    QDir().mkpath(elsewhere);
    QFile::link(elsewhere + u"/real.json"_s, folder + u"/entry.json"_s);
    Trial trial(editor, Editor::Save, usualSize, folder);
    QString complaint = complaintAfterTwoSaves(trial);
    if (!complaint.isEmpty())
        return complaint;
    if (!QFileInfo(trial.target()).isSymLink())
        return u"the link is gone"_s;
    if (fileContents(elsewhere + u"/real.json"_s) != fileContents(trial.target()))
        return u"the file behind the link is another one"_s;
    return QDir(elsewhere).count() == 3 ? QString() : u"left behind the link"_s; // "." and ".."
}

QString hardLink(Editor &editor, const QString &folder)
{
    const QString other = folder + u"-other.json"_s;
    Trial trial(editor, Editor::Save, usualSize, folder);
    trial.prepare(1);
    if (::link(qPrintable(trial.target()), qPrintable(other)) != 0)
        return u"no link can be made"_s;
    const QByteArray before = fileContents(other);
    trial.carryOut([] {});
    QString complaint = trial.complaint();
    if (!complaint.isEmpty() || trial.result() != Trial::Result::New)
        return complaint + u" (not written)"_s;
    return fileContents(other) == before ? QString() : u"the other name has changed"_s;
}

QString mode(Editor &editor, const QString &folder)
{
    Trial trial(editor, Editor::Save, usualSize, folder);
    for (const mode_t wanted : {0600U, 0640U, 0664U, 0666U, 0755U}) {
        trial.prepare(1);
        struct stat status = {};
        if (chmod(qPrintable(trial.target()), wanted) != 0)
            return u"cannot set a mode"_s;
        trial.carryOut([] {});
        if (stat(qPrintable(trial.target()), &status) != 0 || (status.st_mode & 07777) != wanted)
            return u"the mode %1 is %2 now"_s.arg(wanted, 0, 8).arg(status.st_mode & 07777, 0, 8);
    }
    return {};
}

QString limitedSize(Editor &editor, const QString &folder)
{
    Trial trial(editor, Editor::Save, usualSize, folder);
    trial.prepare(1);
    QStringList complaints;
    for (const rlim_t most : {rlim_t(0), rlim_t(1), rlim_t(trial.newSize() - 1)}) {
        {
            const Limit limit(RLIMIT_FSIZE, most);
            trial.carryOut([] {});
        }
        complaints.append(trial.complaint());
        if (trial.result() != Trial::Result::Old)
            complaints.append(u"written beyond the limit"_s);
    }
    complaints.removeAll(QString());
    return complaints.isEmpty() ? complaintAfterSave(trial, 2, Trial::Result::New)
                                : complaints.join(u", "_s);
}

QString noDescriptorsLeft(Editor &editor, const QString &folder)
{
    Trial trial(editor, Editor::Save, usualSize, folder);
    trial.prepare(1);
    std::vector<int> descriptors;
    {
        const Limit limit(RLIMIT_NOFILE, 256);
        int descriptor = 0;
        while ((descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0)
            descriptors.push_back(descriptor);
        trial.carryOut([] {});
    }
    for (const int descriptor : descriptors)
        close(descriptor);
    QString complaint = trial.complaint();
    if (!complaint.isEmpty() || trial.result() != Trial::Result::Old)
        return complaint + u" (with no descriptor left)"_s;
    return complaintAfterSave(trial, 2, Trial::Result::New);
}

// Fills the file system but for some bytes.
void fill(const QString &ballast, qsizetype but)
{
    QFile file(ballast);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        qFatal("cannot write %s", qPrintable(ballast));
    while (file.write(QByteArray(512, 'x')) == 512) {
    }
    file.resize(std::max<qint64>(0, file.size() - but));
}

QString fullDisk(Editor &editor, const QString &disk, Editor::Operation operation, qsizetype size)
{
    const QString folder = disk + u"/trial"_s;
    const QString ballast = disk + u"/ballast"_s;
    QStringList complaints;
    {
        Trial trial(editor, operation, size, folder);
        int number = 0;
        for (const qsizetype room : {0, 4'096, 8'192}) {
            if (room > trial.newSize())
                continue;
            trial.prepare(++number);
            fill(ballast, room);
            trial.carryOut([] {});
            complaints.append(trial.complaint());
            if (trial.newSize() > room + 4'096 && trial.result() != Trial::Result::Old)
                complaints.append(u"written where there is no room"_s);
            QFile::remove(ballast);
            trial.carryOut([] {});
            complaints.append(trial.complaint());
            if (trial.result() != Trial::Result::New)
                complaints.append(u"not written though there is room again"_s);
        }
    }
    QDir(folder).removeRecursively();
    complaints.removeAll(QString());
    return complaints.join(u", "_s);
}

QString closedDisk(Editor &editor, const QString &disk)
{
    const QString path = disk + u"/entry.json"_s;
    const QByteArray before = fileContents(path);
    editor.reset();
    if (!editor.open(path))
        return u"it does not open"_s;
    editor.type(Editor::Save, u"Unsaved"_s);
    editor.carryOut(Editor::Save, path, {}, [] {});
    if (editor.boxes.size() != 1 || !editor.isModified()
        || editor.typed(Editor::Save) != u"Unsaved"_s)
        return u"it counts as saved"_s;
    return fileContents(path) == before ? QString() : u"it is written"_s;
}

QString foreignFileInStickyFolder(Editor &editor, const QString &folder)
{
    Trial trial(editor, Editor::Save, usualSize, folder);
    struct stat status = {};
    if (stat(qPrintable(trial.target()), &status) != 0 || status.st_uid == geteuid())
        return u"the file is not somebody else's"_s;
    return complaintAfterTwoSaves(trial);
}

const QStringList strangeNames = {
    u"Gerät.json"_s,   u"Gera\u0308t.json"_s,          u"数据.json"_s, u"🧪🧬.json"_s,
    u"ספקטרום.json"_s, u"a\u202eb\u200bc.json"_s,      u"a\nb.json"_s, u" a  b .json"_s,
    u"-rf.json"_s,     u"a%1 %20 #?*:|<>&;$`\\.json"_s};

} // namespace

bool visitPlaces(const QString &folder)
{
    Editor editor;
    bool survived = true;
    int places = 0;
    const auto next = [&]() -> QString { return folder + u"/place%1"_s.arg(++places); };
    const auto visit = [&](const QString &what, QString (*function)(Editor &, const QString &),
                           const QString &remark) {
        Tally tally(what);
        tally.count(what, function(editor, next()));
        survived &= tally.print(remark);
    };

    visit(u"Read-only folder, writable file"_s, closedFolder, u"written in place"_s);
    visit(u"Read-only folder, new file"_s, newFileInClosedFolder, u"a box; nothing is made"_s);
    visit(u"Read-only folder, no temporary folder"_s, closedTemporaryFolder,
          u"a box; old file kept"_s);
    Tally inPlace(u"Read-only folder, a call fails"_s);
    faultsInPlace(editor, next(), false, inPlace);
    survived &= inPlace.print(u"old contents put back"_s);
    Tally lasting(u"Read-only folder, all calls fail from one on"_s);
    faultsInPlace(editor, next(), true, lasting);
    survived &= lasting.print(u"old contents in the file or kept"_s);
    visit(u"Read-only file"_s, closedFile, u"a box; old file kept"_s);
    visit(u"Folder deleted while open"_s, deletedFolder, u"a box; saved when it is there again"_s);
    visit(u"Symbolic link"_s, symbolicLink, u"the link stays, its file is replaced"_s);
    visit(u"Hard link"_s, hardLink, u"the other name keeps the old contents"_s);
    visit(u"Modes"_s, mode, u"kept"_s);
    visit(u"RLIMIT_FSIZE"_s, limitedSize, u"a box; old file kept"_s);
    visit(u"No file descriptor left"_s, noDescriptorsLeft, u"a box; old file kept"_s);

    Tally lengths(u"Names of 249 to 255 bytes, two saves"_s);
    for (int length = 249; length <= 255; ++length) {
        Trial trial(editor, Editor::Save, usualSize, next(),
                    QString(length - 5, u'n') + u".json"_s);
        lengths.count(QString::number(length), complaintAfterTwoSaves(trial));
    }
    survived &= lengths.print(u"replaced as a whole"_s);

    Tally unicode(u"Names and folders of any letters, two saves"_s);
    for (const QString &name : strangeNames) {
        for (const Editor::Operation operation : {Editor::Save, Editor::SaveAs}) {
            Trial trial(editor, operation, usualSize, next() + u'/' + name, name);
            unicode.count(name, complaintAfterTwoSaves(trial));
        }
    }
    survived &= unicode.print(u"Save and Save As"_s);

    return survived;
}

bool visitPreparedPlaces(const QStringList &prepared)
{
    Editor editor;
    bool survived = true;
    QHash<QString, QString> paths;
    for (const QString &place : prepared)
        paths.insert(place.section(u'=', 0, 0), place.section(u'=', 1));
    if (const QString disk = paths.value(u"small"_s); !disk.isEmpty()) {
        Tally tally(u"Full file system of 64 kB"_s);
        for (const auto operation : {Editor::Save, Editor::SaveAs, Editor::SaveSpectrum})
            for (const qsizetype size : {500, 12'000})
                tally.count(u"full disk, operation %1, %2 bytes"_s.arg(operation).arg(size),
                            fullDisk(editor, disk, operation, size));
        survived &= tally.print(u"a box; saved when there is room again"_s);
    }
    if (const QString disk = paths.value(u"readonly"_s); !disk.isEmpty()) {
        Tally tally(u"Read-only file system"_s);
        tally.count(disk, closedDisk(editor, disk));
        survived &= tally.print(u"a box; old file kept"_s);
    }
    if (const QString sticky = paths.value(u"sticky"_s); !sticky.isEmpty()) {
        Tally tally(u"Somebody else's file in a sticky folder"_s);
        tally.count(sticky, foreignFileInStickyFolder(editor, sticky));
        survived &= tally.print(u"written in place"_s);
    }
    return survived;
}

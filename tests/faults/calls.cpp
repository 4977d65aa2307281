// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/campaigns.h"
#include "faults/faultlibrary.h"
#include "faults/trial.h"

#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <optional>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace
{

struct Task {
    Editor::Operation operation;
    const char *name;
};

constexpr Task tasks[] = {
    {Editor::Save, "Save"},
    {Editor::SaveAs, "Save As over a file"},
    {Editor::SaveSpectrum, "Save spectrum"},
    {Editor::Compile, "Compile"},
};

struct Size {
    qsizetype bytes; // of a document
    const char *name;
};

constexpr Size sizes[] = {{500, "0.5 kB"}, {40'000, "40 kB"}, {4'000'000, "4 MB"}};

// Where files without a name can be had, and where they cannot; the last one with the longest name.
struct World {
    const char *name;
    int noNameless;
    int nameLength;
};

constexpr World worlds[] = {{"nameless", 0, 0}, {"hidden", 1, 0}, {"long name", 0, 255}};

constexpr const char *errors[] = {"ENOSPC", "EIO", "EDQUOT", "EACCES", "EROFS", "EMFILE"};

// An operation on every size in every world, in a folder of its own, given to
// function(trial, world, what).
template <typename Function>
void forEveryTask(const Task &task, const QString &folder, bool quick, Function function)
{
    for (const Size &size : sizes) {
        for (const World &world : worlds) {
            if (quick && (size.bytes > 1'000'000 || world.nameLength > 0))
                continue;
            const QString name =
                world.nameLength > 0 ? QString(world.nameLength - 5, u'n') + u".json"_s : QString();
            const QString place =
                folder + u"/%1-%2-%3"_s.arg(task.operation).arg(size.bytes).arg(&world - worlds);
            Trial trial(task.operation, size.bytes, place, name);
            function(trial, world,
                     u"%1, %2, %3"_s.arg(QLatin1String(task.name), QLatin1String(size.name),
                                         QLatin1String(world.name)));
            QDir(place).removeRecursively();
        }
    }
}

zoravel_fault_plan planFor(const QByteArray &path, const World &world, const char *action, long nth)
{
    zoravel_fault_plan plan = {};
    plan.path = path.constData();
    plan.action = action;
    plan.nth = nth;
    plan.no_nameless = world.noNameless;
    return plan;
}

// Whether a failure of the call that was made to fail may be passed over. Where the folder is given
// to the disk after the exchange the new file is there already; a file that is closed is on the
// disk; one that cannot be opened, made, looked at or linked may be reached in another way, or is
// another process's leftover.
bool mayBePassedOver(const QString &folder)
{
    const QLatin1String call(zoravel_fault_fired());
    const bool ofFolder = QFile::decodeName(zoravel_fault_fired_path()) == folder;
    return call == "close"_L1 || call == "open"_L1 || call == "openread"_L1 || call == "stat"_L1
           || call == "fstat"_L1 || call == "link"_L1 || (call == "fsync"_L1 && ofFolder);
}

// One try with one fault. Nothing if the fault was not reached.
std::optional<QString> complaintAfter(Trial &trial, const zoravel_fault_plan &plan, int number,
                                      bool mustFail)
{
    trial.prepare(number);
    trial.carryOut([&] { zoravel_fault_arm(&plan); });
    zoravel_fault_disarm();
    if (!zoravel_fault_fired())
        return std::nullopt;
    QString complaint = trial.complaint();
    if (complaint.isEmpty() && mustFail && trial.result() == Trial::Result::New
        && !mayBePassedOver(trial.folder()))
        complaint =
            u"%1 failed, and it counts as written"_s.arg(QLatin1String(zoravel_fault_fired()));
    if (complaint.isEmpty() && !mustFail && trial.result() != Trial::Result::New)
        complaint = u"gave up after a call that can be repeated"_s;
    trial.removeLeftovers();
    return complaint;
}

struct Fault {
    const char *action;
    bool always;
    bool mustFail;
};

QList<Fault> faultsFor(bool quick)
{
    QList<Fault> faults;
    for (const char *error : errors) {
        faults.append({error, false, true});
        if (!quick)
            faults.append({error, true, true});
    }
    return faults;
}

// Makes call after call fail until none is left. Returns how many there are.
long failInTurn(Trial &trial, const World &world, const QString &what, const Fault &fault,
                const char *calls, int &number, Tally &tally)
{
    const QByteArray path = QFile::encodeName(trial.folder());
    for (long nth = 1;; ++nth) {
        zoravel_fault_plan plan = planFor(path, world, fault.action, nth);
        plan.always = fault.always;
        plan.calls = calls;
        const auto complaint = complaintAfter(trial, plan, ++number, fault.mustFail);
        if (!complaint)
            return nth - 1;
        tally.count(u"%1: %2 at call %3 (%4)%5"_s.arg(what, QLatin1String(fault.action))
                        .arg(nth)
                        .arg(QLatin1String(zoravel_fault_fired()),
                             fault.always ? u" and later"_s : QString()),
                    *complaint);
    }
}

// A process that ends itself in the middle of the operation. Returns the complaint, or nothing if
// it got through.
// came through.
std::optional<QString> complaintAfterEnd(Trial &trial, const zoravel_fault_plan &plan, int number)
{
    trial.putOldBytes();
    const int status = inOtherProcess([&] {
        Editor editor;
        trial.open(editor);
        trial.type(number);
        trial.carryOut([&] { zoravel_fault_arm(&plan); });
    });
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return std::nullopt;
    if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL)
        return u"the process ended with status %1"_s.arg(status);
    if (!trial.holds(number) && !trial.holds(0))
        return u"the file is torn"_s;
    return QString();
}

// So that this one does not paint.
void learnInOtherProcess(Trial &trial)
{
    inOtherProcess([&] {
        Editor editor;
        trial.open(editor);
        trial.carryOutFirst();
    });
    trial.learn();
}

// What a killed process may leave: hidden files that no listing takes for entries.
QString complaintAbout(const QStringList &leftovers)
{
    for (const QString &name : leftovers) {
        if (!name.startsWith(u'.') || name.endsWith(u".json"_s, Qt::CaseInsensitive))
            return u"left behind: "_s + name;
    }
    return {};
}

// Ends a process at call after call until one comes through. Returns how many files were left.
int endInTurn(Trial &trial, const World &world, const QString &what, const char *action,
              int &number, Tally &tally)
{
    const QByteArray path = QFile::encodeName(trial.folder());
    int left = 0;
    for (long nth = 1;; ++nth) {
        zoravel_fault_plan plan = planFor(path, world, action, nth);
        plan.calls = qstrcmp(action, "killshort") == 0 ? "write" : nullptr;
        auto complaint = complaintAfterEnd(trial, plan, ++number);
        if (!complaint)
            return left;
        const QStringList leftovers = trial.leftovers();
        left += int(leftovers.size());
        if (complaint->isEmpty())
            complaint = complaintAbout(leftovers);
        tally.count(u"%1: %2 at call %3"_s.arg(what, QLatin1String(action)).arg(nth), *complaint);
        trial.removeLeftovers();
    }
}

} // namespace

bool failEveryCall(const QString &folder, bool quick)
{
    bool survived = true;
    for (const Task &task : tasks) {
        Tally failing(QLatin1String(task.name) + u", a call fails"_s);
        Tally repeated(QLatin1String(task.name) + u", a call is cut short or interrupted"_s);
        long most = 0;
        int number = 0;
        Editor editor;
        forEveryTask(
            task, folder, quick, [&](Trial &trial, const World &world, const QString &what) {
                trial.open(editor);
                trial.carryOutFirst();
                trial.learn();
                for (const Fault &fault : faultsFor(quick))
                    most = std::max(
                        most, failInTurn(trial, world, what, fault, nullptr, number, failing));
                failInTurn(trial, world, what, {"short", false, false}, "write", number, repeated);
                failInTurn(trial, world, what, {"short", true, false}, "write", number, repeated);
                failInTurn(trial, world, what, {"EINTR", false, false}, "open,openread,write,fsync",
                           number, repeated);
            });
        const QString sizesTried = quick ? u"0.5 kB, 40 kB"_s : u"0.5 kB, 40 kB, 4 MB"_s;
        survived &= failing.print(u"%1; 6 errors, once%2, at each of up to %3 calls"_s
                                      .arg(sizesTried, quick ? QString() : u" and from then on"_s)
                                      .arg(most));
        survived &= repeated.print(sizesTried + u"; must be written all the same"_s);
    }
    return survived;
}

bool endAtEveryCall(const QString &folder, bool quick)
{
    bool survived = true;
    for (const Task &task : tasks) {
        Tally tally(QLatin1String(task.name) + u", the process is killed at a call"_s);
        int hidden = 0;
        int number = 0;
        forEveryTask(task, folder, quick,
                     [&](Trial &trial, const World &world, const QString &what) {
                         learnInOtherProcess(trial);
                         hidden += endInTurn(trial, world, what, "kill", number, tally);
                         hidden += endInTurn(trial, world, what, "killshort", number, tally);
                     });
        survived &=
            tally.print(u"left a hidden file %1 times, never one that is listed"_s.arg(hidden));
    }
    return survived;
}

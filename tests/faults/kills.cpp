// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/campaigns.h"
#include "faults/trial.h"

#include <QDir>
#include <QRandomGenerator>

#include <csignal>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype sizes[] = {500, 40'000, 4'000'000};
constexpr Editor::Operation operations[] = {Editor::Save, Editor::SaveAs, Editor::SaveSpectrum};

struct Blow {
    bool duringSave = false; // between the command and its end
    QString complaint;
};

// Saves one version after the other, with a byte into the pipe at the start and at the end of each,
// until the process is killed.
[[noreturn]] void saveForEver(Trial &trial, int pipe)
{
    Editor editor;
    trial.open(editor);
    for (int number = 1;; ++number) {
        trial.type(number);
        trial.carryOut([&] { static_cast<void>(!write(pipe, "(", 1)); });
        static_cast<void>(!write(pipe, ")", 1));
    }
}

QByteArray readAll(int pipe)
{
    QByteArray bytes;
    char buffer[4096];
    for (ssize_t size = read(pipe, buffer, sizeof buffer); size > 0;
         size = read(pipe, buffer, sizeof buffer))
        bytes.append(buffer, size);
    return bytes;
}

Blow killOne(Trial &trial, int longestDelay) // in microseconds
{
    trial.putOldBytes();
    int ends[2];
    if (pipe(ends) != 0)
        qFatal("no pipe");
    const pid_t process = fork();
    if (process < 0)
        qFatal("no more processes");
    if (process == 0) {
        close(ends[0]);
        saveForEver(trial, ends[1]);
    }
    close(ends[1]);
    pollfd first{ends[0], POLLIN, 0};
    poll(&first, 1, -1);
    usleep(static_cast<useconds_t>(QRandomGenerator::global()->bounded(longestDelay)));
    kill(process, SIGKILL);
    int status = 0;
    waitpid(process, &status, 0);
    const QByteArray log = readAll(ends[0]);
    close(ends[0]);

    Blow blow;
    blow.duringSave = log.endsWith('(');
    const auto begun = static_cast<int>(log.count('('));
    if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL)
        blow.complaint = u"the process ended by itself, with status %1"_s.arg(status);
    // What was said to be saved is there, or what was being saved.
    else if (!trial.holds(begun) && !(blow.duringSave && trial.holds(begun - 1)))
        blow.complaint = u"the file is not the version that was saved last"_s;
    return blow;
}

} // namespace

bool killAtRandom(const QString &folder, int kills)
{
    Tally tally(u"Save, Save As, Save spectrum: killed at random"_s);
    int inTheMidst = 0;
    int left = 0;
    const int each = kills / int(std::size(sizes) * std::size(operations));
    for (const qsizetype size : sizes) {
        for (const Editor::Operation operation : operations) {
            const QString place = folder + u"/kill-%1-%2"_s.arg(operation).arg(size);
            Trial trial(operation, size, place);
            inOtherProcess([&] {
                Editor editor;
                trial.open(editor);
                trial.carryOutFirst();
            });
            trial.learn();
            for (int i = 0; i < each; ++i) {
                Blow blow = killOne(trial, size > 1'000'000 ? 900'000 : 60'000);
                inTheMidst += int(blow.duringSave);
                for (const QString &name : trial.leftovers()) {
                    ++left;
                    if (!name.startsWith(u'.') || name.endsWith(u".json"_s, Qt::CaseInsensitive))
                        blow.complaint = u"left behind: "_s + name;
                }
                tally.count(place, blow.complaint);
                trial.removeLeftovers();
            }
            QDir(place).removeRecursively();
        }
    }
    return tally.print(
        u"%1 between the command and its end; left a hidden file %2 times"_s.arg(inTheMidst)
            .arg(left));
}

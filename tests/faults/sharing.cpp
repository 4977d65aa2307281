// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/campaigns.h"
#include "faults/trial.h"

#include "widgets/cleantextedit.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <array>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int entries = 3;
// A short, a usual and a long one.
constexpr std::array<qsizetype, entries> sizes = {2'000, 40'000, 1'000'000};

QString entryName(int index)
{
    return u"entry%1.json"_s.arg(index % entries + 1);
}

struct Count {
    int tried = 0;
    int survived = 0;
};

// What is wrong with the document after a step. Writers type one text into two fields of an entry,
// so both are equal in every version.
QString complaintAboutDocument(const Editor &editor, int index)
{
    if (!editor.boxes.isEmpty())
        return editor.boxes[0].text;
    if (!editor.title().endsWith(entryName(index)))
        return u"after %1 comes %2"_s.arg(entryName(index + entries - 1), editor.title());
    const QString name = editor.typed(Editor::Save);
    const QString title = editor.typed(Editor::SaveSpectrum);
    return name == title ? QString() : u"the name is %1, the title %2"_s.arg(name, title);
}

// Steps round the folder, and saves what it has changed at each stop if it has a name.
Count edit(const QString &folder, int seconds, const QString &editorName)
{
    Editor editor;
    if (!editor.open(folder + u'/' + entryName(0)))
        return {1, 0};
    Count count;
    QElapsedTimer clock;
    clock.start();
    for (int index = 1; clock.elapsed() < 1'000LL * seconds; ++index) {
        editor.boxes.clear();
        editor.trigger(u"actionNextFile"_s);
        QString complaint = complaintAboutDocument(editor, index);
        if (complaint.isEmpty() && !editorName.isEmpty()) {
            const QString text = u"%1 %2"_s.arg(editorName).arg(index);
            editor.type(Editor::Save, text);
            editor.type(Editor::SaveSpectrum, text);
            editor.trigger(u"actionSaveSpecies"_s);
            if (!editor.boxes.isEmpty() || editor.isModified())
                complaint = u"not saved"_s;
        }
        ++count.tried;
        count.survived += int(complaint.isEmpty());
        if (!complaint.isEmpty())
            qWarning("%s: %s", qPrintable(editorName), qPrintable(complaint));
    }
    return count;
}

// Runs an editor in a process of its own, which writes its count into the pipe.
pid_t startEditor(const QString &folder, int seconds, const QString &name, int pipe)
{
    const pid_t process = fork();
    if (process < 0)
        qFatal("no more processes");
    if (process == 0) {
        const Count count = edit(folder, seconds, name);
        _exit(write(pipe, &count, sizeof count) == sizeof count ? 0 : 1);
    }
    return process;
}

} // namespace

bool shareFolder(const QString &folder, int seconds)
{
    QDir().mkpath(folder);
    for (int index = 0; index < entries; ++index)
        putFile(folder + u'/' + entryName(index), entryBytes(sizes[index], u"Opened"_s, 1));

    static const QString names[] = {u"first"_s, u"second"_s, QString()};
    static const QString operations[] = {u"Two editors save, the first one"_s,
                                         u"Two editors save, the second one"_s,
                                         u"A third editor steps meanwhile"_s};
    std::array<pid_t, 3> processes{};
    std::array<int, 3> pipes{};
    for (int i = 0; i < 3; ++i) {
        int ends[2];
        if (pipe(ends) != 0)
            qFatal("no pipe");
        processes[i] = startEditor(folder, seconds, names[i], ends[1]);
        pipes[i] = ends[0];
        close(ends[1]);
    }
    bool survived = true;
    for (int i = 0; i < 3; ++i) {
        Count count;
        int status = 0;
        const bool told = read(pipes[i], &count, sizeof count) == sizeof count;
        waitpid(processes[i], &status, 0);
        if (!told || status != 0)
            ++count.tried;
        survived &= Tally(operations[i], count.tried, count.survived)
                        .print(u"entries of 2 kB, 40 kB and 1 MB; none torn, none skipped"_s);
    }
    const QStringList left =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    if (left.size() == entries)
        return survived;
    qWarning("left behind: %s", qPrintable(left.join(u' ')));
    return false;
}

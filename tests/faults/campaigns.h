// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Runs a function in a process of its own and returns its status as waitpid() gives it. A process
// that has painted cannot do that: Qt's threads would be missing in the new one.
int inOtherProcess(const std::function<void()> &function);

// What was tried in one operation, and what of it went well.
class Tally
{
public:
    explicit Tally(QString operation, int tried = 0, int survived = 0)
        : m_operation(std::move(operation)), m_tried(tried), m_survived(survived)
    {
    }

    // An empty complaint counts as survived; another one is said on standard error.
    void count(const QString &what, const QString &complaint);
    // Prints the line of scripts/torture. False unless everything survived.
    bool print(const QString &remark) const;

private:
    QString m_operation;
    int m_tried;
    int m_survived;
};

// The campaigns. Each works in a folder of its own, prints its lines and returns whether everything
// survived.

// Every call that writes, in turn, fails in every way, in every operation.
[[nodiscard]] bool failEveryCall(const QString &folder, bool quick);
// The process ends before every call that writes, in turn, and in the midst of it.
[[nodiscard]] bool endAtEveryCall(const QString &folder, bool quick);
// The process is killed at random times while it saves.
[[nodiscard]] bool killAtRandom(const QString &folder, int kills);
// Closed folders and files, links, limits, and names of every kind.
[[nodiscard]] bool visitPlaces(const QString &folder);
// What only the administrator can make, as "name=folder": "small", an empty file system of 64 kB,
// "readonly", a read-only one, and "sticky", a folder in which entry.json is somebody else's.
[[nodiscard]] bool visitPreparedPlaces(const QStringList &prepared);
// Three processes on one folder at once, two that save and one that steps, for some seconds.
[[nodiscard]] bool shareFolder(const QString &folder, int seconds);

// SPDX-License-Identifier: GPL-3.0-or-later
// Compiling a database against the plain way (one document of everything in memory) and against jq.
// Each way runs in a process of its own, so that its peak memory can be told.
#include "database/databasecompiler.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

const DatabaseHeader header{QStringLiteral("1.0"), QStringLiteral("3.0"), QStringLiteral("Title"),
                            QDate(2026, 1, 2)};

struct Cost {
    double seconds;
    double megabytes; // peak resident memory
};

// What a job costs in a process of its own.
Cost costOf(const std::function<int()> &job)
{
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0)
        _exit(job());
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "a job failed\n");
        std::exit(1);
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return {elapsed.count(), static_cast<double>(usage.ru_maxrss) / 1024};
}

Cost medianOf(std::vector<Cost> costs)
{
    const auto middle = [&](auto member) {
        std::sort(costs.begin(), costs.end(),
                  [&](const Cost &a, const Cost &b) { return a.*member < b.*member; });
        return costs[costs.size() / 2].*member;
    };
    return {middle(&Cost::seconds), middle(&Cost::megabytes)};
}

// A species file of some 100 kB.
void writeSpecies(const QString &path, quint32 seed)
{
    QRandomGenerator random(seed);
    QJsonArray energies;
    QJsonArray intensities;
    for (int i = 0; i < 2400; ++i) {
        energies.append(8 + i * 0.002);
        intensities.append(std::floor(random.generateDouble() * 1e6) / 1e3);
    }
    const QJsonObject spectrum{{QStringLiteral("Title"), QStringLiteral("TPES")},
                               {QStringLiteral("E"), energies},
                               {QStringLiteral("I"), intensities}};
    const QJsonObject species{
        {QStringLiteral("Type"), QStringLiteral("Species v1")},
        {QStringLiteral("Species"), QJsonObject{{QStringLiteral("Name"), QString::number(seed)}}},
        {QStringLiteral("Dataset1"), spectrum}};
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(species).toJson()) < 0)
        std::exit(1);
}

int compilePlainly(const QStringList &files, const QString &output,
                   QJsonDocument::JsonFormat format)
{
    QJsonObject database{
        {QStringLiteral("Type"), QStringLiteral("Database v1")},
        {QStringLiteral("Header"),
         QJsonObject{{QStringLiteral("Version"), header.version},
                     {QStringLiteral("Database"), header.database},
                     {QStringLiteral("Title"), header.title},
                     {QStringLiteral("Date"), header.date.toString(Qt::ISODate)}}}};
    int number = 0;
    for (const QString &path : files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        QJsonObject entry = QJsonDocument::fromJson(file.readAll()).object();
        entry.remove(QStringLiteral("Type"));
        database.insert(QStringLiteral("Entry%1").arg(++number), entry);
    }
    QFile file(output);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    return file.write(QJsonDocument(database).toJson(format)) > 0 ? 0 : 1;
}

int compileWithJq(const QStringList &files, const QString &output)
{
    const char *program = "reduce inputs as $file ({Type: \"Database v1\", Header: {}, n: 0};"
                          " .n += 1 | .[\"Entry\\(.n)\"] = ($file | del(.Type))) | del(.n)";
    if (!std::freopen(qPrintable(output), "w", stdout))
        return 1;
    std::vector<QByteArray> words{"jq", "-n", "-S", "--indent", "4", program};
    for (const QString &file : files)
        words.push_back(QFile::encodeName(file));
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (QByteArray &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execvp("jq", arguments.data());
    return 1;
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void row(const char *what, double value, double limit)
{
    std::printf("%-66s %6.2f (limit %.2f)%s\n", what, value, limit,
                value <= limit ? "" : "  MISSED");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    QStringList files;
    for (int i = 0; i < 2000; ++i) {
        files.append(folder.filePath(QStringLiteral("%1.json").arg(i)));
        writeSpecies(files.last(), static_cast<quint32>(i));
    }
    const QString ours = folder.filePath(QStringLiteral("ours"));
    const QString plain = folder.filePath(QStringLiteral("plain"));
    const QString jq = folder.filePath(QStringLiteral("jq"));
    const auto compile = [&](const QStringList &list, QJsonDocument::JsonFormat format) {
        return costOf([&] { return compileDatabase(list, ours, header, format) ? 1 : 0; });
    };

    for (const auto format : {QJsonDocument::Indented, QJsonDocument::Compact}) {
        const bool indented = format == QJsonDocument::Indented;
        std::vector<Cost> flatCosts;
        std::vector<Cost> plainCosts;
        std::vector<Cost> jqCosts;
        for (int run = 0; run < 3; ++run) {
            flatCosts.push_back(compile(files, format));
            plainCosts.push_back(costOf([&] { return compilePlainly(files, plain, format); }));
            if (indented)
                jqCosts.push_back(costOf([&] { return compileWithJq(files, jq); }));
        }
        if (contents(ours) != contents(plain)) {
            std::fprintf(stderr, "the bytes differ\n");
            return 1;
        }
        const Cost flat = medianOf(flatCosts);
        const Cost whole = medianOf(plainCosts);
        std::printf("%s, 2,000 files of %lld kB: %.2f s, %.0f MB; plain way %.2f s, %.0f MB\n",
                    indented ? "indented" : "compact", QFile(files[0]).size() / 1000, flat.seconds,
                    flat.megabytes, whole.seconds, whole.megabytes);
        row("  peak memory against the plain way", flat.megabytes / whole.megabytes, 0.15);
        row("  wall time against the plain way", flat.seconds / whole.seconds, 1.0);
        const Cost quarter = compile(files.first(500), format);
        row("  peak memory of 2,000 files against 500", flat.megabytes / quarter.megabytes, 1.15);
        if (indented)
            row("  wall time against jq -S", flat.seconds / medianOf(jqCosts).seconds, 0.4);
    }
    return 0;
}

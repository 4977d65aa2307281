// SPDX-License-Identifier: GPL-3.0-or-later
// Checking 2,000 files of some 100 kB against reading and parsing each of them once with the
// toolkit's parser, and with two files at a time against one; files as the editor writes them, and
// files that it would write in another way. bench_check [EXAMPLE.json] takes the profile and the
// picture from that entry. Prints "limit" lines; fails if one is missed.
#include "check/checker.h"
#include "files/filebytes.h"
#include "ratio.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{

constexpr int fileCount = 2000;
constexpr int rounds = 5;

// The profile and the picture of an entry, and a spectrum that no other file has.
void writeEntry(const QString &path, const QJsonObject &entry, quint32 seed,
                QJsonDocument::JsonFormat format)
{
    const int points = format == QJsonDocument::Indented ? 2200 : 5000; // 100 kB
    QRandomGenerator random(seed);
    QJsonArray energies;
    QJsonArray intensities;
    for (int i = 0; i < points; ++i) {
        energies.append((9000 + 2 * i) / 1000.0);
        intensities.append(std::floor(random.generateDouble() * 1e5) / 1e2);
    }
    QJsonObject species = entry.value(QLatin1String("Species")).toObject();
    for (const char *key : {"CAS", "InChI", "PubChem"})
        species.insert(QLatin1String(key), QString());
    species.insert(QStringLiteral("Name"), QStringLiteral("Species %1").arg(seed));
    QJsonObject spectrum = entry.value(QLatin1String("Dataset1")).toObject();
    spectrum.insert(QStringLiteral("E"), energies);
    spectrum.insert(QStringLiteral("I"), intensities);
    const QJsonObject file{{QStringLiteral("Type"), QStringLiteral("Species v1")},
                           {QStringLiteral("Species"), species},
                           {QStringLiteral("Dataset1"), spectrum}};
    if (!replaceFileBytes(path, QJsonDocument(file).toJson(format)))
        std::exit(1);
}

void parseAll(const std::vector<CheckInput> &inputs)
{
    for (const CheckInput &input : inputs) {
        QFile file(input.path);
        if (!file.open(QIODevice::ReadOnly))
            std::exit(1);
        keep(QJsonDocument::fromJson(file.readAll()));
    }
}

// Fails unless each file has so many findings, which say that the editor would rewrite it.
void checkAll(const std::vector<CheckInput> &inputs, int jobs, int each)
{
    CheckOptions options;
    options.jobs = jobs;
    const QList<Finding> findings = checkFiles(inputs, options);
    const auto isExpected = [](const Finding &finding) {
        return finding.check == Check::WouldChange;
    };
    if (findings.size() != qsizetype(inputs.size()) * each
        || !std::all_of(findings.begin(), findings.end(), isExpected)) {
        std::fprintf(stderr, "%lld findings\n", static_cast<long long>(findings.size()));
        std::exit(1);
    }
}

std::vector<CheckInput> writeEntries(const QTemporaryDir &folder, const QJsonObject &entry,
                                     const char *name, QJsonDocument::JsonFormat format)
{
    std::vector<CheckInput> inputs;
    for (int i = 0; i < fileCount; ++i) {
        const QString path =
            folder.filePath(QStringLiteral("%1%2.json").arg(QLatin1String(name)).arg(i));
        writeEntry(path, entry, static_cast<quint32>(i), format);
        inputs.push_back({path, path, std::nullopt});
    }
    std::printf("%d %s files of %lld kB\n", fileCount, name,
                static_cast<long long>(QFile(inputs[0].path).size() / 1000));
    return inputs;
}

template <typename Job>
double elapsedSeconds(Job &&job)
{
    const auto start = std::chrono::steady_clock::now();
    job();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString example =
        argc > 1 ? QFile::decodeName(argv[1]) : QStringLiteral(ZORAVEL_EXAMPLES "/water.json");
    const QJsonObject entry =
        QJsonDocument::fromJson(readFileBytes(example).value_or(QByteArray())).object();
    if (entry.isEmpty()) {
        std::fprintf(stderr, "Usage: bench_check [EXAMPLE.json]\n");
        return 2;
    }
    const QTemporaryDir folder;
    const auto saved = writeEntries(folder, entry, "saved", QJsonDocument::Indented);
    const auto compact = writeEntries(folder, entry, "compact", QJsonDocument::Compact);

    const Ratio single = measureRatio(
        rounds, [&] { checkAll(saved, 1, 0); }, [&] { parseAll(saved); });
    bool kept = report("check", single, "reading and parsing, processor time", 2.5);

    const Ratio slow = measureRatio(
        rounds, [&] { checkAll(compact, 1, 1); }, [&] { parseAll(compact); });
    kept =
        report("check what would change", slow, "reading and parsing, processor time", 2.5) && kept;

    // Time on the clock, for which the machine must have two processors to spare: what others take
    // of them is only ever added, so the quickest of each count.
    double quickest[2] = {HUGE_VAL, HUGE_VAL};
    for (int round = 0; round < 2 * rounds; ++round) {
        for (const int jobs : {1, 2})
            quickest[jobs - 1] =
                std::min(quickest[jobs - 1], elapsedSeconds([&] { checkAll(saved, jobs, 0); }));
    }
    const Ratio two{quickest[1], quickest[0], quickest[1] / quickest[0]};
    kept = report("check -j 2", two, "check -j 1, on the clock", 1 / 1.7) && kept;
    return kept ? 0 : 1;
}

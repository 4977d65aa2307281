// SPDX-License-Identifier: GPL-3.0-or-later
// Checking 2,000 files of some 100 kB against reading and parsing each of them once with the
// toolkit's parser, and with two files at a time against one. Prints "limit" lines; fails if one is
// missed.
#include "check/checker.h"
#include "ratio.h"
#include "species/filebytes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{

constexpr int fileCount = 2000;

// A file as the editor writes it: the profile and the picture of an entry, and a spectrum that no
// other file has.
void writeEntry(const QString &path, QJsonObject entry, quint32 seed)
{
    constexpr int points = 2200;
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
    if (!replaceFileBytes(path, QJsonDocument(file).toJson()))
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

void checkAll(const std::vector<CheckInput> &inputs, int jobs)
{
    CheckOptions options;
    options.jobs = jobs;
    const QList<Finding> findings = checkFiles(inputs, options);
    if (!findings.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(findings[0].message));
        std::exit(1);
    }
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
    if (argc != 2) {
        std::fprintf(stderr, "Usage: bench_check EXAMPLE.json\n");
        return 2;
    }
    const auto bytes = readFileBytes(QFile::decodeName(argv[1]));
    const QJsonObject entry = QJsonDocument::fromJson(bytes.value_or(QByteArray())).object();
    const QTemporaryDir folder;
    std::vector<CheckInput> inputs;
    for (int i = 0; i < fileCount; ++i) {
        const QString path = folder.filePath(QStringLiteral("%1.json").arg(i));
        writeEntry(path, entry, static_cast<quint32>(i));
        inputs.push_back({path, path, std::nullopt});
    }
    std::printf("%d files of %lld kB\n", fileCount, QFile(inputs[0].path).size() / 1000);

    const Ratio single = measureRatio(
        5, [&] { checkAll(inputs, 1); }, [&] { parseAll(inputs); });
    bool kept = report("check", single, "reading and parsing, processor time", 2.5);

    // Time on the clock, for which the machine must have two processors to spare.
    const Ratio two = measureSeconds(
        5, [&] { return elapsedSeconds([&] { checkAll(inputs, 2); }); },
        [&] { return elapsedSeconds([&] { checkAll(inputs, 1); }); });
    kept = report("check -j 2", two, "check -j 1, on the clock", 1 / 1.7) && kept;
    return kept ? 0 : 1;
}

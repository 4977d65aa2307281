// SPDX-License-Identifier: GPL-3.0-or-later
// Checking 2,000 files of some 100 kB against reading and parsing each of them once with Qt's
// parser, and with two files at a time against one: files as the editor writes them, and files that
// it would write in another way. A file of the former is loaded and saved as in the editor to know
// that. With a picture that means to decode and encode it, which takes five times as long as to
// parse the file: the reference does that too. bench_check [EXAMPLE.json] takes the profile and the
// picture from that entry. Prints "limit" lines; fails if one is missed.
#include "benchmarks/measure.h"
#include "check/checker.h"
#include "files/filebytes.h"
#include "pictures/picture.h"

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

const QString imageKey = QStringLiteral("StructuralFormula");

struct Kind {
    const char *name;
    QJsonDocument::JsonFormat format;
    bool hasPicture;
};

// The profile of an entry, and a spectrum that no other file has.
void writeEntry(const QString &path, const QJsonObject &entry, quint32 seed, const Kind &kind)
{
    const int points = kind.format == QJsonDocument::Indented ? 2200 : 5000; // 100 kB
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
    if (!kind.hasPicture)
        species.remove(imageKey);
    QJsonObject spectrum = entry.value(QLatin1String("Dataset1")).toObject();
    spectrum.insert(QStringLiteral("E"), energies);
    spectrum.insert(QStringLiteral("I"), intensities);
    const QJsonObject file{{QStringLiteral("Type"), QStringLiteral("Species v1")},
                           {QStringLiteral("Species"), species},
                           {QStringLiteral("Dataset1"), spectrum}};
    if (!replaceFileBytes(path, QJsonDocument(file).toJson(kind.format)))
        std::exit(1);
}

void parseAll(const std::vector<CheckInput> &inputs, bool withPicture)
{
    for (const CheckInput &input : inputs) {
        QFile file(input.path);
        if (!file.open(QIODevice::ReadOnly))
            std::exit(1);
        const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
        const QString text =
            object.value(QLatin1String("Species")).toObject().value(imageKey).toString();
        if (withPicture)
            keep(encodePng(decodePicture(QByteArray::fromBase64(text.toLatin1()))));
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
                                     const Kind &kind)
{
    std::vector<CheckInput> inputs;
    for (int i = 0; i < fileCount; ++i) {
        const QString path =
            folder.filePath(QStringLiteral("%1%2.json").arg(QLatin1String(kind.name)).arg(i));
        writeEntry(path, entry, static_cast<quint32>(i), kind);
        inputs.push_back({path, path, std::nullopt});
    }
    std::printf("%d %s files of %lld kB\n", fileCount, kind.name,
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
    const auto saved = writeEntries(folder, entry, {"saved", QJsonDocument::Indented, false});
    const auto pictured = writeEntries(folder, entry, {"pictured", QJsonDocument::Indented, true});
    const auto compact = writeEntries(folder, entry, {"compact", QJsonDocument::Compact, true});

    const Ratio single = measureRatio(
        rounds, [&] { checkAll(saved, 1, 0); }, [&] { parseAll(saved, false); });
    bool kept = report("check", single, "reading and parsing, processor time", 5);

    const Ratio drawn = measureRatio(
        rounds, [&] { checkAll(pictured, 1, 0); }, [&] { parseAll(pictured, true); });
    kept = report("check with pictures", drawn,
                  "reading, parsing and encoding the picture, processor time", 2)
           && kept;

    const Ratio slow = measureRatio(
        rounds, [&] { checkAll(compact, 1, 1); }, [&] { parseAll(compact, false); });
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

// SPDX-License-Identifier: GPL-3.0-or-later
// Listing a folder of species files in natural order against reading the folder, and testing
// whether a file is a species file against reading and parsing it.
#include "benchmarks/measure.h"
#include "files/jsonfolder.h"
#include "species/speciesfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>
#include <QTemporaryDir>

namespace
{

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::exit(1);
}

// A species file of one spectrum of so many points.
QByteArray speciesBytes(int points)
{
    QJsonArray numbers;
    for (int i = 0; i < points; ++i)
        numbers.append(8 + i * 0.001);
    const QJsonObject spectrum{{QStringLiteral("E"), numbers}, {QStringLiteral("I"), numbers}};
    return QJsonDocument(speciesFileObject({}, {spectrum})).toJson();
}

bool listing(const QByteArray &localeName)
{
    const QTemporaryDir folder;
    for (int i = 0; i < 10'000; ++i)
        writeBytes(folder.filePath(QStringLiteral("C%1H%2-%3.json")
                                       .arg(i * 7919 % 97)
                                       .arg(i % 53)
                                       .arg(i * 104729 % 10'000)),
                   "{}");
    const QDir directory(folder.path());
    const Ratio ratio = measureRatio(
        9, [&] { keep(jsonFilesIn(folder.path())); },
        [&] { keep(directory.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::NoSort)); });
    const QByteArray what = "listing 10,000 files in order, locale " + localeName;
    return report(what.constData(), ratio, "reading the folder", 2);
}

bool testing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.json"));
    writeBytes(path, speciesBytes(100'000));
    const Ratio ratio = measureRatio(
        15, [&] { keep(isSpeciesFile(path)); },
        [&] {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly))
                keep(QJsonDocument::fromJson(file.readAll()));
        });
    return report("testing a species file", ratio, "reading and parsing it", 1.15);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    bool kept = listing(QLocale().name().toLatin1());
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    kept = listing("de_DE") && kept;
    kept = testing() && kept;
    return kept ? 0 : 1;
}

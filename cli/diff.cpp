// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/memberreader.h"
#include "cli/collection.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/diffreport.h"
#include "cli/entrydifference.h"
#include "cli/filenames.h"
#include "cli/readfile.h"
#include "database/databasecompiler.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <optional>

namespace
{

constexpr std::array options{
    Option{"format", 'f', "text|json", "the form of the differences, text if not given"},
};

constexpr char details[] =
    R"(Compares two species files or two spectrum files: the fields of the profile and of
each spectrum one by one, and of the points how many are added, removed or
changed, with the largest difference of intensities. Points belong together that
have the same energy. Spectra belong together that are equal, first of all under the
same key, else that have the same title and type, else any; of several, those with
the most points in common, then those under the same key.

Folders with their subfolders, and databases, are compared entry by entry, also one
with the other. In two folders entries of the same name belong together; else those
that are equal, then those with the same CAS number, InChI or name of the species.
That an entry has got another number or name is no difference.

The status is 1 if there is a difference.

Examples:
  zoravel diff old/benzene.json benzene.json
  zoravel diff --format json collection.json species/
)";

struct Operand {
    enum Kind { Species, Spectrum, Database, Folder };
    QByteArray name;
    Kind kind;
    QJsonObject object; // of a species or spectrum file

    [[nodiscard]] bool isCollection() const { return kind == Database || kind == Folder; }
};

constexpr std::array kindNames{"a species file", "a spectrum file", "a database", "a folder"};

std::optional<Operand> readOperand(const QByteArray &name, Console &console)
{
    const InputFile input{name, libraryPath(name)};
    if (QFileInfo(input.path).isDir())
        return Operand{name, Operand::Folder, {}};
    if (isDatabaseFile(input.path))
        return Operand{name, Operand::Database, {}};
    const std::optional<QJsonObject> object = readObject(input, console);
    if (!object)
        return std::nullopt;
    if (hasType(*object, databaseFileType))
        return Operand{name, Operand::Database, {}};
    if (spectraOf(*object))
        return Operand{name,
                       hasType(*object, speciesFileType) ? Operand::Species : Operand::Spectrum,
                       *object};
    console.error(shownName(name) + ": neither a species nor a spectrum file, nor a database");
    return std::nullopt;
}

class Comparison
{
public:
    explicit Comparison(Console &console) : m_console(console) {}

    // False if one of the collections cannot be compared.
    [[nodiscard]] bool compareCollections(const Operand &before, const Operand &after)
    {
        const std::optional<Collection> first = collectionOf(before);
        const std::optional<Collection> second = first ? collectionOf(after) : std::nullopt;
        if (!second)
            return false;
        const Collection &old = *first;
        const Collection &present = *second;
        report.areCollections = true;
        if (before.kind == after.kind)
            report.header = fieldDifferences(old.header, present.header)
                            + fieldDifferences(old.rest, present.rest);
        const EntryPairs paired = pairedEntries(old, present);
        Progress progress(m_console, "Comparing", paired.pairs.size());
        for (qsizetype i = 0; i < paired.pairs.size(); ++i) {
            progress.advance(i);
            comparePair(*paired.pairs[i].first, *paired.pairs[i].second);
        }
        for (const CollectionEntry *entry : paired.removed)
            report.entries.append({entry->name, {}, entry->species, {}});
        for (const CollectionEntry *entry : paired.added)
            report.entries.append({{}, entry->name, entry->species, {}});
        return true;
    }

    void compareFiles(const Operand &before, const Operand &after)
    {
        const EntryDifference difference = differenceBetween(before.object, after.object);
        const QString name =
            before.object.value(speciesKey).toObject().value(keyOf(SpeciesColumn::Name)).toString();
        if (!difference.isNone())
            report.entries.append({before.name, after.name, plainText(name).toUtf8(), difference});
    }

    DiffReport report;
    bool isWhole = true; // false if something could not be read

private:
    std::optional<Collection> collectionOf(const Operand &operand)
    {
        if (operand.kind == Operand::Database)
            return collectionInDatabase({operand.name, libraryPath(operand.name)}, m_console);
        Collection collection = collectionInFolder(operand.name, m_console);
        isWhole = isWhole && collection.isWhole;
        return collection;
    }

    void comparePair(const CollectionEntry &before, const CollectionEntry &after)
    {
        if (before.digest == after.digest)
            return;
        std::optional<QJsonObject> old = before.read();
        std::optional<QJsonObject> present = after.read();
        if (!old || !present) {
            m_console.error(shownName(old ? after.name : before.name)
                            + ": changed while it was read");
            isWhole = false;
            return;
        }
        // Entries of databases have no type.
        if (!old->contains(typeKey) || !present->contains(typeKey)) {
            old->remove(typeKey);
            present->remove(typeKey);
        }
        const EntryDifference difference = differenceBetween(*old, *present);
        if (!difference.isNone())
            report.entries.append({before.name, after.name, after.species, difference});
    }

    Console &m_console;
};

int run(const Arguments &arguments, Console &console)
{
    const QByteArray form = arguments.value("format", "text");
    const QByteArrayList forms{"text", "json"};
    if (!forms.contains(form))
        return usageError(console, diffCommand(), "the form", form, forms);
    const QByteArrayList &names = arguments.operands();
    if (names.size() != 2)
        return usageError(console, diffCommand(), {"two files or folders have to be named", {}});
    const std::optional<Operand> before = readOperand(names[0], console);
    const std::optional<Operand> after = readOperand(names[1], console);
    if (!before || !after)
        return exitFailure;
    if (before->kind != after->kind && !(before->isCollection() && after->isCollection())) {
        console.error(QByteArray(kindNames[before->kind]) + " and " + kindNames[after->kind]
                      + " cannot be compared");
        return exitFailure;
    }

    Comparison comparison(console);
    comparison.report.before = names[0];
    comparison.report.after = names[1];
    if (!before->isCollection())
        comparison.compareFiles(*before, *after);
    else if (!comparison.compareCollections(*before, *after))
        return exitFailure;
    console.out(form == "json" ? diffJson(comparison.report) : diffText(comparison.report));
    if (!comparison.isWhole)
        return exitFailure;
    return comparison.report.isNone() ? exitFine : exitFindings;
}

} // namespace

const Command &diffCommand()
{
    static constexpr Command command{
        "diff", "A B", "Compare two files, folders or databases", details, options, run, true};
    return command;
}

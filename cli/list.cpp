// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/command.h"
#include "cli/console.h"
#include "cli/filenames.h"
#include "cli/readfile.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumobject.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

namespace
{

constexpr std::array options{
    Option{"format", 'f', "text|tsv|json", "the form of the table, text if not given"},
};

constexpr char details[] =
    R"(Shows one line for each species file: its name, the species' name, formula and CAS
number, the adiabatic and the vertical ionisation energy in eV as they are
entered, the number of spectra and how many there are of each type. Texts are
shown without markup. A folder stands for all its files *.json and those of its
subfolders but databases and spectrum files. "tsv" has a line of headings and tabs
between the columns, "json" is an array of objects.

Examples:
  zoravel list species/
  zoravel list -f tsv species/ | cut -f 2,4
)";

constexpr std::array<const char *, 8> headings{"file", "name", "formula", "CAS",
                                               "AIE",  "VIE",  "spectra", "types"};
constexpr std::size_t spectraColumn = 6;
constexpr std::size_t typesColumn = 7;
// The keys of the profile's columns.
constexpr std::array profileKeys{
    keyOf(SpeciesColumn::Name), keyOf(SpeciesColumn::Formula), keyOf(SpeciesColumn::Cas),
    keyOf(SpeciesColumn::Aie),  keyOf(SpeciesColumn::Vie),
};

struct Row {
    QByteArray file;     // any bytes
    QStringList profile; // in the order of profileKeys
    int spectra = 0;
    QList<std::pair<QString, int>> types; // in the order of the editor's list
};

QString typeName(int type)
{
    const bool isListed = type >= 0 && type < int(spectrumTypeNames.size());
    return isListed ? QString(spectrumTypeNames[type]) : QStringLiteral("type %1").arg(type);
}

Row rowOf(const InputFile &input, const QJsonObject &object)
{
    Row row{input.name, {}, 0, {}};
    QJsonObject profile = object.value(speciesKey).toObject();
    for (const QLatin1String key : profileKeys)
        row.profile.append(plainText(profile.value(key).toString()));
    QMap<int, int> counts;
    for (const QString &key : datasetKeys(object)) {
        ++row.spectra;
        ++counts[object.value(key).toObject().value(spectrumTypeKey).toInt()];
    }
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        row.types.append({typeName(it.key()), it.value()});
    return row;
}

// The cells of the row as texts: "2 PES, TPES".
QByteArrayList cellsOf(const Row &row)
{
    QByteArrayList cells{shownName(row.file)};
    for (const QString &text : row.profile)
        cells.append(shownName(text.toUtf8()));
    cells.append(QByteArray::number(row.spectra));
    QByteArrayList types;
    for (const auto &[name, count] : row.types) {
        const QByteArray times = count > 1 ? QByteArray::number(count) + ' ' : QByteArray();
        types.append(times + name.toUtf8());
    }
    cells.append(types.join(", "));
    return cells;
}

QJsonObject objectOf(const Row &row)
{
    QJsonObject object{{QLatin1String(headings[0]), QString::fromUtf8(row.file)}};
    for (qsizetype i = 0; i < row.profile.size(); ++i)
        object.insert(QLatin1String(headings[i + 1]), row.profile[i]);
    object.insert(QLatin1String(headings[spectraColumn]), row.spectra);
    QJsonObject types;
    for (const auto &[name, count] : row.types)
        types.insert(name, count);
    object.insert(QLatin1String(headings[typesColumn]), types);
    return object;
}

class Table
{
public:
    Table(const QByteArray &format, Console &console)
        : m_isJson(format == "json"), m_isTsv(format == "tsv"), m_console(console)
    {
        QByteArrayList cells;
        for (const char *heading : headings)
            cells.append(heading);
        if (m_isTsv)
            m_console.out(cells.join('\t') + '\n');
        else if (!m_isJson)
            m_rows.append(cells);
    }

    void add(const Row &row)
    {
        const bool isFirst = m_count++ == 0;
        if (m_isTsv)
            m_console.out(cellsOf(row).join('\t') + '\n');
        else if (!m_isJson)
            m_rows.append(cellsOf(row));
        else
            m_console.out((isFirst ? "[\n" : ",\n")
                          + QJsonDocument(objectOf(row)).toJson(QJsonDocument::Compact));
    }

    void finish()
    {
        if (m_isJson)
            m_console.out(m_count == 0 ? "[]\n" : "\n]\n");
        else if (!m_isTsv)
            printAligned();
    }

    [[nodiscard]] bool isEmpty() const { return m_count == 0; }

private:
    static qsizetype widthOf(const QByteArray &text) { return QString::fromUtf8(text).size(); }

    void printAligned()
    {
        if (m_rows.size() == 1) // no species
            return;
        std::array<qsizetype, headings.size()> widths{};
        for (const QByteArrayList &cells : std::as_const(m_rows)) {
            for (std::size_t i = 0; i < widths.size(); ++i)
                widths[i] = std::max(widths[i], widthOf(cells[qsizetype(i)]));
        }
        for (const QByteArrayList &cells : std::as_const(m_rows)) {
            QByteArray line;
            for (std::size_t i = 0; i < widths.size(); ++i) {
                const QByteArray &cell = cells[qsizetype(i)];
                line += cell;
                if (i + 1 < widths.size())
                    line += QByteArray(widths[i] - widthOf(cell) + 2, ' ');
            }
            while (line.endsWith(' '))
                line.chop(1);
            m_console.out(line + '\n');
        }
    }

    bool m_isJson;
    bool m_isTsv;
    Console &m_console;
    QList<QByteArrayList> m_rows; // only of the aligned table, which needs all to know its widths
    int m_count = 0;
};

int run(const Arguments &arguments, Console &console)
{
    const QByteArray form = arguments.value("format", "text");
    const QByteArrayList forms{"text", "tsv", "json"};
    if (!forms.contains(form))
        return usageError(console, listCommand(), "the form", form, forms);
    if (arguments.operands().isEmpty())
        return usageError(console, listCommand(), {"no file is named", {}});
    const InputList list = listInputs(arguments.operands());

    int status = nameBadFolders(list, console) ? exitFailure : exitFine;
    const auto fail = [&](const QByteArray &name, const char *why) {
        console.error(shownName(name) + ": " + why);
        status = exitFailure;
    };
    Table table(form, console);
    {
        Progress progress(console, "Reading", list.files.size());
        for (qsizetype i = 0; i < list.files.size() && !console.isOutputClosed(); ++i) {
            progress.advance(i);
            const InputFile &input = list.files[i];
            const std::optional<QJsonObject> object = readObject(input, console);
            if (!object)
                status = exitFailure;
            else if (isPassedOver(input, *object, PassOver::DatabasesAndSpectra))
                continue;
            else if (!hasType(*object, speciesFileType))
                fail(input.name, "not a species file");
            else
                table.add(rowOf(input, *object));
        }
    }
    table.finish();
    if (status == exitFine && table.isEmpty() && !console.isOutputClosed()) {
        console.error("there is no species file");
        status = exitFailure;
    }
    return status;
}

} // namespace

const Command &listCommand()
{
    static constexpr Command command{"list",  "PATH...", "Show a table of species files",
                                     details, options,   run};
    return command;
}

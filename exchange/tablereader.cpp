// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/tablereader.h"

#include "exchange/metadata.h"
#include "exchange/numbers.h"
#include "exchange/tableenergies.h"
#include "exchange/tablelayout.h"
#include "exchange/tablelines.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace
{

bool isComment(const QByteArray &line)
{
    // What spreadsheets write instead of a missing number.
    static const QByteArrayList errorValues{"#N/A",  "#NUM!",  "#VALUE!", "#DIV/0!",
                                            "#REF!", "#NAME?", "#NULL!"};
    const bool isValue =
        std::any_of(errorValues.begin(), errorValues.end(),
                    [&](const QByteArray &value) { return line.startsWith(value); });
    return (line.startsWith('#') && !isValue) || line.startsWith('%');
}

QByteArray simplifiedHeading(const QByteArray &heading)
{
    return heading.toLower().replace("ν", "v").replace('_', ' ').simplified();
}

bool isKnownHeading(const QByteArray &heading)
{
    static const QRegularExpression known(
        QStringLiteral("^(e|x|hv|energy|photon energy|hv / ev|.*[/(\\[ ]ev[)\\]]*|i|y|intensity"
                       "|intensity / arb\\. unit)$"));
    return known.match(QString::fromUtf8(simplifiedHeading(heading))).hasMatch();
}

using Columns = std::pair<qsizetype, qsizetype>; // from 0

std::variant<Columns, ExchangeError> chooseColumns(const TableLayout &layout,
                                                   const TableReading &reading)
{
    const auto columnOf = [&](const QByteArray &name) -> qsizetype {
        for (const TableLine &line : layout.headings) {
            if (const qsizetype at = fieldsOf(line.text, layout.dialect).indexOf(name); at >= 0)
                return at;
        }
        return -1;
    };
    if (reading.columns.isEmpty()) {
        if (layout.width == 2)
            return Columns(0, 1);
        QByteArray reason =
            QByteArray::number(layout.width) + " columns: name the two that count by --columns";
        if (layout.width == 4 && layout.dialect.separator == ',')
            reason += " (or, if the commas are decimal ones, separate the numbers otherwise)";
        return ExchangeError{layout.rows.first().number, reason};
    }
    std::array<qsizetype, 2> found{};
    for (std::size_t i = 0; i < found.size(); ++i) {
        const QByteArray &name = reading.columns[qsizetype(i)];
        bool isNumber = false;
        const qsizetype number = name.toLongLong(&isNumber);
        found[i] = isNumber ? number - 1 : columnOf(name);
        if (found[i] < 0 || found[i] >= layout.width)
            return ExchangeError{layout.rows.first().number, "there is no column " + name};
    }
    return Columns(found[0], found[1]);
}

struct Points {
    QList<QPointF> list;
    bool hasComma = false;         // in a number that counts
    bool isClearlyDecimal = false; // one of these cannot be thousands
};

std::variant<Points, ExchangeError> pointsOf(const TableLayout &layout, const Columns &columns)
{
    Points points;
    points.list.reserve(layout.rows.size());
    for (const TableLine &row : layout.rows) {
        const QByteArrayList fields = fieldsOf(row.text, layout.dialect);
        if (fields.size() != layout.width)
            return ExchangeError{row.number,
                                 QByteArray::number(fields.size())
                                     + (fields.size() == 1 ? " column, but " : " columns, but ")
                                     + QByteArray::number(layout.width) + " above"};
        std::array<double, 2> values{};
        for (const bool second : {false, true}) {
            const QByteArray &field = fields[second ? columns.second : columns.first];
            const std::optional<double> value = fieldNumber(field, layout.dialect);
            if (!value)
                return ExchangeError{row.number, '"' + field + "\" is not a finite number"};
            values[second ? 1 : 0] = *value;
            points.hasComma |= field.contains(',');
            points.isClearlyDecimal |= field.contains(',') && !looksLikeThousands(field);
        }
        points.list.append({values[0], values[1]});
    }
    return points;
}

struct Reading {
    TableLayout layout;
    Columns columns;
    Points points;
};

bool isSame(const QList<QPointF> &left, const QList<QPointF> &right)
{
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](const QPointF &l, const QPointF &r) { return l.x() == r.x() && l.y() == r.y(); });
}

std::variant<Reading, ExchangeError> chooseReading(const QList<TableLine> &lines,
                                                   const TableReading &wanted)
{
    const auto layouts = possibleLayouts(lines, wanted.decimal);
    if (const auto *error = std::get_if<ExchangeError>(&layouts))
        return *error;
    std::optional<Reading> chosen;
    std::optional<ExchangeError> farthest; // of the dialects that fail, where the last one does
    for (const TableLayout &layout : std::get<std::vector<TableLayout>>(layouts)) {
        const auto columns = chooseColumns(layout, wanted);
        const auto points = std::holds_alternative<Columns>(columns)
                                ? pointsOf(layout, std::get<Columns>(columns))
                                : std::get<ExchangeError>(columns);
        if (const auto *error = std::get_if<ExchangeError>(&points)) {
            if (!farthest || error->line > farthest->line)
                farthest = *error;
            continue;
        }
        const auto &found = std::get<Points>(points);
        if (chosen && !isSame(chosen->points.list, found.list))
            return ExchangeError{layout.rows.first().number,
                                 "could be read in two ways: say --decimal point or comma"};
        // A dialect with a real separator splits the headings better than white space.
        if (!chosen)
            chosen = Reading{layout, std::get<Columns>(columns), found};
    }
    if (!chosen)
        return farthest.value_or(ExchangeError{0, "there is no row of numbers"});
    if (wanted.decimal == 0 && chosen->points.hasComma && !chosen->points.isClearlyDecimal
        && chosen->layout.dialect.decimal == ',')
        return ExchangeError{chosen->layout.rows.first().number,
                             "the commas could be decimal ones or between thousands: say "
                             "--decimal comma, or take them out"};
    return *std::move(chosen);
}

// Reads a comment or a line of text above the numbers.
void readText(const TableLine &line, ExchangedSpectrum &spectrum)
{
    static const QRegularExpression field(QStringLiteral("^[#%\\s]*([A-Za-z]+)\\s*[:=]\\s*(.*)$"));
    const QString text = QString::fromUtf8(line.text).trimmed();
    const QRegularExpressionMatch match = field.match(text);
    const QByteArray key = metadataKey(match.captured(1).toUtf8());
    if (match.hasMatch() && !key.isEmpty()
        && setMetadata(spectrum.metadata, key, unquoted(match.captured(2).toUtf8())))
        return;
    static const QRegularExpression something(QStringLiteral("[^#%\\s]"));
    if (something.match(text).hasMatch())
        spectrum.warnings.append("line " + QByteArray::number(line.number)
                                 + " is not kept: " + text.toUtf8());
}

// Valence and inner shells of light atoms end here, and many other units begin.
void warnOfLargeEnergies(ExchangedSpectrum &spectrum)
{
    constexpr double largestUsual = 200; // eV
    double largest = 0;
    for (const QPointF &point : std::as_const(spectrum.points))
        largest = std::max(largest, point.x());
    if (largest > largestUsual)
        spectrum.warnings.append("no unit is named; energies up to " + shortestText(largest)
                                 + " are taken for eV");
}

void warnOfColumns(const Reading &reading, const TableEnergies &energies,
                   ExchangedSpectrum &spectrum)
{
    const TableLayout &layout = reading.layout;
    for (qsizetype i = 0; i < layout.width; ++i) {
        const QByteArray heading = layout.heading(i);
        const bool counts = i == reading.columns.first || i == reading.columns.second;
        if (!counts)
            spectrum.warnings.append(
                "column " + QByteArray::number(i + 1) + " is not kept"
                + (heading.isEmpty() ? QByteArray() : QByteArray(": " + heading)));
        else if (!heading.isEmpty() && !isKnownHeading(heading)
                 && !(energies.isHeadingKept && i == reading.columns.first))
            spectrum.warnings.append("the heading \"" + heading + "\" is not kept");
    }
}

} // namespace

std::variant<ExchangedSpectrum, ExchangeError> readTable(const QByteArray &bytes,
                                                         const TableReading &reading)
{
    ExchangedSpectrum spectrum;
    QByteArray warning;
    QList<TableLine> lines;
    QList<TableLine> comments;
    for (const TableLine &line : linesOfText(bytes, warning)) {
        const QByteArray text = line.text.trimmed();
        if (isComment(text))
            comments.append(line);
        else if (!text.isEmpty())
            lines.append(line);
    }
    if (!warning.isEmpty())
        spectrum.warnings.append(warning);
    const auto chosen = chooseReading(lines, reading);
    if (const auto *error = std::get_if<ExchangeError>(&chosen))
        return *error;
    const auto &found = std::get<Reading>(chosen);
    const auto energies =
        tableEnergies(found.layout, found.columns.first, comments, reading.energies);
    if (const auto *error = std::get_if<ExchangeError>(&energies))
        return *error;
    const auto &axis = std::get<TableEnergies>(energies);

    for (const TableLine &line : comments + found.layout.texts) {
        if (line.number != axis.line)
            readText(line, spectrum);
    }
    warnOfColumns(found, axis, spectrum);
    spectrum.warnings += axis.warnings;
    spectrum.points = found.points.list;
    if (!axis.unit || *axis.unit == EnergyUnit::ElectronVolt) {
        if (!axis.unit)
            warnOfLargeEnergies(spectrum);
        return spectrum;
    }
    if (const auto bad = convertEnergies(spectrum.points, *axis.unit))
        return ExchangeError{found.layout.rows[*bad].number,
                             "a wavelength of " + shortestText(spectrum.points[*bad].x())
                                 + " has no energy"};
    spectrum.warnings.append(conversionNote(*axis.unit));
    return spectrum;
}

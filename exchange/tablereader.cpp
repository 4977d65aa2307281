// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/tablereader.h"

#include "exchange/metadata.h"
#include "exchange/numbers.h"
#include "exchange/tablelines.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <vector>

namespace
{

constexpr std::array dialects{
    TableDialect{'\t', '.'}, TableDialect{'\t', ','}, TableDialect{';', '.'},
    TableDialect{';', ','},  TableDialect{',', '.'},  TableDialect{',', ','},
    TableDialect{' ', '.'},  TableDialect{' ', ','},
};

bool isComment(const QByteArray &line)
{
    return line.startsWith('#') || line.startsWith('%');
}

// The lines of the file by what they are, under one dialect.
struct Layout {
    TableDialect dialect;
    QList<TableLine> texts; // before the numbers, without the headings
    QByteArrayList headings;
    qsizetype headingLine = 0;
    QList<TableLine> rows;
    qsizetype width = 0; // columns
};

bool isRow(const QByteArray &line, const TableDialect &dialect)
{
    const QByteArrayList fields = fieldsOf(line, dialect);
    return fields.size() > 1
           && std::all_of(fields.begin(), fields.end(), [&](const QByteArray &field) {
                  return fieldNumber(field, dialect).has_value();
              });
}

// Nothing if no line is a row of numbers.
std::optional<Layout> layoutOf(const QList<TableLine> &lines, const TableDialect &dialect)
{
    Layout layout{dialect, {}, {}, 0, {}, 0};
    for (const TableLine &line : lines) {
        if (!layout.rows.isEmpty())
            layout.rows.append(line);
        else if (isRow(line.text, dialect))
            layout.rows = {line};
        else
            layout.texts.append(line);
    }
    if (layout.rows.isEmpty())
        return std::nullopt;
    layout.width = fieldsOf(layout.rows.first().text, dialect).size();
    // Blanks within headings do not separate them.
    const bool isSpaced = dialect.separator == ' ';
    if (!layout.texts.isEmpty()) {
        const TableLine &last = layout.texts.last();
        QByteArrayList headings = fieldsOf(last.text, dialect);
        if (headings.size() == layout.width || isSpaced) {
            layout.headings = headings.size() == layout.width ? headings : QByteArrayList();
            layout.headingLine = last.number;
            if (!layout.headings.isEmpty())
                layout.texts.removeLast();
        }
    }
    return layout;
}

QByteArray simplifiedHeading(const QByteArray &heading)
{
    return heading.toLower().replace("ν", "v").replace('_', ' ').simplified();
}

// The unit in a heading such as "Energy / eV" or "wavelength (nm)".
QByteArray unitIn(const QByteArray &heading)
{
    static const QRegularExpression unit(
        QStringLiteral("(?:^|[\\s/(\\[])(ev|mev|kev|nm|cm-1|cm\\^-1|1/cm|hz|thz|a|å|ry|hartree)"
                       "[)\\]]*$"));
    const QRegularExpressionMatch match = unit.match(QString::fromUtf8(simplifiedHeading(heading)));
    return match.captured(1).toUtf8();
}

bool isKnownHeading(const QByteArray &heading)
{
    static const QRegularExpression known(
        QStringLiteral("^(e|x|hv|energy|photon energy|hv / ev|.*[/(\\[ ]ev[)\\]]*|i|y|intensity"
                       "|intensity / arb\\. unit)$"));
    return known.match(QString::fromUtf8(simplifiedHeading(heading))).hasMatch();
}

using Columns = std::pair<qsizetype, qsizetype>; // from 0

std::variant<Columns, ExchangeError> chooseColumns(const Layout &layout,
                                                   const TableReading &reading)
{
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
        found[i] = isNumber ? number - 1 : layout.headings.indexOf(name);
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

std::variant<Points, ExchangeError> pointsOf(const Layout &layout, const Columns &columns)
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
    Layout layout;
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
    // Numbers that a dialect cannot read look like text to it: those that begin later are wrong.
    std::vector<Layout> layouts;
    qsizetype first = std::numeric_limits<qsizetype>::max();
    for (const TableDialect &dialect : dialects) {
        std::optional<Layout> layout = layoutOf(lines, dialect);
        if (!layout || (wanted.decimal != 0 && dialect.decimal != wanted.decimal))
            continue;
        first = std::min(first, layout->rows.first().number);
        layouts.push_back(*std::move(layout));
    }

    std::optional<Reading> chosen;
    std::optional<ExchangeError> farthest; // of the dialects that fail, where the last one does
    for (const Layout &layout : layouts) {
        if (layout.rows.first().number > first)
            continue;
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
        // The form with a separator of its own knows the headings better than white space.
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

// A comment or a line of text above the numbers.
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

void warnOfColumns(const Reading &reading, ExchangedSpectrum &spectrum)
{
    const Layout &layout = reading.layout;
    for (qsizetype i = 0; i < layout.width; ++i) {
        const QByteArray heading = layout.headings.value(i);
        const bool counts = i == reading.columns.first || i == reading.columns.second;
        if (!counts)
            spectrum.warnings.append(
                "column " + QByteArray::number(i + 1) + " is not kept"
                + (heading.isEmpty() ? QByteArray() : QByteArray(": " + heading)));
        else if (!heading.isEmpty() && !isKnownHeading(heading))
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
    const QByteArray unit = unitIn(found.layout.headings.value(found.columns.first));
    if (!unit.isEmpty() && unit != "ev")
        return ExchangeError{found.layout.headingLine,
                             "the energies are in " + unit + ", not in eV"};

    for (const TableLine &line : comments + found.layout.texts)
        readText(line, spectrum);
    warnOfColumns(found, spectrum);
    spectrum.points = found.points.list;
    return spectrum;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/tablelayout.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace
{

constexpr std::array dialects{
    TableDialect{'\t', '.'}, TableDialect{'\t', ','}, TableDialect{';', '.'},
    TableDialect{';', ','},  TableDialect{',', '.'},  TableDialect{',', ','},
    TableDialect{' ', '.'},  TableDialect{' ', ','},
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
std::optional<TableLayout> layoutOf(const QList<TableLine> &lines, const TableDialect &dialect)
{
    const auto row = std::find_if(lines.begin(), lines.end(),
                                  [&](const TableLine &line) { return isRow(line.text, dialect); });
    if (row == lines.end())
        return std::nullopt;
    TableLayout layout{dialect,
                       QList<TableLine>(lines.begin(), row),
                       {},
                       QList<TableLine>(row, lines.end()),
                       fieldsOf(row->text, dialect).size()};
    while (!layout.texts.isEmpty()
           && fieldsOf(layout.texts.last().text, dialect).size() == layout.width)
        layout.headings.prepend(layout.texts.takeLast());
    return layout;
}

// A number with an attached unit or mark, such as "9.5eV", "100*" or "9.5(2)"; no date.
bool isLikeNumber(const QByteArray &field)
{
    static const QRegularExpression form(
        QStringLiteral("^[<>~+-]*((\\d+([.,\\x{2009}\\x{202f}\\x{a0}]\\d*)*|[.,]\\d+)"
                       "([eEdD][+-]?\\d+)?(\\(\\d+\\))?[^\\d.,:/-]*|nan|inf(inity)?)$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression dateOrVersion(QStringLiteral("^\\d+\\.\\d+\\.\\d+"));
    const QString text = QString::fromUtf8(plainField(field));
    return form.match(text).hasMatch() && !dateOrVersion.match(text).hasMatch();
}

// Whether a field marks a missing number.
bool isMissing(const QByteArray &field)
{
    static const QRegularExpression form(
        QStringLiteral("^(-+|\\?+|\\*+|n\\.?/?a\\.?|null|none|#(n/a|num!|value!|div/0!|ref!))$"),
        QRegularExpression::CaseInsensitiveOption);
    return form.match(QString::fromUtf8(plainField(field))).hasMatch();
}

// Whether a line has two numbers, or consists of numbers of which some are missing.
bool isLikePoint(const QByteArray &line)
{
    return std::any_of(dialects.begin(), dialects.end(), [&](const TableDialect &dialect) {
        const QByteArrayList fields = fieldsOf(line, dialect);
        const auto numbers = std::count_if(fields.begin(), fields.end(), isLikeNumber);
        const auto missing = std::count_if(fields.begin(), fields.end(), isMissing);
        return numbers > 1 || (numbers == 1 && missing > 0 && numbers + missing == fields.size());
    });
}

} // namespace

QByteArray TableLayout::heading(qsizetype column) const
{
    QByteArrayList parts;
    for (const TableLine &line : headings)
        parts.append(fieldsOf(line.text, dialect).at(column));
    return parts.join(' ').trimmed();
}

std::variant<std::vector<TableLayout>, ExchangeError> possibleLayouts(const QList<TableLine> &lines,
                                                                      char decimal)
{
    // A dialect that cannot read a number takes it for text, so those with later rows are wrong.
    std::vector<TableLayout> layouts;
    qsizetype first = std::numeric_limits<qsizetype>::max();
    for (const TableDialect &dialect : dialects) {
        std::optional<TableLayout> layout = layoutOf(lines, dialect);
        if (!layout || (decimal != 0 && dialect.decimal != decimal))
            continue;
        first = std::min(first, layout->rows.first().number);
        layouts.push_back(*std::move(layout));
    }
    for (const TableLine &line : lines) {
        if (line.number < first && isLikePoint(line.text))
            return ExchangeError{line.number, "a line with numbers that cannot be read as a point: "
                                                  + line.text.trimmed()
                                                  + " (put # before it if it is none)"};
    }
    std::erase_if(layouts,
                  [&](const TableLayout &layout) { return layout.rows.first().number > first; });
    if (layouts.empty())
        return ExchangeError{0, "there is no row of numbers"};
    return layouts;
}

qsizetype countNumbers(const QByteArray &text)
{
    const QByteArrayList words = fieldsOf(text, {' ', '.'});
    return std::count_if(words.begin(), words.end(), isLikeNumber);
}

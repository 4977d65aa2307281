// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/tableenergies.h"

#include "exchange/metadata.h"

#include <QRegularExpression>
#include <QString>

namespace
{

// The text of a comment; empty if it is a field of the spectrum.
QByteArray plainText(const QByteArray &line)
{
    static const QRegularExpression form(QStringLiteral("^[#%\\s]*(?:([A-Za-z]+)\\s*[:=])?"));
    const QString text = QString::fromUtf8(line);
    const QRegularExpressionMatch match = form.match(text);
    if (!metadataKey(match.captured(1).toUtf8()).isEmpty())
        return {};
    static const QRegularExpression mark(QStringLiteral("^[#%\\s]*"));
    return text.mid(mark.match(text).capturedEnd()).trimmed().toUtf8();
}

struct Described {
    EnergyAxis axis;
    QByteArray text;
    qsizetype line = 0;
    bool isHeading = false;
};

class Reader
{
public:
    Reader(const TableLayout &layout, qsizetype column, const QList<TableLine> &comments)
        : m_layout(layout), m_column(column)
    {
        for (const TableLine &comment : comments) {
            if (comment.number < layout.rows.first().number)
                m_above.append(comment);
        }
    }

    [[nodiscard]] Described described() const
    {
        if (!m_layout.headings.isEmpty()) {
            const QByteArray heading = m_layout.heading(m_column);
            return {energyAxisOfHeading(heading), heading, m_layout.headings.last().number, true};
        }
        if (!m_layout.texts.isEmpty())
            return ofLine(m_layout.texts.last());
        return m_above.isEmpty() ? Described() : ofLine(m_above.last());
    }

    // The first other line that may say what the energies are.
    [[nodiscard]] std::optional<TableLine> doubt(const EnergyChoice &choice) const
    {
        for (const TableLine &line : m_above + m_layout.texts) {
            const QByteArray text = plainText(line.text);
            if (countNumbers(text) == 0 && mayTellOfEnergies(energyAxisInText(text), choice))
                return TableLine{line.number, text};
        }
        return std::nullopt;
    }

private:
    // A line that may hold the headings: a comment, or one with other separators than the numbers.
    [[nodiscard]] Described ofLine(const TableLine &line) const
    {
        const QByteArray text = plainText(line.text);
        if (countNumbers(text) > 0)
            return {};
        const QByteArrayList fields = fieldsOf(text, m_layout.dialect);
        if (fields.size() == m_layout.width && fields.size() > m_column) {
            const EnergyAxis axis = energyAxisOfHeading(fields[m_column]);
            if (axis.quantity != EnergyAxis::Unknown || axis.unit)
                return {axis, fields[m_column], line.number};
        }
        const EnergyAxis axis = energyAxisOfLine(text);
        if (axis.quantity == EnergyAxis::Unknown)
            return {};
        return {axis, text, line.number};
    }

    const TableLayout &m_layout;
    qsizetype m_column;
    QList<TableLine> m_above; // comments
};

} // namespace

std::variant<TableEnergies, ExchangeError> tableEnergies(const TableLayout &layout,
                                                         qsizetype column,
                                                         const QList<TableLine> &comments,
                                                         const EnergyChoice &choice)
{
    const Reader reader(layout, column, comments);
    const Described described = reader.described();
    const auto unit = unitToRead(described.axis, described.text, choice);
    if (const auto *doubt = std::get_if<EnergyDoubt>(&unit))
        return ExchangeError{described.line, doubt->reason, doubt->remedy};
    const std::optional<EnergyUnit> named = described.axis.unit;
    if (!named) {
        if (const auto line = reader.doubt(choice))
            return ExchangeError{line->number, '"' + line->text + "\" may be about the energies",
                                 Remedy::NameUnitConfirmPhotons};
    }
    TableEnergies energies;
    energies.unit = std::get<std::optional<EnergyUnit>>(unit);
    energies.line = described.isHeading || !named ? 0 : described.line;
    energies.isHeadingKept =
        named && energies.unit == named && described.axis.quantity != EnergyAxis::NoPhotonEnergy;
    if (named && energies.unit != named)
        energies.warnings.append('"' + described.text + "\" names " + nameOf(*named)
                                 + ", but the energies are read in " + nameOf(*energies.unit));
    return energies;
}

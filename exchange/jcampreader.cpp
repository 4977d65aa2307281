// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/jcampreader.h"

#include "exchange/asdf.h"
#include "exchange/jcamprecords.h"
#include "exchange/metadata.h"
#include "exchange/numbers.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumobject.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace
{

// A factor of 0.001 means three decimals: dividing by 1000 gives the nearest double.
double scaled(double value, double factor)
{
    const double divisor = std::round(1 / factor);
    const double power = std::round(std::log10(divisor));
    if (factor < 1 && std::abs(divisor * factor - 1) < 1e-14 && std::pow(10.0, power) == divisor)
        return value / divisor;
    return value * factor;
}

class BlockReader
{
public:
    BlockReader(const JcampBlock &block, const JcampReading &reading)
        : m_block(block), m_reading(reading)
    {
    }

    std::variant<ExchangedSpectrum, ExchangeError> read()
    {
        const JcampRecord *table = pointTable(m_block);
        if (!table)
            return ExchangeError{m_block.records.first().line, "there are no XYDATA or XYPOINTS"};
        if (const auto error = readHeader())
            return *error;
        QByteArray form = table->lines.first().toUpper();
        form.replace(" ", "").replace("\t", "");
        const bool isRun = form.startsWith("(X++(Y..Y))");
        if (!isRun && !form.startsWith("(XY..XY)"))
            return ExchangeError{table->line, "the form " + form + " is not known"};
        if (const auto error = isRun ? readRun(*table) : readPairs(*table))
            return *error;
        checkFirstOrdinate();
        if (const auto error = convertUnits(*table))
            return *error;
        readMetadata(*table);
        return std::move(m_spectrum);
    }

private:
    using Error = std::optional<ExchangeError>;

    // Reads the number of an optional record.
    Error readNumber(const char *name, std::optional<double> &value)
    {
        const JcampRecord *record = m_block.find(name);
        if (!record)
            return std::nullopt;
        value = numberIn(m_block.value(name));
        if (!value)
            return ExchangeError{record->line, QByteArray(name) + " is not a number"};
        return std::nullopt;
    }

    Error readHeader()
    {
        std::optional<double> xFactor;
        std::optional<double> yFactor;
        for (const auto &[name, value] :
             {std::pair("XFACTOR", &xFactor), std::pair("YFACTOR", &yFactor),
              std::pair("FIRSTX", &m_firstX), std::pair("LASTX", &m_lastX),
              std::pair("FIRSTY", &m_firstY), std::pair("DELTAX", &m_deltaX),
              std::pair("NPOINTS", &m_count)}) {
            if (Error error = readNumber(name, *value))
                return error;
        }
        m_xFactor = xFactor.value_or(1);
        m_yFactor = yFactor.value_or(1);
        for (const auto &[name, factor] :
             {std::pair("XFACTOR", m_xFactor), std::pair("YFACTOR", m_yFactor)}) {
            if (factor == 0)
                return ExchangeError{m_block.find(name)->line, QByteArray(name) + " is 0"};
        }
        return std::nullopt;
    }

    // Reads (X++(Y..Y)): even steps from FIRSTX to LASTX; each line begins with its abscissa.
    Error readRun(const JcampRecord &table)
    {
        if (!m_firstX || !m_lastX || !m_count)
            return ExchangeError{table.line, "FIRSTX, LASTX or NPOINTS is missing"};
        const double step = *m_count > 1 ? (*m_lastX - *m_firstX) / (*m_count - 1) : 0;
        QList<double> values;
        bool isChecked = false;
        for (qsizetype i = 1; i < table.lines.size(); ++i) {
            const QByteArray line = table.lines[i].trimmed();
            const qsizetype number = table.line + i;
            if (line.isEmpty())
                continue;
            const auto read = readAsdfLine(line);
            if (const auto *error = std::get_if<AsdfError>(&read))
                return ExchangeError{number, error->reason};
            const auto &data = std::get<AsdfLine>(read);
            const qsizetype at = values.size() - (isChecked ? 1 : 0);
            const double expected = *m_firstX + double(at) * step;
            const double tolerance =
                std::abs(step) + std::abs(m_xFactor) * data.xPrecision + 1e-9 * std::abs(expected);
            if (std::abs(data.x * m_xFactor - expected) > tolerance)
                return ExchangeError{number, "the abscissa is " + shortestText(data.x * m_xFactor)
                                                 + " where " + shortestText(rounded(expected))
                                                 + " is due"};
            QList<double> rest = data.values;
            if (isChecked) {
                const QByteArray due = shortestText(values.last());
                if (rest.isEmpty() || rest.first() != values.last()) {
                    const QByteArray wrong = "the check value is " + shortestText(rest.value(0))
                                             + " where " + due + " is due";
                    if (!m_reading.isLenient)
                        return ExchangeError{number, wrong, Remedy::PassOverChecks};
                    warn("line " + QByteArray::number(number) + ": " + wrong + "; " + due
                         + " is taken");
                }
                rest.remove(0, std::min<qsizetype>(rest.size(), 1));
            }
            values += rest;
            isChecked = data.endsInDifference;
            if (double(values.size()) > *m_count)
                return ExchangeError{number, countIs(values.size(), " or more")};
        }
        if (double(values.size()) != *m_count)
            return ExchangeError{table.line, countIs(values.size())};
        takeRun(values);
        checkDelta(step);
        return std::nullopt;
    }

    QByteArray countIs(qsizetype count, const QByteArray &more = {}) const
    {
        return "there are " + QByteArray::number(count) + more + " points, but NPOINTS is "
               + shortestText(*m_count);
    }

    void takeRun(const QList<double> &values)
    {
        const double last = *m_count - 1;
        for (qsizetype i = 0; i < values.size(); ++i) {
            const double x = last > 0
                                 ? (*m_firstX * (last - double(i)) + *m_lastX * double(i)) / last
                                 : *m_firstX;
            addPoint(rounded(x), scaled(values[i], m_yFactor));
        }
    }

    void checkDelta(double step)
    {
        constexpr double mostRelative = 0.01;
        if (m_deltaX && std::abs(*m_deltaX - step) > mostRelative * std::abs(step))
            warn("DELTAX " + shortestText(*m_deltaX) + " does not lead from FIRSTX to LASTX in "
                 + "NPOINTS steps, which count");
    }

    // Reads (XY..XY): pairs, separated by anything but letters.
    Error readPairs(const JcampRecord &table)
    {
        for (qsizetype i = 1; i < table.lines.size(); ++i) {
            QByteArray line = table.lines[i];
            for (const char separator : {',', ';', '\t'})
                line.replace(separator, ' ');
            const QByteArrayList words = line.simplified().split(' ');
            if (words.first().isEmpty())
                continue;
            if (words.size() % 2 != 0)
                return ExchangeError{table.line + i, "an abscissa without an ordinate"};
            for (qsizetype word = 0; word < words.size(); word += 2) {
                const std::optional<double> x = numberIn(words[word]);
                const std::optional<double> y = words[word + 1] == "?" ? std::optional(std::nan(""))
                                                                       : numberIn(words[word + 1]);
                if (!x || !y)
                    return ExchangeError{table.line + i, '"' + (x ? words[word + 1] : words[word])
                                                             + "\" is not a number"};
                addPoint(scaled(*x, m_xFactor), scaled(*y, m_yFactor));
            }
        }
        const qsizetype count = m_spectrum.points.size() + m_missing;
        if (m_count && *m_count != double(count))
            return ExchangeError{table.line, countIs(count)};
        return checkEnds(table);
    }

    Error checkEnds(const JcampRecord &table) const
    {
        const auto isAway = [](double value, const std::optional<double> &due) {
            return due && std::abs(value - *due) > 1e-6 * std::abs(*due);
        };
        const QList<QPointF> &points = m_spectrum.points;
        if (points.isEmpty() || m_missing > 0)
            return std::nullopt;
        if (isAway(points.first().x(), m_firstX))
            return ExchangeError{table.line, "the first abscissa is not FIRSTX"};
        if (isAway(points.last().x(), m_lastX))
            return ExchangeError{table.line, "the last abscissa is not LASTX"};
        return std::nullopt;
    }

    void addPoint(double x, double y)
    {
        if (std::isnan(y))
            ++m_missing;
        else
            m_spectrum.points.append({x, y});
    }

    void checkFirstOrdinate()
    {
        if (m_firstY && !m_spectrum.points.isEmpty()
            && std::abs(m_spectrum.points.first().y() - *m_firstY)
                   > std::abs(m_yFactor) + 1e-4 * std::abs(*m_firstY))
            warn("the first ordinate is not FIRSTY");
    }

    Error convertUnits(const JcampRecord &table)
    {
        QByteArrayList texts;
        qsizetype line = table.line;
        for (const char *name : {"XUNITS", "XLABEL"}) {
            if (const QByteArray text = m_block.value(name); !text.isEmpty()) {
                line = texts.isEmpty() ? m_block.find(name)->line : line;
                texts.prepend(text);
            }
        }
        const QByteArray text = texts.join(' ');
        const auto read = unitToRead(energyAxisOfHeading(text), text, m_reading.energies);
        if (const auto *doubt = std::get_if<EnergyDoubt>(&read))
            return ExchangeError{line, doubt->reason, doubt->remedy};
        const auto unit = std::get<std::optional<EnergyUnit>>(read);
        if (!unit)
            return ExchangeError{line,
                                 text.isEmpty() ? QByteArray("XUNITS is missing")
                                                : '"' + text + "\" is no unit of energies",
                                 Remedy::NameUnit};
        if (*unit == EnergyUnit::ElectronVolt)
            return std::nullopt;
        if (const auto bad = convertEnergies(m_spectrum.points, *unit))
            return ExchangeError{line, "a wavelength of "
                                           + shortestText(m_spectrum.points[*bad].x())
                                           + " has no energy"};
        warn(conversionNote(*unit));
        m_isConverted = true;
        return std::nullopt;
    }

    void readMetadata(const JcampRecord &table)
    {
        const bool isOurs = std::any_of(
            m_block.records.begin(), m_block.records.end(),
            [](const JcampRecord &record) { return record.name.startsWith("$ZORAVEL"); });
        QByteArrayList comments;
        for (const JcampRecord &record : m_block.records) {
            if (&record == &table)
                continue;
            if (record.name.startsWith("$ZORAVEL"))
                readOwnRecord(record);
            else if (!isOurs && record.name == "TITLE")
                static_cast<void>(setMetadata(m_spectrum.metadata,
                                              keyOf(SpectrumColumn::Title).data(), textOf(record)));
            else if (!isOurs && !isUsed(record.name) && !textOf(record).isEmpty())
                comments.append(record.label.trimmed() + "= " + textOf(record));
        }
        if (!comments.isEmpty())
            static_cast<void>(setMetadata(m_spectrum.metadata,
                                          keyOf(SpectrumColumn::FurtherComments).data(),
                                          comments.join("<br>")));
        if (m_block.comments > 0)
            warn(QByteArray::number(m_block.comments) + " comments ($$) are not kept");
        if (m_missing > 0)
            warn(QByteArray::number(m_missing) + " points without an ordinate (?) are left out");
    }

    // Reads a field that this program wrote; a quoted one may span several lines.
    void readOwnRecord(const JcampRecord &record)
    {
        const QByteArray name = record.name.sliced(qsizetype(sizeof "$ZORAVEL") - 1);
        const QByteArray text = unquoted(record.lines.join().trimmed());
        QByteArray key;
        for (const QByteArray &known : metadataKeys()) {
            if (known.toUpper() == name)
                key = known;
        }
        if (key.isEmpty() || !setMetadata(m_spectrum.metadata, key, text))
            warn("the label " + record.label + " is not kept");
    }

    QByteArray textOf(const JcampRecord &record)
    {
        QByteArray text = record.lines.join('\n').trimmed().replace('\n', "<br>");
        if (cleanHtmlContent(QString::fromUtf8(text)) != QString::fromUtf8(text))
            warn("what stands in angle brackets in " + record.label
                 + " will be lost in the editor");
        return text;
    }

    // Whether the points already contain the record's information.
    bool isUsed(const QByteArray &name) const
    {
        static const QByteArrayList used{
            "JCAMPDX", "DATACLASS", "XFACTOR", "YFACTOR", "FIRSTX", "LASTX", "FIRSTY",
            "DELTAX",  "NPOINTS",   "MAXX",    "MINX",    "MAXY",   "MINY",  "BLOCKID",
        };
        return used.contains(name) || (name == "XUNITS" && !m_isConverted);
    }

    void warn(const QByteArray &text) { m_spectrum.warnings.append(text); }

    const JcampBlock &m_block;
    const JcampReading &m_reading;
    ExchangedSpectrum m_spectrum;
    std::optional<double> m_firstX;
    std::optional<double> m_lastX;
    std::optional<double> m_firstY;
    std::optional<double> m_deltaX;
    std::optional<double> m_count;
    double m_xFactor = 1;
    double m_yFactor = 1;
    qsizetype m_missing = 0;
    bool m_isConverted = false;
};

} // namespace

std::variant<ExchangedSpectrum, ExchangeError> readJcamp(const QByteArray &bytes,
                                                         const JcampReading &reading)
{
    const int block = reading.block;
    const auto read = jcampBlocks(bytes);
    if (const auto *error = std::get_if<ExchangeError>(&read))
        return *error;
    const auto &blocks = std::get<QList<JcampBlock>>(read);
    if (block == 0 && blocks.size() > 1)
        return ExchangeError{0, "there are " + QByteArray::number(blocks.size())
                                    + " spectra: say which one by --spectrum"};
    if (block > blocks.size())
        return ExchangeError{0, "there are only " + QByteArray::number(blocks.size()) + " spectra"};
    return BlockReader(blocks[block == 0 ? 0 : block - 1], reading).read();
}

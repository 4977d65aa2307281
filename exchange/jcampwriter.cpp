// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/jcampwriter.h"

#include "exchange/metadata.h"
#include "exchange/numbers.h"
#include "files/jsonfile.h"
#include "spectrum/spectrumobject.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace
{

constexpr qsizetype lineLength = 80; // of the format

QByteArray record(const QByteArray &label, const QByteArray &value)
{
    return "##" + label + "= " + value + '\n';
}

bool isAscii(const QByteArray &text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

// The text as ASCII JSON, without the start of a comment.
QByteArray quoted(const QString &text)
{
    QByteArray result = "\"";
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            result += QByteArray("\\") + c.toLatin1();
        else if (c < QLatin1Char(' ') || c > QLatin1Char('~') || c == QLatin1Char('$'))
            result += "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
        else
            result += c.toLatin1();
    }
    return result + '"';
}

// The record of a field; a long or unusual value is quoted and may span several lines.
QByteArray fieldRecord(const QString &key, const QJsonValue &value)
{
    const QByteArray label = "$ZORAVEL " + key.toUpper().toUtf8();
    QByteArray text = metadataText(key, value);
    const qsizetype room = lineLength - label.size() - qsizetype(sizeof "##= ") + 1;
    if (isAscii(text) && !text.contains("$$") && text.size() <= room)
        return record(label, text);
    text = value.isString() ? quoted(value.toString()) : text;
    QByteArray lines = "##" + label + "=\n";
    // A line must not begin or end with a blank, which readers may remove, nor begin with "##".
    while (!text.isEmpty()) {
        qsizetype length = std::min(text.size(), lineLength);
        while (length > 1 && length < text.size()
               && (text[length - 1] == ' ' || text[length] == ' ' || text[length] == '#'))
            --length;
        lines += text.first(length) + '\n';
        text.remove(0, length);
    }
    return lines;
}

// The title that other programs see.
QByteArray titleOf(const QJsonObject &spectrum)
{
    const QString title = spectrum.value(keyOf(SpectrumColumn::Title)).toString();
    QByteArray text;
    for (const QChar c : QStringView(title).left(int(lineLength) - 10))
        text += c >= QLatin1Char(' ') && c <= QLatin1Char('~') && c != QLatin1Char('$')
                    ? c.toLatin1()
                    : '?';
    return text;
}

// Intensities as whole numbers times 10 to the power of -decimals.
struct WholeNumbers {
    int decimals;
    QList<qint64> values;
};

std::optional<WholeNumbers> asWholeNumbers(const QList<QPointF> &points)
{
    constexpr int mostDecimals = 9;
    constexpr double largest = 2147483647; // what readers keep
    for (int decimals = 0; decimals <= mostDecimals; ++decimals) {
        const double power = std::pow(10.0, decimals);
        WholeNumbers numbers{decimals, {}};
        for (const QPointF &point : points) {
            const double whole = std::round(point.y() * power);
            if (std::abs(whole) > largest)
                return std::nullopt;
            // Whole numbers have no negative zero.
            if (whole / power != point.y() || (whole == 0 && std::signbit(point.y())))
                break;
            numbers.values.append(qint64(whole));
        }
        if (numbers.values.size() == points.size())
            return numbers;
    }
    return std::nullopt;
}

// Whether a reader would compute these abscissas from the ends and their count.
bool isEven(const QList<QPointF> &points)
{
    const double last = double(points.size() - 1);
    if (last < 1)
        return false;
    for (qsizetype i = 0; i < points.size(); ++i) {
        const double computed =
            (points.first().x() * (last - double(i)) + points.last().x() * double(i)) / last;
        if (rounded(computed) != points[i].x())
            return false;
    }
    return points.first().x() != points.last().x();
}

// A number without an exponent, which readers of packed lines could take for a digit.
QByteArray plainNumber(double value)
{
    return QByteArray::number(value, 'f', QLocale::FloatingPointShortest);
}

QByteArray runTable(const QList<QPointF> &points, const WholeNumbers &numbers)
{
    QByteArray text = record("XYDATA", "(X++(Y..Y))");
    QByteArray line;
    for (qsizetype i = 0; i < points.size(); ++i) {
        const QByteArray number = QByteArray::number(numbers.values[i]);
        if (!line.isEmpty() && line.size() + 1 + number.size() > lineLength) {
            text += line + '\n';
            line.clear();
        }
        if (line.isEmpty())
            line = plainNumber(points[i].x());
        line += ' ' + number;
    }
    return text + line + '\n';
}

QByteArray pairTable(const QList<QPointF> &points)
{
    QByteArray text = record("XYPOINTS", "(XY..XY)");
    for (const QPointF &point : points)
        text += shortestText(point.x()).toUpper() + ", " + shortestText(point.y()).toUpper() + '\n';
    return text;
}

} // namespace

QByteArray writeJcamp(const QJsonObject &spectrum)
{
    const QList<QPointF> points = storedPoints(spectrum);
    const std::optional<WholeNumbers> numbers =
        isEven(points) ? asWholeNumbers(points) : std::nullopt;
    QByteArray text = record("TITLE", titleOf(spectrum)) + record("JCAMP-DX", "5.01")
                      + record("DATA TYPE", "PHOTOIONIZATION SPECTRUM")
                      + record("DATA CLASS", numbers ? "XYDATA" : "XYPOINTS")
                      + record("ORIGIN", "ZORAVEL") + record("OWNER", "see ORIGIN");
    for (auto member = spectrum.begin(); member != spectrum.end(); ++member) {
        const QString key = member.key();
        if (key != typeKey && key != energiesKey && key != intensitiesKey && key != pointObjectsKey)
            text += fieldRecord(key, member.value());
    }
    text += record("XUNITS", "EV") + record("YUNITS", "ARBITRARY UNITS");
    text += record("XFACTOR", "1");
    const QByteArray yFactor = numbers && numbers->decimals > 0
                                   ? QByteArray("0." + QByteArray(numbers->decimals - 1, '0') + '1')
                                   : QByteArray("1");
    text += record("YFACTOR", yFactor);
    if (!points.isEmpty()) {
        text += record("FIRSTX", plainNumber(points.first().x()))
                + record("LASTX", plainNumber(points.last().x()));
        if (numbers)
            text += record("DELTAX", plainNumber(rounded((points.last().x() - points.first().x())
                                                         / double(points.size() - 1))));
        text += record("FIRSTY", shortestText(points.first().y()).toUpper());
    }
    text += record("NPOINTS", QByteArray::number(points.size()));
    return text + (numbers ? runTable(points, *numbers) : pairTable(points)) + record("END", "");
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/points.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace
{

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double largest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::denorm_min();

using MaybePoint = std::optional<QPointF>;
using Resampled = std::variant<QList<QPointF>, ResampleError>;

// Equal to the last bit, including the sign of zero; all NaNs are equal.
bool same(double left, double right)
{
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right)
           || (std::isnan(left) && std::isnan(right));
}

bool same(const QPointF &left, const QPointF &right)
{
    return same(left.x(), right.x()) && same(left.y(), right.y());
}

bool same(const QList<QPointF> &left, const QList<QPointF> &right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const QPointF &a, const QPointF &b) { return same(a, b); });
}

bool same(const MaybePoint &left, const MaybePoint &right)
{
    return left ? right && same(*left, *right) : !right;
}

bool same(const Resampled &left, const Resampled &right)
{
    if (left.index() != right.index())
        return false;
    if (const auto *points = std::get_if<QList<QPointF>>(&left))
        return same(*points, std::get<QList<QPointF>>(right));
    return std::get<ResampleError>(left) == std::get<ResampleError>(right);
}

QByteArray text(const QList<QPointF> &points)
{
    QByteArray result;
    for (const QPointF &point : points)
        result += '(' + QByteArray::number(point.x(), 'g', 17) + ", "
                  + QByteArray::number(point.y(), 'g', 17) + ") ";
    return result;
}

QByteArray text(const MaybePoint &point)
{
    return point ? text(QList<QPointF>{*point}) : QByteArray("no point");
}

QByteArray escaped(const QString &line)
{
    QByteArray result;
    for (const QChar c : line) {
        if (c.unicode() >= ' ' && c.unicode() <= '~')
            result += static_cast<char>(c.unicode());
        else
            result += "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    return result;
}

// The point of a line by definition: a split at the pattern, then Qt's conversion.
MaybePoint pointByPattern(const QString &line)
{
    static const QRegularExpression separators(QStringLiteral("[,;\\s]+"));
    const QStringList parts = line.split(separators, Qt::SkipEmptyParts);
    if (parts.size() != 2)
        return std::nullopt;
    bool okX = false;
    bool okY = false;
    const QPointF point(parts[0].toDouble(&okX), parts[1].toDouble(&okY));
    return okX && okY ? MaybePoint(point) : std::nullopt;
}

// What parsePoint() makes of line and what it should; empty if the two are the same.
QByteArray differenceFromPattern(const QString &line)
{
    const MaybePoint expected = pointByPattern(line);
    const MaybePoint actual = parsePoint(line);
    if (same(actual, expected))
        return QByteArray();
    return escaped(line) + ": " + text(actual) + ", not " + text(expected);
}

// Resampling by definition: each grid energy searches from the first segment on.
Resampled resampledByFullSearch(const QList<QPointF> &points)
{
    if (points.isEmpty())
        return ResampleError::NoPoints;
    const double start = points.first().x() + 0.001;
    const double end = points.last().x() - 0.001;
    if (!std::isfinite(start) || !std::isfinite(end) || (end - start) / 0.001 >= 10'000'000)
        return ResampleError::GridTooLarge;
    QList<QPointF> grid;
    if ((end - start) / 0.001 <= -1)
        return grid;
    const int n = static_cast<int>((end - start) / 0.001);
    for (int i = 0; i <= n; ++i) {
        const double x = std::fma(i, 0.001, start);
        for (qsizetype j = 0; j + 1 < points.size(); ++j) {
            if (points[j + 1].x() >= x) {
                const double fraction = (x - points[j].x()) / (points[j + 1].x() - points[j].x());
                grid.append(QPointF(
                    x, std::fma(points[j + 1].y() - points[j].y(), fraction, points[j].y())));
                break;
            }
        }
    }
    return grid;
}

template <typename Container>
auto anyOf(QRandomGenerator &random, const Container &choices)
{
    return choices[random.bounded(static_cast<quint32>(std::size(choices)))];
}

// Texts on which converters disagree most easily.
QStringList troublesomeTokens()
{
    const QString plain = QStringLiteral(
        "0 -0 +0 00 007 -00.5 1 +1 -1 --1 +-1 - + . -. .5 -.5 +.5 5. -5. 5.e1 .e1 1.2.3 1.. "
        "1e 1e+ 1e- 1e5 1E5 1e+5 1.5e-05 1e5.0 1e5e5 e5 1d5 1f 1eV 1' 1'000 1_000 $1 1% "
        "1e400 -1e400 1e-400 -1e-400 1e308 1.7976931348623157e308 1.7976931348623158e308 "
        "1.7976931348623159e308 1.8e308 5e-324 4.9e-324 2.4703282292062327e-324 "
        "2.4703282292062328e-324 2e-324 2.2250738585072011e-308 2.2250738585072014e-308 1e-310 "
        "0e999999999 0.0e-999999999 1e99999999999999999999 1e-99999999999999999999 "
        "0x1p3 0x10 0X1 0b1 inf -inf +inf Inf INF infinity -infinity nan -nan +nan NaN nan(1) "
        "9007199254740993 9007199254740992.999999999999999 0.1 0.30000000000000004 "
        "123456789012345678901234567890 12345678901234567890123456789012 "
        "123456789012345678901234567890123 0.000000000000000000000000000001 abc");
    const QString strange = QStringLiteral(
        "1\u00A0000 \u00A01.5 1.5\u00A0 \u20091.5 1.5\u2009 1\u066C000 1.5\u0085 \u00851 "
        "\u20281 1\u2029 "
        "\u0661\u0662 \u0661\u066B\u0665 \u0967 \uFF11\uFF12 \uFF11.\uFF15 \u22121 "
        "\u2212\u0661 "
        "1\u00B2 \u221E \U0001D7CE 1\u0301 \uFEFF1 1\uFEFF 1\u200B h\u03BD 1\uFFFE");
    const QChar nul;
    const QChar high(0xD835);
    const QChar low(0xDFCE);
    const QString one(QLatin1Char('1'));
    QStringList tokens = plain.split(QLatin1Char(' ')) + strange.split(QLatin1Char(' '));
    tokens += {QString(), nul, one + nul,  nul + one, one + nul + one,
               high,      low, one + high, low + one, QString(low) + high};
    return tokens;
}

QString randomText(QRandomGenerator &random, const QString &alphabet, int length)
{
    QString result;
    for (int i = 0; i < length; ++i)
        result += anyOf(random, alphabet);
    return result;
}

QString randomToken(QRandomGenerator &random)
{
    static const QStringList troublesome = troublesomeTokens();
    static const QString plain = QStringLiteral("00112233445566778899..--++eEeE");
    static const QString strange =
        QStringLiteral("0123456789.-+eExXpPinfatyNAIF'_\u00A0\u0661\uFF11\u0085\u2028\u066B\u2212")
        + QChar() + QChar(0xD800) + QChar(0xDFFF);
    switch (random.bounded(6)) {
    case 0:
    case 1:
        return anyOf(random, troublesome);
    case 2:
        return QString::number(random.generateDouble() * 100, 'f', random.bounded(18));
    case 3: // any bits that are a double
        return QString::number(std::bit_cast<double>(random.generate64()), 'g',
                               random.bounded(1, 25));
    case 4:
        return randomText(random, plain, random.bounded(1, random.bounded(40) ? 12 : 900));
    default:
        return randomText(random, strange, random.bounded(1, 8));
    }
}

QString randomSeparator(QRandomGenerator &random)
{
    static const QString separators = QStringLiteral(" ,;\t\v\f\r\n");
    static const QString lookalikes =
        QStringLiteral("\u00A0\u0085\u2028\u2029\u2003\u3000\u1680\u001C\u001F\u060C\uFF0C\u200B");
    QString separator;
    for (int length = random.bounded(1, 4); length > 0; --length)
        separator += anyOf(random, random.bounded(25) ? separators : lookalikes);
    return separator;
}

QString randomLine(QRandomGenerator &random)
{
    const int tokens = random.bounded(4) ? 2 : random.bounded(5);
    QString line = random.bounded(4) ? QString() : randomSeparator(random);
    for (int i = 0; i < tokens; ++i) {
        if (i)
            line += randomSeparator(random);
        line += randomToken(random);
    }
    return random.bounded(4) ? line : line + randomSeparator(random);
}

} // namespace

class TestPoints : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void linesAreSplitAtLineFeedsAndTheEmptyOnesLeftOut_data()
    {
        QTest::addColumn<QString>("pointText");
        QTest::addColumn<QStringList>("lines");
        const auto s = [](const char *utf8) { return QString::fromUtf8(utf8); };
        QTest::newRow("nothing") << QString() << QStringList();
        QTest::newRow("line feeds alone") << s("\n\n\n") << QStringList();
        QTest::newRow("one line") << s("1 2") << QStringList{s("1 2")};
        QTest::newRow("no line feed at the end")
            << s("1 2\n3 4") << QStringList{s("1 2"), s("3 4")};
        QTest::newRow("empty lines") << s("\n1 2\n\n\n3 4\n") << QStringList{s("1 2"), s("3 4")};
        QTest::newRow("lines of blanks stay")
            << s(" \n1 2\n\t") << QStringList{s(" "), s("1 2"), s("\t")};
        QTest::newRow("lines that are no points stay")
            << s("a\n1 2") << QStringList{s("a"), s("1 2")};
        QTest::newRow("other line ends are no line feeds")
            << s("1 2\r3 4\u20285 6\u00857 8") << QStringList{s("1 2\r3 4\u20285 6\u00857 8")};
    }

    void linesAreSplitAtLineFeedsAndTheEmptyOnesLeftOut()
    {
        QFETCH(QString, pointText);
        QTEST(splitPointLines(pointText), "lines");
    }

    void aLineOfExactlyTwoNumbersBetweenSeparatorsIsAPoint_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        const auto row = [](const char *name, const QString &line, double x, double y) {
            QTest::newRow(name) << line << x << y;
        };
        row("comma and blank", QStringLiteral("1.0, 2.0"), 1, 2);
        row("semicolon", QStringLiteral("1.0;2.0"), 1, 2);
        row("blank and tab", QStringLiteral("1.0 \t 2.0"), 1, 2);
        row("separators at both ends", QStringLiteral(";1.0 2.0;"), 1, 2);
        row("a long run of all separators",
            QStringLiteral(",; \t\v\f\r\n1,; \t\v\f\r\n2,; \t\v\f\r\n"), 1, 2);
        row("integers", QStringLiteral("1 2"), 1, 2);
        row("signs", QStringLiteral("-1.5 +2.5"), -1.5, 2.5);
        row("negative zero", QStringLiteral("-0 -0.0"), -0.0, -0.0);
        row("leading zeros", QStringLiteral("007 -00.5"), 7, -0.5);
        row("exponents", QStringLiteral("1.5e-05 2E+3"), 1.5e-05, 2000);
        row("no digit before the point", QStringLiteral(".5 -.25"), 0.5, -0.25);
        row("no digit after the point", QStringLiteral("5. -25."), 5, -25);
        row("not finite", QStringLiteral("nan -inf"), notANumber, -inf);
        row("denormal", QStringLiteral("5e-324 -1e-310"), smallest, -1e-310);
        row("largest", QStringLiteral("1.7976931348623157e308 -1.7976931348623157e+308"), largest,
            -largest);
        row("halfway between two doubles", QStringLiteral("9007199254740993 9007199254740995"),
            9007199254740992.0, 9007199254740996.0);
        row("more digits than a double holds",
            QStringLiteral("0.1000000000000000055511151231257827021181583404541015625 ")
                + QString(400, QLatin1Char('0')) + QLatin1Char('3'),
            0.1, 3);
    }

    void aLineOfExactlyTwoNumbersBetweenSeparatorsIsAPoint()
    {
        QFETCH(QString, line);
        QFETCH(double, x);
        QFETCH(double, y);
        const MaybePoint point = parsePoint(line);
        QVERIFY2(same(point, QPointF(x, y)), text(point).constData());
    }

    void anyOtherLineIsNoPoint_data()
    {
        QTest::addColumn<QString>("line");
        const auto row = [](const char *name, const QString &line) { QTest::newRow(name) << line; };
        row("empty", QString());
        row("blanks", QStringLiteral("   \t "));
        row("separators alone", QStringLiteral(" ,;, "));
        row("one number", QStringLiteral("1.0"));
        row("one number and separators", QStringLiteral(" 1.0, "));
        row("three numbers", QStringLiteral("1.0 2.0 3.0"));
        row("decimal commas", QStringLiteral("1,5 2,5"));
        row("a word", QStringLiteral("1.0 abc"));
        row("a word first", QStringLiteral("abc 1.0"));
        row("two numbers and a word", QStringLiteral("1 2 eV"));
        row("a unit without a blank", QStringLiteral("1eV 2"));
        row("an exponent without digits", QStringLiteral("1e 2"));
        row("two points", QStringLiteral("1.2.3 4"));
        row("two signs", QStringLiteral("--1 2"));
        row("a sign alone", QStringLiteral("1 -"));
        row("a point alone", QStringLiteral(". 1"));
        row("hexadecimal", QStringLiteral("0x1p3 1"));
        row("the word infinity", QStringLiteral("infinity 1"));
        row("overflow", QStringLiteral("1e400 1"));
        row("overflow of y", QStringLiteral("1 -1e400"));
        row("underflow", QStringLiteral("1 1e-400"));
        row("group separators", QStringLiteral("1'000 1"));
        row("Arabic digits", QStringLiteral("\u0661 \u0662"));
        row("full-width digits", QStringLiteral("\uFF11 \uFF12"));
        row("no-break space between", QStringLiteral("1\u00A02"));
        row("line separator between", QStringLiteral("1\u20282"));
        row("next line between", QStringLiteral("1\u00852"));
        row("NUL between", QStringLiteral("1") + QChar() + QStringLiteral("2"));
        row("NUL at the end", QStringLiteral("1 2") + QChar());
        row("a lone surrogate", QStringLiteral("1 2") + QChar(0xD800));
        row("a lone surrogate as a third part", QStringLiteral("1 2 ") + QChar(0xDC00));
        row("a million digits of one number", QString(1'000'000, QLatin1Char('1')));
        row("a million tokens", QStringLiteral("1 ").repeated(1'000'000));
    }

    void anyOtherLineIsNoPoint()
    {
        QFETCH(QString, line);
        const MaybePoint point = parsePoint(line);
        QVERIFY2(!point, text(point).constData());
    }

    void everyLineMeansWhatThePatternAndQtsConversionSay()
    {
        QRandomGenerator random(20240229);
        int points = 0;
        for (int i = 0; i < 200'000; ++i) {
            const QString line = randomLine(random);
            const QByteArray wrong = differenceFromPattern(line);
            QVERIFY2(wrong.isEmpty(), wrong.constData());
            points += parsePoint(line).has_value();
        }
        // Otherwise the lines would not test this rule.
        QVERIFY2(points > 40'000 && points < 160'000, QByteArray::number(points).constData());
    }

    void everyShortLineOfTheTroublesomeCharactersMeansWhatThePatternSays()
    {
        const QString alphabet = QStringLiteral("01.-+e ;x\u00A0n");
        const qsizetype base = alphabet.size();
        constexpr int length = 5;
        qsizetype count = 1;
        for (int i = 0; i < length; ++i)
            count *= base;
        for (qsizetype code = 0; code < count; ++code) {
            QString line;
            for (qsizetype rest = code; rest > 0; rest /= base)
                line += alphabet[rest % base];
            const QByteArray wrong = differenceFromPattern(line);
            QVERIFY2(wrong.isEmpty(), wrong.constData());
        }
    }

    void everyCharacterSeparatesIfAndOnlyIfThePatternSaysSo()
    {
        for (int code = 0; code <= 0xFFFF; ++code) {
            const QString line = QStringLiteral("1%1%2").arg(QChar(code)).arg(2);
            const QByteArray wrong = differenceFromPattern(line);
            QVERIFY2(wrong.isEmpty(), wrong.constData());
        }
    }

    void pointsKeepTheOrderOfTheirLinesAndOtherLinesArePassedOver()
    {
        const QStringList lines{QStringLiteral("3 1"),     QStringLiteral("no point"),
                                QStringLiteral(" "),       QStringLiteral("1; 2"),
                                QStringLiteral("1,5 2,5"), QStringLiteral("2,3")};
        QCOMPARE(parsePoints(lines), (QList<QPointF>{{3, 1}, {1, 2}, {2, 3}}));
        QCOMPARE(parsePoints({}), QList<QPointF>());
        QCOMPARE(parsePoints({QStringLiteral("none")}), QList<QPointF>());
    }

    void twoHundredThousandLinesAreTwoHundredThousandPoints()
    {
        QStringList lines;
        for (int i = 0; i < 200'000; ++i)
            lines.append(QStringLiteral("%1 %2").arg(i).arg(-i));
        const QList<QPointF> points = parsePoints(lines);
        QCOMPARE(points.size(), 200'000);
        QCOMPARE(points.at(123'456), QPointF(123'456, -123'456));
    }

    void aLoadedPointIsShownWithSixSignificantDigits_data()
    {
        QTest::addColumn<double>("energyEv");
        QTest::addColumn<double>("intensity");
        QTest::addColumn<QString>("line");
        QTest::newRow("rounded") << 12.345678 << 0.000015 << QStringLiteral("12.3457; 1.5e-05");
        QTest::newRow("integers") << 10.0 << 0.0 << QStringLiteral("10; 0");
        QTest::newRow("no trailing zeros") << 10.5 << 100.25 << QStringLiteral("10.5; 100.25");
        QTest::newRow("large") << 1234567.0 << -999999.5 << QStringLiteral("1.23457e+06; -1e+06");
        QTest::newRow("huge") << 1e308 << -1e308 << QStringLiteral("1e+308; -1e+308");
        QTest::newRow("smallest") << smallest << -smallest
                                  << QStringLiteral("4.94066e-324; -4.94066e-324");
    }

    void aLoadedPointIsShownWithSixSignificantDigits()
    {
        QFETCH(double, energyEv);
        QFETCH(double, intensity);
        QTEST(loadedPointLine(energyEv, intensity), "line");
    }

    void aLoadedNumberIsWrittenAsBySixSignificantDigits()
    {
        QRandomGenerator random(6);
        const auto verify = [](double number) {
            const QString expected = QString::number(number, 'g', 6) + QStringLiteral("; ")
                                     + QString::number(-number, 'g', 6);
            QCOMPARE(loadedPointLine(number, -number), expected);
        };
        for (int i = 0; i < 300'000; ++i) {
            const double decimal = random.bounded(2'000'000) / std::pow(10.0, random.bounded(8));
            verify(decimal);
            verify(std::nextafter(decimal, random.bounded(2) == 0 ? 0 : inf));
            verify(std::ldexp(random.generateDouble(), random.bounded(-40, 40)));
        }
    }

    void aRewrittenPointHasFixedDecimalsAndOneBlank()
    {
        const QList<QPointF> points{{10.00006, 1.004}, {-0.00001, 1e21}, {notANumber, inf}};
        const QStringList expected{QStringLiteral("10.0001 1.00"),
                                   QStringLiteral("-0.0000 1000000000000000000000.00"),
                                   QStringLiteral("nan inf")};
        QCOMPARE(fixedPointLines(points, 4, 2), expected);
        QCOMPARE(fixedPointLines({{10.0006, 0.26}}, 3, 1),
                 QStringList{QStringLiteral("10.001 0.3")});
        QCOMPARE(fixedPointLines({}, 4, 2), QStringList());
    }

    void theLargestIntensityBecomesAThousand_data()
    {
        QTest::addColumn<QList<double>>("intensities");
        QTest::addColumn<QList<double>>("expected");
        using Values = QList<double>;
        QTest::newRow("one") << Values{7} << Values{1000};
        QTest::newRow("the largest twice") << Values{2, 4, 4, 1} << Values{500, 1000, 1000, 250};
        QTest::newRow("first") << Values{4, 2} << Values{1000, 500};
        QTest::newRow("last") << Values{2, 4} << Values{500, 1000};
        QTest::newRow("negative ones") << Values{-8, 4} << Values{-2000, 1000};
        QTest::newRow("all negative") << Values{-2, -4} << Values{1000, 2000};
        QTest::newRow("tiny") << Values{1e-300, 2e-300} << Values{500, 1000};
        QTest::newRow("divided first, then multiplied")
            << Values{1e306, 2e306} << Values{500, 1000};
        QTest::newRow("not a number first")
            << Values{notANumber, 4} << Values{notANumber, notANumber};
        QTest::newRow("not a number later") << Values{4, notANumber} << Values{1000, notANumber};
        QTest::newRow("infinite") << Values{4, inf} << Values{0, notANumber};
    }

    void theLargestIntensityBecomesAThousand()
    {
        QFETCH(QList<double>, intensities);
        QFETCH(QList<double>, expected);
        QList<QPointF> points;
        QList<QPointF> expectedPoints;
        for (qsizetype i = 0; i < intensities.size(); ++i) {
            points.append(QPointF(0.1 * static_cast<double>(i), intensities[i]));
            expectedPoints.append(QPointF(points[i].x(), expected[i]));
        }
        const std::optional<QList<QPointF>> result = normalised(points);
        QVERIFY(result);
        QVERIFY2(same(*result, expectedPoints), text(*result).constData());
    }

    void withoutAnIntensityToScaleByThereIsNothingToNormalise()
    {
        QVERIFY(!normalised({}));
        QVERIFY(!normalised({{1, 0}}));
        QVERIFY(!normalised({{1, -0.0}, {2, 0}, {3, -5}}));
        QVERIFY(!normalised({{1, -5}, {2, -0.0}}));
    }

    void resamplingInterpolatesOnAGridThatLeavesTheFirstAndLastEnergyOut()
    {
        const Resampled result = resampled({{10.0, 5}, {10.005, 10}, {10.010, 20}});
        QCOMPARE(fixedPointLines(std::get<QList<QPointF>>(result), 3, 2),
                 (QStringList{QStringLiteral("10.001 6.00"), QStringLiteral("10.002 7.00"),
                              QStringLiteral("10.003 8.00"), QStringLiteral("10.004 9.00"),
                              QStringLiteral("10.005 10.00"), QStringLiteral("10.006 12.00"),
                              QStringLiteral("10.007 14.00"), QStringLiteral("10.008 16.00"),
                              QStringLiteral("10.009 18.00")}));
    }

    void resamplingTooFewOrTooCloseOrDescendingPointsGivesNone_data()
    {
        QTest::addColumn<QList<QPointF>>("points");
        using Points = QList<QPointF>;
        QTest::newRow("one point") << Points{{10, 5}};
        QTest::newRow("two points at one energy") << Points{{10, 5}, {10, 6}};
        QTest::newRow("two points less than a step apart") << Points{{10, 5}, {10.0009, 6}};
        QTest::newRow("descending") << Points{{11, 5}, {10.5, 6}, {10, 7}};
        QTest::newRow("as far down as it goes") << Points{{largest, 5}, {-largest, 6}};
        QTest::newRow("the first alone above the last") << Points{{20, 5}, {10, 6}, {11, 7}};
    }

    void resamplingTooFewOrTooCloseOrDescendingPointsGivesNone()
    {
        QFETCH(QList<QPointF>, points);
        const Resampled result = resampled(points);
        QVERIFY(std::holds_alternative<QList<QPointF>>(result));
        QCOMPARE(std::get<QList<QPointF>>(result), QList<QPointF>());
    }

    void truncationTowardsZeroKeepsOneGridEnergyForPointsLessThanTwoStepsApart()
    {
        const Resampled result = resampled({{10, 0}, {10.0015, 3}});
        QCOMPARE(fixedPointLines(std::get<QList<QPointF>>(result), 3, 2),
                 QStringList{QStringLiteral("10.001 2.00")});
    }

    void aSegmentWithoutWidthGivesAnIntensityThatIsNoFiniteNumber()
    {
        // No grid energy hits the doubled one but the first, which lies exactly on it.
        const QList<QPointF> points{{10, 1}, {10.0 + 0.001, 2}, {10.0 + 0.001, 4}, {10.003, 5}};
        QVERIFY(same(resampled(points), resampledByFullSearch(points)));
        const QList<QPointF> doubled{{1e17, 1}, {1e17, 2}};
        const Resampled result = resampled(doubled);
        QVERIFY(same(result, QList<QPointF>{{1e17, notANumber}}));
        QCOMPARE(fixedPointLines(std::get<QList<QPointF>>(result), 3, 2),
                 QStringList{QStringLiteral("100000000000000000.000 nan")});
    }

    void resamplingNothingSaysSo() { QVERIFY(same(resampled({}), ResampleError::NoPoints)); }

    void aRangeThatIsNotFiniteOrNeedsMoreThanTenMillionEnergiesIsRefused_data()
    {
        QTest::addColumn<QList<QPointF>>("points");
        using Points = QList<QPointF>;
        QTest::newRow("first not a number") << Points{{notANumber, 1}, {1, 1}};
        QTest::newRow("last not a number") << Points{{1, 1}, {notANumber, 1}};
        QTest::newRow("only one, not a number") << Points{{notANumber, 1}};
        QTest::newRow("first infinite") << Points{{-inf, 1}, {1, 1}};
        QTest::newRow("last infinite") << Points{{1, 1}, {inf, 1}};
        QTest::newRow("descending from infinity") << Points{{inf, 1}, {1, 1}};
        QTest::newRow("one too many") << Points{{0, 1}, {10'000.0025, 1}};
        QTest::newRow("more than a 32-bit count") << Points{{0, 1}, {3e6, 1}};
        QTest::newRow("huge") << Points{{0, 1}, {1e308, 1}};
        QTest::newRow("wider than a double") << Points{{-largest, 1}, {largest, 1}};
    }

    void aRangeThatIsNotFiniteOrNeedsMoreThanTenMillionEnergiesIsRefused()
    {
        QFETCH(QList<QPointF>, points);
        QVERIFY(same(resampled(points), ResampleError::GridTooLarge));
    }

    void tenMillionEnergiesAreResampled()
    {
        const Resampled result = resampled({{0, 0}, {10'000.0015, 10'000.0015}});
        QVERIFY(std::holds_alternative<QList<QPointF>>(result));
        const auto &grid = std::get<QList<QPointF>>(result);
        QCOMPARE(grid.size(), 10'000'000);
        QCOMPARE(grid.last().x(), 10'000.0);
    }

    void everyInputIsResampledAsByASearchFromTheFirstSegmentOn_data()
    {
        QTest::addColumn<bool>("sorted");
        QTest::addColumn<bool>("finite");
        QTest::newRow("sorted") << true << true;
        QTest::newRow("unsorted") << false << true;
        QTest::newRow("sorted, not all finite") << true << false;
        QTest::newRow("unsorted, not all finite") << false << false;
    }

    void everyInputIsResampledAsByASearchFromTheFirstSegmentOn()
    {
        QFETCH(bool, sorted);
        QFETCH(bool, finite);
        QRandomGenerator random(sorted * 2 + finite + 1);
        static constexpr std::array oddities{notANumber, inf,      -inf, largest,
                                             -largest,   smallest, -0.0};
        const auto value = [&](double scale) {
            const bool odd = !finite && random.bounded(8) == 0;
            return odd ? anyOf(random, oddities) : (random.generateDouble() - 0.3) * scale;
        };
        qsizetype gridPoints = 0;
        for (int round = 0; round < 3'000; ++round) {
            const double width = random.bounded(2) ? 0.01 : 0.2;
            QList<QPointF> points;
            for (int i = random.bounded(1, 30); i > 0; --i) {
                double x = 10 + value(width);
                if (random.bounded(4) == 0) // energies on the grid and doubled ones
                    x = 10 + 0.001 * random.bounded(-5, 20);
                points.append(QPointF(x, value(1000)));
            }
            if (sorted)
                std::stable_sort(points.begin(), points.end(),
                                 [](const QPointF &a, const QPointF &b) {
                                     return std::isnan(b.x()) ? !std::isnan(a.x()) : a.x() < b.x();
                                 });
            const Resampled expected = resampledByFullSearch(points);
            QVERIFY2(same(resampled(points), expected), text(points).constData());
            if (const auto *grid = std::get_if<QList<QPointF>>(&expected))
                gridPoints += grid->size();
        }
        QVERIFY2(gridPoints > 20'000, QByteArray::number(gridPoints).constData());
    }

    void theStickPlotReachesEveryPointButTheLastFromTheBaseline_data()
    {
        QTest::addColumn<QList<QPointF>>("points");
        QTest::addColumn<QList<QPointF>>("corners");
        using Points = QList<QPointF>;
        QTest::newRow("no point") << Points{} << Points{};
        QTest::newRow("one") << Points{{1, 5}} << Points{{1, 5}};
        QTest::newRow("two") << Points{{1, 5}, {2, 3}} << Points{{1, 5}, {1, 0}, {2, 3}};
        QTest::newRow("three") << Points{{1, 5}, {2, 3}, {3, 4}}
                               << Points{{1, 5}, {1, 0}, {2, 0}, {2, 3}, {2, 0}, {3, 4}};
        QTest::newRow("four") << Points{{1, 5}, {2, 3}, {3, 4}, {4, -1}}
                              << Points{{1, 5}, {1, 0}, {2, 0}, {2, 3}, {2, 0},
                                        {3, 0}, {3, 4}, {3, 0}, {4, -1}};
    }

    void theStickPlotReachesEveryPointButTheLastFromTheBaseline()
    {
        QFETCH(QList<QPointF>, points);
        QTEST(stickPlot(points), "corners");
    }

    void finitePointsAreKeptInTheirOrder()
    {
        using Points = QList<QPointF>;
        const Points finite{{2, 9}, {1, -largest}, {1, -3}};
        QVERIFY(finitePoints(finite).isSharedWith(finite));
        QCOMPARE(finitePoints({}), Points());
        for (const double bad : {notANumber, inf, -inf}) {
            QCOMPARE(finitePoints({{bad, 1}, {2, 9}, {1, bad}, {1, 3}, {bad, bad}}),
                     (Points{{2, 9}, {1, 3}}));
            QCOMPARE(finitePoints({{bad, 1}}), Points());
        }
    }

    void theRangeSpansAllFinitePointsAndIsRefusedIfAnAxisCannotShowIt()
    {
        const std::optional<PointRange> range = finiteRange({{2, 9}, {1, -3}, {5, 4}});
        QVERIFY(range);
        QCOMPARE(range->minX, 1.0);
        QCOMPARE(range->maxX, 5.0);
        QCOMPARE(range->minY, -3.0);
        QCOMPARE(range->maxY, 9.0);

        const std::optional<PointRange> single = finiteRange({{2, 9}});
        QVERIFY(single);
        QCOMPARE(single->minX, single->maxX);
        QCOMPARE(single->minY, single->maxY);

        QVERIFY(!finiteRange({}));
        for (const double bad : {notANumber, inf, -inf}) {
            QVERIFY(!finiteRange({{bad, 1}}));
            QVERIFY(!finiteRange({{1, bad}, {bad, bad}}));
            const std::optional<PointRange> rest =
                finiteRange({{9, bad}, {2, 5}, {bad, 9}, {1, 4}, {bad, bad}});
            QVERIFY(rest);
            QCOMPARE(rest->minX, 1.0);
            QCOMPARE(rest->maxX, 2.0);
            QCOMPARE(rest->minY, 4.0);
            QCOMPARE(rest->maxY, 5.0);
        }
        QVERIFY(!finiteRange({{-largest, 1}, {largest, 1}}));
        QVERIFY(!finiteRange({{1, -largest}, {1, largest}}));
    }
};

QTEST_GUILESS_MAIN(TestPoints)
#include "tst_points.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/axisticks.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();

// What somebody reads in a label.
double readLabel(QString label, bool *ok)
{
    static const QString superscripts = QStringLiteral("⁰¹²³⁴⁵⁶⁷⁸⁹");
    const qsizetype power = label.indexOf(QStringLiteral("×10"));
    if (power >= 0) {
        label.replace(power, 3, QStringLiteral("e"));
        label.replace(QChar(u'⁻'), QStringLiteral("-"));
        for (int digit = 0; digit < 10; ++digit)
            label.replace(superscripts[digit], QString::number(digit));
    }
    return label.toDouble(ok);
}

// The power of ten that ends a label; nothing if there is none.
QString powerIn(const QString &label)
{
    const qsizetype at = label.indexOf(u'×');
    return at < 0 ? QString() : label.sliced(at);
}

// Whether a number is 1, 2, 2.5, 5 or 10 times a power of ten, to the precision of doubles.
bool isRoundStep(double step, double noise)
{
    const double power = std::pow(10, std::floor(std::log10(step * (1 + 1e-9))));
    for (const double factor : {1.0, 2.0, 2.5, 5.0, 10.0}) {
        if (std::abs(step - factor * power) <= noise + 1e-9 * step)
            return true;
    }
    return false;
}

QByteArray said(double min, double max, const AxisTicks &ticks)
{
    const QString text = QStringLiteral("from %1 to %2: %3");
    return text.arg(min, 0, 'g', 17).arg(max, 0, 'g', 17).arg(ticks.labels.join(u' ')).toUtf8();
}

void check(double min, double max, int most = mostTicks)
{
    const AxisTicks ticks = axisTicks(min, max, most);
    const QByteArray message = said(min, max, ticks);
    const char *what = message.constData();
    const qsizetype count = ticks.values.size();
    QVERIFY2(count >= 3 && count <= 9, what);
    QVERIFY2(count <= std::max(most, 6), what);
    QCOMPARE(ticks.labels.size(), count);
    const double noise = 4 * std::max(std::abs(min), std::abs(max)) * 0x1p-52;
    for (qsizetype i = 0; i < count; ++i) {
        QVERIFY2(ticks.values[i] >= min && ticks.values[i] <= max, what);
        bool ok = false;
        QVERIFY2(readLabel(ticks.labels[i], &ok) == ticks.values[i] && ok, what);
        if (i == 0)
            continue;
        const double step = ticks.values[1] - ticks.values[0];
        QVERIFY2(ticks.values[i] > ticks.values[i - 1], what);
        QVERIFY2(std::abs(ticks.values[i] - ticks.values[i - 1] - step) <= noise, what);
        QVERIFY2(isRoundStep(step, noise), what);
        // One form for all.
        if (ticks.values[i] != 0 && ticks.values[i - 1] != 0)
            QVERIFY2(powerIn(ticks.labels[i]) == powerIn(ticks.labels[i - 1]), what);
    }
    // None is left out at the ends.
    const double step = ticks.values[1] - ticks.values[0];
    QVERIFY2(ticks.values.first() - step < min + noise, what);
    QVERIFY2(ticks.values.last() + step > max - noise, what);
}

} // namespace

class TestAxisTicks : public QObject
{
    Q_OBJECT

private slots:
    void ticksAreRoundAndLabelsNameThem_data()
    {
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::addColumn<QString>("labels");
        const auto row = [](const char *name, double min, double max, const char *labels) {
            QTest::newRow(name) << min << max << QString::fromUtf8(labels);
        };
        row("a spectrum", 9.1, 11.3, "9.25 9.50 9.75 10.00 10.25 10.50 10.75 11.00 11.25");
        row("ends that are round", 9, 10, "9.00 9.20 9.40 9.60 9.80 10.00");
        row("normalised", 0, 1000, "0.00 200.00 400.00 600.00 800.00 1000.00");
        row("zoomed in", 9.508, 9.522, "9.508 9.510 9.512 9.514 9.516 9.518 9.520 9.522");
        row("zoomed in far", 9.5123451, 9.5123459,
            "9.5123451 9.5123452 9.5123453 9.5123454 9.5123455 9.5123456 9.5123457 9.5123458 "
            "9.5123459");
        row("off by an eighth", 9.12, 9.145, "9.120 9.125 9.130 9.135 9.140 9.145");
        row("small", 0, 2.1e-5,
            "0 0.25×10⁻⁵ 0.50×10⁻⁵ 0.75×10⁻⁵ 1.00×10⁻⁵ 1.25×10⁻⁵ 1.50×10⁻⁵ 1.75×10⁻⁵ 2.00×10⁻⁵");
        row("under a thousandth", 0, 8e-4,
            "0 1×10⁻⁴ 2×10⁻⁴ 3×10⁻⁴ 4×10⁻⁴ 5×10⁻⁴ 6×10⁻⁴ 7×10⁻⁴ 8×10⁻⁴");
        row("a thousandth", 0, 1e-3, "0.0000 0.0002 0.0004 0.0006 0.0008 0.0010");
        row("smallest of the reading", 1.3e-12, 4.2e-12,
            "1.5×10⁻¹² 2.0×10⁻¹² 2.5×10⁻¹² 3.0×10⁻¹² 3.5×10⁻¹² 4.0×10⁻¹²");
        row("under a million", 0, 999'999, "0.00 200000.00 400000.00 600000.00 800000.00");
        row("large, a part", 1e12, 1.001e12,
            "1.0000×10¹² 1.0002×10¹² 1.0004×10¹² 1.0006×10¹² 1.0008×10¹² 1.0010×10¹²");
        row("large", 0, 3e6, "0 0.5×10⁶ 1.0×10⁶ 1.5×10⁶ 2.0×10⁶ 2.5×10⁶ 3.0×10⁶");
        row("negative", -3, -1, "-3.00 -2.75 -2.50 -2.25 -2.00 -1.75 -1.50 -1.25 -1.00");
        row("on both sides of zero", -0.3, 0.3, "-0.30 -0.20 -0.10 0.00 0.10 0.20 0.30");
        row("small and negative", -4e-7, 4e-7,
            "-4×10⁻⁷ -3×10⁻⁷ -2×10⁻⁷ -1×10⁻⁷ 0 1×10⁻⁷ 2×10⁻⁷ 3×10⁻⁷ 4×10⁻⁷");
        row("large, zoomed in", 1e6, 1000001,
            "1000000.00 1000000.20 1000000.40 1000000.60 1000000.80 1000001.00");
        row("sums that are no doubles", 0.1, 0.9, "0.10 0.20 0.30 0.40 0.50 0.60 0.70 0.80 0.90");
    }
    void ticksAreRoundAndLabelsNameThem()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        const AxisTicks ticks = axisTicks(min, max);
        QTEST(ticks.labels.join(u' '), "labels");
        check(min, max);
    }

    void roomForFewerTicksGivesFewer_data()
    {
        QTest::addColumn<int>("most");
        for (int most = 0; most <= 12; ++most)
            QTest::addRow("%d", most) << most;
    }
    void roomForFewerTicksGivesFewer()
    {
        QFETCH(int, most);
        check(9.1, 11.3, most);
        check(0, 1, most);
        check(-7, 5e8, most);
    }

    // Ranges of every size, anywhere from far away to around zero.
    void everyLabelIsReadAsItsTick()
    {
        QRandomGenerator random(20);
        const auto between = [&](double least, double most) {
            return least + (most - least) * random.generateDouble();
        };
        for (int i = 0; i < 50'000; ++i) {
            const double width = std::pow(10, between(-12, 12));
            const double sign = random.bounded(2) == 0 ? -1 : 1;
            const double offset = sign * width * std::pow(10, between(-2, 11.5));
            const double min = i % 4 == 0 ? -width * random.generateDouble() : offset;
            check(min, min + width, i % 3 == 0 ? int(random.bounded(12)) : mostTicks);
            if (QTest::currentTestFailed())
                return;
        }
    }

    // At round ends the last bit may add or lose a tick.
    void ticksAtTheEndsOfARangeAreThere()
    {
        for (int exponent = -12; exponent <= 12; ++exponent) {
            for (int first = -60; first <= 60; ++first) {
                for (const int width : {1, 2, 3, 4, 5, 6, 7, 8, 10, 20, 25, 40, 50, 75}) {
                    const auto value = [&](int digits) {
                        return QStringLiteral("%1e%2").arg(digits).arg(exponent).toDouble();
                    };
                    check(value(first), value(first + width));
                    if (width != 3 && width != 6 && width != 7 && width != 75)
                        QCOMPARE(axisTicks(value(0), value(width)).values.last(), value(width));
                    if (QTest::currentTestFailed())
                        return;
                }
            }
        }
    }

    void aRangeThatIsZoomedAThousandTimesKeepsItsTicks()
    {
        double min = 9.1;
        double max = 11.3;
        for (int zoom = 0; zoom < 1000; ++zoom) {
            const double width = (max - min) / 2;
            if (width > 1e-11) {
                check(min, max);
                if (QTest::currentTestFailed())
                    return;
            } else {
                QVERIFY(axisTicks(min, max).values.size() <= 9);
            }
            min += width / 3;
            max = min + width;
        }
    }

    void aRangeWithoutWidthHasItsOneValue_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("label");
        const auto row = [](const char *name, double value, const char *label) {
            QTest::newRow(name) << value << QString::fromUtf8(label);
        };
        row("zero", 0, "0.00");
        row("short", 10.5, "10.50");
        row("long", 10.123456, "10.123456");
        row("a sum", 0.1 + 0.2, "0.30000000000000004");
        row("negative", -3, "-3.00");
        row("round", 500, "500.00");
        row("small", -2.5e-7, "-2.5×10⁻⁷");
        row("large", 1e20, "1×10²⁰");
        row("smallest", 5e-324, "5×10⁻³²⁴");
    }
    void aRangeWithoutWidthHasItsOneValue()
    {
        QFETCH(double, value);
        QFETCH(QString, label);
        const AxisTicks ticks = axisTicks(value, value);
        QCOMPARE(ticks.values.size(), 1);
        QVERIFY(ticks.values.first() == value);
        QCOMPARE(ticks.labels, QStringList{label});
    }

    void aRangeThatIsNotFiniteHasNoTicks_data()
    {
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::newRow("backwards") << 2.0 << 1.0;
        QTest::newRow("not a number") << std::nan("") << 1.0;
        QTest::newRow("to no number") << 1.0 << std::nan("");
        QTest::newRow("to infinity") << 0.0 << infinity;
        QTest::newRow("infinite") << infinity << infinity;
        QTest::newRow("from infinity") << -infinity << 0.0;
        QTest::newRow("wider than a double") << -1e308 << 1e308;
    }
    void aRangeThatIsNotFiniteHasNoTicks()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        QVERIFY(axisTicks(min, max).values.isEmpty());
        QVERIFY(axisTicks(min, max).labels.isEmpty());
    }

    void theEdgesOfDoublesAreBorne_data()
    {
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::newRow("smallest") << 0.0 << 5e-324;
        QTest::newRow("denormal") << 1e-310 << 3e-310;
        QTest::newRow("smallest normal") << 0.0 << 2.3e-308;
        QTest::newRow("largest") << 0.0 << 1.7e308;
        QTest::newRow("hugely negative") << -1.7e308 << 0.0;
        QTest::newRow("neighbours") << 1.0 << std::nextafter(1.0, 2);
        QTest::newRow("neighbours of a million") << 1e6 << std::nextafter(1e6, 2e6);
        QTest::newRow("huge neighbours") << 1e300 << std::nextafter(1e300, infinity);
    }
    void theEdgesOfDoublesAreBorne()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        const AxisTicks ticks = axisTicks(min, max);
        QVERIFY(ticks.values.size() <= 9);
        QCOMPARE(ticks.labels.size(), ticks.values.size());
        for (qsizetype i = 0; i < ticks.values.size(); ++i) {
            bool ok = false;
            QVERIFY(ticks.values[i] >= min && ticks.values[i] <= max);
            QCOMPARE(readLabel(ticks.labels[i], &ok), ticks.values[i]);
        }
    }
};

QTEST_APPLESS_MAIN(TestAxisTicks)
#include "tst_axisticks.moc"

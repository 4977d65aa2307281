// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"
#include "testconsole.h"
#include "testfiles.h"

#include <QDir>
#include <QImage>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace
{

const QByteArray furan = ZORAVEL_EXAMPLES "/furan.json"; // 1 a curve, 2 sticks, 3 a curve
const QByteArray water = ZORAVEL_EXAMPLES "/water.json"; // two curves

// How many columns of the picture's middle half have the colour of the series in this row.
int curvePixels(const QImage &image, int row)
{
    int count = 0;
    for (int x = image.width() / 4; x < image.width() * 3 / 4; ++x) {
        const QColor colour = image.pixelColor(x, row);
        count += colour.blue() > colour.red() + 60 ? 1 : 0;
    }
    return count;
}

// The least rectangle with all pixels of a kind.
template <typename Kind>
QRect extentOf(const QImage &image, Kind &&kind)
{
    QRect extent;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (kind(image.pixelColor(x, y)))
                extent |= QRect(x, y, 1, 1);
        }
    }
    return extent;
}

} // namespace

// zoravel plot.
class TestCliPlot : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
    }

    void aPictureHasTheSizeAndResolutionAskedFor()
    {
        QVERIFY(plots({"-o", "a.png", "-s", "1", furan}));
        QCOMPARE(QImage(QStringLiteral("a.png")).size(), QSize(800, 500));
        QVERIFY(plots({"-o", "a.png", "-s", "1", "--size", "300x200", "--dpi", "192", furan}));
        const QImage fine(QStringLiteral("a.png"));
        QCOMPARE(fine.size(), QSize(600, 400));
        QCOMPARE(fine.dotsPerMeterX(), 7559);
    }

    void theChartShowsItsAxesAndItsPoints()
    {
        QVERIFY(plots({"-o", "curve.png", "-s", "1", furan}));
        QVERIFY(plots({"-o", "sticks.png", "-s", "2", furan}));
        const QImage curve(QStringLiteral("curve.png"));
        const QImage sticks(QStringLiteral("sticks.png"));
        QVERIFY(curve != sticks);
        // Dark text left of the plot and below it, and the series' colour within.
        for (const QImage &image : {curve, sticks}) {
            QVERIFY(hasDark(image, QRect(0, 100, 60, 300)));
            QVERIFY(hasDark(image, QRect(300, 470, 200, 30)));
            int coloured = 0;
            for (int row = 0; row < image.height(); ++row)
                coloured += curvePixels(image, row);
            QVERIFY(coloured > 300);
        }
    }

    void theRangeIsWhatIsShown()
    {
        QVERIFY(plots({"-o", "all.png", "-s", "1", furan}));
        QVERIFY(plots({"-o", "part.png", "-s", "1", "--range", "8.8:9", furan}));
        QVERIFY(QImage(QStringLiteral("all.png")) != QImage(QStringLiteral("part.png")));
    }

    void aTwentiethOfRoomIsAroundTheCurve()
    {
        writeFile(QStringLiteral("a.json"),
                  R"({"Type": "Spectrum v1", "E": [9, 9.5, 10], "I": [0, 1000, 200]})");
        QVERIFY(plots({"-o", "a.png", "--size", "1600x1000", "a.json"}));
        const auto extent = [](const QString &name) {
            const QImage image(name);
            return extentOf(image.copy(0, 0, image.width(), image.height() - 45),
                            [](const QColor &c) { return c.blue() > c.red() + 60; });
        };
        const QRect curve = extent(QStringLiteral("a.png"));
        // A range of energies is exact.
        QVERIFY(plots({"-o", "b.png", "--size", "1600x1000", "--range", "9:10", "a.json"}));
        const double wider = double(extent(QStringLiteral("b.png")).width()) / curve.width();
        QVERIFY2(wider > 1.09 && wider < 1.11, qPrintable(QString::number(wider)));
        // The plot is about 950 pixels high.
        QVERIFY2(std::abs(curve.top() - 55) < 12, qPrintable(QString::number(curve.top())));
        QVERIFY2(std::abs(curve.height() - 950 / 1.1) < 15,
                 qPrintable(QString::number(curve.height())));
    }

    void aCurveOfOneIntensityIsDrawn()
    {
        writeFile(QStringLiteral("a.json"),
                  R"({"Type": "Spectrum v1", "E": [9, 10], "I": [5, 5]})");
        QVERIFY(plots({"-o", "a.png", "a.json"}));
        const QImage image(QStringLiteral("a.png"));
        int coloured = 0;
        for (int row = 0; row < image.height(); ++row)
            coloured += curvePixels(image, row);
        QVERIFY(coloured > 300);
    }

    void labelsAreThoseOfTheEditor()
    {
        writeFile(QStringLiteral("a.json"),
                  R"({"Type": "Spectrum v1", "E": [9.12, 9.13, 9.145], "I": [1e-5, 3e-5, 2e-5]})");
        QVERIFY(plots({"-o", "a.svg", "--range", "9.12:9.145", "a.json"}));
        const QByteArray svg = fileBytes(QStringLiteral("a.svg"));
        for (const char *label : {"9.125", "9.130", "9.145", "1.25×10⁻⁵", "2.00×10⁻⁵"})
            QVERIFY2(svg.contains(label), label);
    }

    void aTitleStandsAboveTheChartOnRequest()
    {
        writeFile(QStringLiteral("a.json"), R"({"Type": "Spectrum v1", "E": [9, 10], "I": [1, 5],
            "Title": "Water <i>vapour</i>, H<sub>2</sub>O"})");
        QVERIFY(plots({"-o", "a.svg", "a.json"}));
        QVERIFY(!fileBytes(QStringLiteral("a.svg")).contains("vapour"));
        QVERIFY(plots({"-o", "a.svg", "--title", "%t at 300 K, 5 %%t", "a.json"}));
        const QByteArray svg = fileBytes(QStringLiteral("a.svg"));
        QVERIFY(svg.contains("vapour") && svg.contains(" at 300 K, 5 %t"));
        QVERIFY(!svg.contains("sub&gt;") && !svg.contains("i&gt;"));
        // The title takes its room from the chart.
        QVERIFY(plots({"-o", "without.png", "a.json"}));
        QVERIFY(plots({"-o", "with.png", "--title", "%t", "a.json"}));
        QVERIFY(!hasDark(QImage(QStringLiteral("without.png")), QRect(300, 2, 200, 18)));
        QVERIFY(hasDark(QImage(QStringLiteral("with.png")), QRect(300, 2, 200, 18)));
    }

    void aRangeWithoutAnythingToShowIsSaid()
    {
        writeFile(QStringLiteral("curve.json"),
                  R"({"Type": "Spectrum v1", "E": [10.2, 9.1, 9.5], "I": [1, 2, 1]})");
        writeFile(QStringLiteral("sticks.json"), R"({"Type": "Spectrum v1", "LineSpectrum": true,
            "E": [9.1, 9.5, 10.2], "I": [1, 2, 1]})");
        TestConsole console;
        for (const QByteArray &file : {QByteArray("curve.json"), QByteArray("sticks.json")}) {
            for (const QByteArray &range : {QByteArray("1:2"), QByteArray("10.3:11")}) {
                QCOMPARE(console.run({"plot", "-o", "a.png", "--range", range, file}), 3);
                QCOMPARE(console.errors, "zoravel: " + file
                                             + ": spectrum 1: no point lies in the range " + range
                                             + "; the points are from 9.1 to 10.2 eV\n");
                QVERIFY(!QFile::exists(QStringLiteral("a.png")));
            }
            for (const char *range : {"1:9.1", "10.2:11", "9.4:9.6", "1:100"})
                QVERIFY(plots({"-o", "b.png", "--range", range, file}));
        }
        // A curve passes between two points, sticks do not.
        QVERIFY(plots({"-o", "c.png", "--range", "9.2:9.3", "curve.json"}));
        const QImage between(QStringLiteral("c.png"));
        int coloured = 0;
        for (int row = 0; row < between.height(); ++row)
            coloured += curvePixels(between, row);
        QVERIFY(coloured > 300);
        QCOMPARE(console.run({"plot", "-o", "d.png", "--range", "9.2:9.3", "sticks.json"}), 3);
        // Of several the others are drawn.
        QCOMPARE(console.run(
                     {"plot", "-o", "n%n.png", "--range", "9.2:9.3", "sticks.json", "curve.json"}),
                 3);
        QVERIFY(!QFile::exists(QStringLiteral("n1.png"))
                && QFile::exists(QStringLiteral("n2.png")));
    }

    void whatIsWrongWithARangeIsSaid_data()
    {
        QTest::addColumn<QByteArray>("range");
        QTest::addColumn<QByteArray>("error");
        const QByteArray form = "--range needs two energies in eV, as 9.2:10.5";
        QTest::newRow("one") << QByteArray("9") << form;
        QTest::newRow("three") << QByteArray("9:10:11") << form;
        QTest::newRow("text") << QByteArray("a:b") << form;
        QTest::newRow("order")
            << QByteArray("9.6:9.2")
            << QByteArray("--range 9.6:9.2 is in the wrong order: the lower energy comes first");
        QTest::newRow("equal") << QByteArray("9.2:9.2")
                               << QByteArray("--range 9.2:9.2 has the same energy twice");
    }
    void whatIsWrongWithARangeIsSaid()
    {
        QFETCH(QByteArray, range);
        QFETCH(QByteArray, error);
        TestConsole console;
        QCOMPARE(console.run({"plot", "-o", "a.png", "--range", range, furan}), 2);
        QCOMPARE(console.errors, "zoravel plot: " + error + "\nSee \"zoravel plot --help\".\n");
    }

    void vectorPicturesAreSound()
    {
        QVERIFY(plots({"-o", "a.svg", "-s", "2", furan}));
        QSvgRenderer renderer(QStringLiteral("a.svg"));
        QVERIFY(renderer.isValid());
        QCOMPARE(renderer.viewBox(), QRect(0, 0, 800, 500));
        QVERIFY(fileBytes(QStringLiteral("a.svg")).contains("eV"));
        QCOMPARE(renderer.defaultSize(), QSize(800, 500));
        QVERIFY(fileBytes(QStringLiteral("a.svg")).contains("<svg width=\"800\" height=\"500\" "));
        QVERIFY(plots({"-o", "a.pdf", "-s", "2", furan}));
        const QByteArray pdf = fileBytes(QStringLiteral("a.pdf"));
        QVERIFY(pdf.startsWith("%PDF-") && pdf.contains("/MediaBox [0 0 600.000000 375.000000]"));
    }

    void picturesAreNumberedInTheOrderOfTheSpectra()
    {
        QVERIFY(plots({"-o", "p%n-%%.png", "-s", "all", furan, water}));
        QCOMPARE(QDir().entryList(QDir::Files),
                 (QStringList{QStringLiteral("p1-%.png"), QStringLiteral("p2-%.png"),
                              QStringLiteral("p3-%.png"), QStringLiteral("p4-%.png"),
                              QStringLiteral("p5-%.png")}));
        QVERIFY(plots({"-o", "third.png", "-s", "3", furan}));
        QCOMPARE(fileBytes(QStringLiteral("third.png")), fileBytes(QStringLiteral("p3-%.png")));
    }

    void withoutAPlaceForTheNumberThereIsNoPictureOfSeveral()
    {
        TestConsole console;
        QCOMPARE(console.run({"plot", "-o", "a.png", "-s", "all", furan}), 3);
        QCOMPARE(console.errors,
                 "zoravel: " + furan + ": OUT needs a %n for more than one picture\n");
        QVERIFY(QDir().isEmpty());
    }

    void whyAPictureCannotBeWrittenIsSaid()
    {
        TestConsole console;
        QCOMPARE(console.run({"plot", "-o", "none/a.png", "-s", "1", furan}), 3);
        QCOMPARE(console.errors,
                 "zoravel: none/a.png: cannot be written: there is no such folder\n");
        QVERIFY(QDir().mkdir(QStringLiteral("b.png")));
        QCOMPARE(console.run({"plot", "-o", "b.png", "-s", "1", furan}), 3);
        QCOMPARE(console.errors, "zoravel: b.png: cannot be written: it is a folder\n");
    }

    void whatCannotBeDrawnIsSaid_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("error");
        QTest::newRow("no spectrum")
            << QByteArray(R"({"Type": "Species v1"})") << QByteArray("there is no spectrum");
        QTest::newRow("no points") << QByteArray(R"({"Type": "Spectrum v1"})")
                                   << QByteArray("spectrum 1: there is nothing to draw");
        QTest::newRow("no range") << QByteArray(
            R"({"Type": "Spectrum v1", "E": [-1e308, 1e308], "I": [1, 2]})")
                                  << QByteArray("spectrum 1: there is nothing to draw");
        QTest::newRow("other file")
            << QByteArray("{}") << QByteArray("neither a species nor a spectrum file");
    }
    void whatCannotBeDrawnIsSaid()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, error);
        writeFile(QStringLiteral("in.json"), bytes);
        TestConsole console;
        QCOMPARE(console.run({"plot", "-o", "a.png", "in.json"}), 3);
        QCOMPARE(console.errors, "zoravel: in.json: " + error + '\n');
        QVERIFY(!QFile::exists(QStringLiteral("a.png")));
    }

    void wrongUsageIsRefused_data()
    {
        QTest::addColumn<QByteArrayList>("words");
        for (const QByteArrayList &words :
             QList<QByteArrayList>{{furan},
                                   {"-o", "a.png"},
                                   {"-o", "a.gif", furan},
                                   {"-o", "a.png", "--size", "10x10", furan},
                                   {"-o", "a.png", "--size", "800", furan},
                                   {"-o", "a.png", "--size", "20000x20000", "--dpi", "2400", furan},
                                   {"-o", "a.png", "--dpi", "0", furan},
                                   {"-o", "a.png", "--range", "10:9", furan},
                                   {"-o", "a.png", "--range", "9", furan},
                                   {"-o", "a.png", "-s", "x", furan},
                                   {"-o", "a.png", furan, furan}})
            QTest::newRow(words.join(' ').constData()) << words;
    }
    void wrongUsageIsRefused()
    {
        QFETCH(QByteArrayList, words);
        TestConsole console;
        QCOMPARE(console.run(QByteArrayList{"plot"} + words), 2);
        QVERIFY(console.errors.endsWith("See \"zoravel plot --help\".\n"));
        QVERIFY(!QFile::exists(QStringLiteral("a.png")));
    }

private:
    static bool plots(const QByteArrayList &words)
    {
        TestConsole console;
        const int status = console.run(QByteArrayList{"plot"} + words);
        return status == 0 && console.errors.isEmpty() && console.output.isEmpty();
    }

    static bool hasDark(const QImage &image, const QRect &area)
    {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                if (qGray(image.pixel(x, y)) < 100)
                    return true;
            }
        }
        return false;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestCliPlot)
#include "tst_cli_plot.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/interfacescale.h"

#include "app/mainwindow.h"
#include "support/warnings.h"

#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QDialog>
#include <QFile>
#include <QFontInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QValueAxis>

#include <memory>

// These tests run on a plain screen A and a screen B of twice the resolution. Other screens and
// settings belong to processes that report what they see.

namespace
{

constexpr char scaleVariable[] = "QT_SCALE_FACTOR";
constexpr char factorsVariable[] = "QT_SCREEN_SCALE_FACTORS";

// A screen of the offscreen platform: Qt multiplies with dpi / 96, the window system with
// dpr.
QJsonObject screenOf(const QString &name, int x, int dpi, double dpr = 1)
{
    return {{QStringLiteral("name"), name},
            {QStringLiteral("x"), x},
            {QStringLiteral("y"), 0},
            {QStringLiteral("width"), 3000},
            {QStringLiteral("height"), 2000},
            {QStringLiteral("logicalDpi"), dpi},
            {QStringLiteral("logicalBaseDpi"), 96},
            {QStringLiteral("dpr"), dpr}};
}

void useScreens(const QString &file, const QJsonArray &screens)
{
    QFile config(file);
    if (!config.open(QIODevice::WriteOnly))
        qFatal("cannot write the screens");
    config.write(QJsonDocument(QJsonObject{{QStringLiteral("screens"), screens}}).toJson());
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(file));
}

// Goes through the list like Qt when the screen of this name is at this place.
double factorFor(const QByteArray &list, const QByteArray &name, qsizetype place)
{
    double factor = 0;
    const QList<QByteArray> entries = list.split(';');
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const qsizetype equals = entries[i].lastIndexOf('=');
        if (equals < 0 ? i == place : entries[i].left(equals) == name)
            factor = entries[i].mid(equals + 1).toDouble();
    }
    return factor;
}

// What main() does, for other screens: the ratios at which Qt draws, whether the interface
// is shrunk, and the height of its font in pixels on the screen.
int report(int argc, char **argv)
{
    const InterfaceShrink shrink = prepareScreens(argc, argv);
    const QApplication application(argc, argv);
    shrinkInterface(shrink);
    QJsonArray ratios;
    for (const QScreen *screen : QGuiApplication::screens())
        ratios.append(screen->devicePixelRatio());
    const double pixels = QFontInfo(QApplication::font()).pixelSize()
                          * QGuiApplication::primaryScreen()->devicePixelRatio();
    const QJsonObject result{{QStringLiteral("ratios"), ratios},
                             {QStringLiteral("shrunk"), shrink.needed},
                             {QStringLiteral("font"), pixels}};
    QFile out;
    return out.open(stdout, QIODevice::WriteOnly) && out.write(QJsonDocument(result).toJson()) > 0
               ? EXIT_SUCCESS
               : EXIT_FAILURE;
}

// A dialog like one from a form of the program.
class FormDialog : public QDialog
{
    Q_OBJECT

public:
    FormDialog()
    {
        setObjectName(QStringLiteral("FormDialog"));
        resize(724, 495);
    }
};

} // namespace

class TestInterfaceScale : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void everyScreenIsDrawnAtItsOwnRatioOrAtTheScaledOne_data()
    {
        QTest::addColumn<QList<ScreenRatio>>("screens");
        QTest::addColumn<bool>("shrunk");
        QTest::addColumn<QList<double>>("drawn");
        const QString a = QStringLiteral("A");
        const QString b = QStringLiteral("B");
        using Screens = QList<ScreenRatio>;
        using Ratios = QList<double>;
        QTest::newRow("plain") << Screens{{a, 1, 1}} << true << Ratios{1};
        QTest::newRow("double") << Screens{{a, 2, 2}} << false << Ratios{1.7};
        QTest::newRow("plain and double") << Screens{{a, 1, 1}, {b, 2, 2}} << true << Ratios{1, 2};
        QTest::newRow("double and plain") << Screens{{b, 2, 2}, {a, 1, 1}} << true << Ratios{2, 1};
        QTest::newRow("a little too small") << Screens{{a, 1.17, 1.17}} << true << Ratios{1.17};
        QTest::newRow("just enough") << Screens{{a, 1.18, 1.18}} << false << Ratios{1.003};
        QTest::newRow("three quarters") << Screens{{a, 0.75, 0.75}} << true << Ratios{1};
        QTest::newRow("double by the window system") << Screens{{a, 2, 1}} << false << Ratios{1.7};
        QTest::newRow("mixed by the window system")
            << Screens{{a, 2, 1}, {b, 1, 1}} << true << Ratios{2, 1};
        QTest::newRow("by both") << Screens{{a, 3, 1.5}} << false << Ratios{2.55};
        QTest::newRow("without names") << Screens{{{}, 1, 1}, {{}, 2, 2}} << true << Ratios{1, 2};
        QTest::newRow("a name with an equals sign")
            << Screens{{QStringLiteral("A=1"), 2, 2}} << false << Ratios{1.7};
    }
    void everyScreenIsDrawnAtItsOwnRatioOrAtTheScaledOne()
    {
        QFETCH(QList<ScreenRatio>, screens);
        QFETCH(QList<double>, drawn);
        QTEST(needsShrinking(screens), "shrunk");
        const QByteArray list = screenScaleFactors(screens);
        for (qsizetype i = 0; i < screens.size(); ++i) {
            const double system = screens[i].ratio / screens[i].ownFactor;
            const QByteArray name = screens[i].name.toLocal8Bit();
            QCOMPARE(factorFor(list, name, i) * system * interfaceScale, drawn[i]);
            // A screen with a name keeps its ratio when others come before it.
            if (!name.isEmpty())
                QCOMPARE(factorFor(list, name, i + 3) * system * interfaceScale, drawn[i]);
        }
    }

    void screensThatComeLaterCanBeDrawn_data()
    {
        QTest::addColumn<QList<ScreenRatio>>("screens");
        QTest::addColumn<double>("drawn"); // a later screen without a ratio of the window system
        const QString a = QStringLiteral("A");
        const QString b = QStringLiteral("B");
        using Screens = QList<ScreenRatio>;
        QTest::newRow("no screen yet") << Screens{} << 1.0;
        QTest::newRow("plain") << Screens{{a, 1, 1}} << 1.0;
        QTest::newRow("double") << Screens{{a, 2, 2}} << 1.7;
        QTest::newRow("mixed") << Screens{{b, 2, 2}, {a, 1, 1}} << 1.0;
        QTest::newRow("double by the window system") << Screens{{a, 2, 1}} << 1.0;
        QTest::newRow("a name with a semicolon") << Screens{{QStringLiteral("A;B"), 2, 2}} << 1.7;
    }
    void screensThatComeLaterCanBeDrawn()
    {
        QFETCH(QList<ScreenRatio>, screens);
        QFETCH(double, drawn);
        const QByteArray list = screenScaleFactors(screens);
        for (qsizetype place = 0; place < screens.size() + 16; ++place)
            QCOMPARE(factorFor(list, "later", place) * interfaceScale, drawn);
    }

    void theApplicationDrawsAtTheRatiosOfItsScreens()
    {
        const QList<QScreen *> screens = QGuiApplication::screens();
        QCOMPARE(screens.size(), 2);
        QCOMPARE(screens[0]->devicePixelRatio(), 1.0);
        QCOMPARE(screens[0]->size(), QSize(3000, 2000));
        QCOMPARE(screens[1]->devicePixelRatio(), 2.0);
        QCOMPARE(screens[1]->size(), QSize(1500, 1000));
    }

    void theEnvironmentIsLeftForTheApplication()
    {
        QCOMPARE(qgetenv(scaleVariable), QByteArray("0.85"));
        QCOMPARE(qgetenv("DESKTOP_STARTUP_ID"), QByteArray("startup"));
        QCOMPARE(qgetenv("SESSION_MANAGER"), QByteArray("session"));
        QVERIFY(!qEnvironmentVariableIsSet("QT_ENABLE_HIGHDPI_SCALING"));
    }

    void settingsOfTheUserNeitherBreakTheDrawingNorTheText_data()
    {
        QTest::addColumn<QJsonArray>("screens");
        QTest::addColumn<QByteArrayList>("settings"); // NAME=value
        QTest::addColumn<QList<double>>("drawn");
        QTest::addColumn<bool>("shrunk");
        QTest::addColumn<double>("font"); // height in pixels of the screen; 12 at 96 dpi
        const QJsonArray plain{screenOf(QStringLiteral("A"), 0, 96)};
        const QJsonArray twice{screenOf(QStringLiteral("A"), 0, 192)};
        const QJsonArray system{screenOf(QStringLiteral("A"), 0, 96, 2)};
        const QJsonArray mixedSystem{screenOf(QStringLiteral("A"), 0, 96, 2),
                                     screenOf(QStringLiteral("B"), 3000, 96)};
        using Settings = QByteArrayList;
        using Ratios = QList<double>;
        QTest::newRow("plain") << plain << Settings{} << Ratios{1} << true << 10.0;
        QTest::newRow("double") << twice << Settings{} << Ratios{1.7} << false << 20.4;
        QTest::newRow("double by the window system")
            << system << Settings{} << Ratios{1.7} << false << 20.4;
        QTest::newRow("mixed by the window system")
            << mixedSystem << Settings{} << Ratios{2, 1} << true << 20.0;
        QTest::newRow("another scale")
            << plain << Settings{"QT_SCALE_FACTOR=3"} << Ratios{1} << true << 10.0;
        QTest::newRow("factor 2") << plain << Settings{"QT_SCREEN_SCALE_FACTORS=2"} << Ratios{1.7}
                                  << false << 20.4;
        QTest::newRow("factor 2 by name")
            << plain << Settings{"QT_SCREEN_SCALE_FACTORS=A=2"} << Ratios{1.7} << false << 20.4;
        QTest::newRow("factor below 1")
            << plain << Settings{"QT_SCREEN_SCALE_FACTORS=0.5"} << Ratios{1} << true << 10.0;
        QTest::newRow("factor 1, which Qt ignores")
            << twice << Settings{"QT_SCREEN_SCALE_FACTORS=1"} << Ratios{1.7} << false << 20.4;
        QTest::newRow("factors that are none")
            << plain << Settings{"QT_SCREEN_SCALE_FACTORS=;A=;x;B=-1;=;"} << Ratios{1} << true
            << 10.0;
        QTest::newRow("no high-resolution scaling")
            << plain << Settings{"QT_ENABLE_HIGHDPI_SCALING=0"} << Ratios{1} << true << 10.0;
        QTest::newRow("no high-resolution scaling on a double screen")
            << twice << Settings{"QT_ENABLE_HIGHDPI_SCALING=0"} << Ratios{1} << true << 20.0;
        QTest::newRow("large fonts")
            << plain << Settings{"QT_FONT_DPI=192"} << Ratios{1.7} << false << 20.4;
        QTest::newRow("small fonts")
            << plain << Settings{"QT_FONT_DPI=72"} << Ratios{1} << true << 9.0;
        QTest::newRow("rounded ratios")
            << QJsonArray{screenOf(QStringLiteral("A"), 0, 120)}
            << Settings{"QT_SCALE_FACTOR_ROUNDING_POLICY=Round"} << Ratios{1} << true << 13.0;
    }
    void settingsOfTheUserNeitherBreakTheDrawingNorTheText()
    {
        QFETCH(QJsonArray, screens);
        QFETCH(QByteArrayList, settings);
        QFETCH(QList<double>, drawn);
        QFETCH(double, font);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QString::fromLatin1(scaleVariable));
        environment.remove(QString::fromLatin1(factorsVariable));
        for (const QByteArray &setting : settings) {
            const qsizetype equals = setting.indexOf('=');
            environment.insert(QString::fromLatin1(setting.left(equals)),
                               QString::fromLatin1(setting.mid(equals + 1)));
        }
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--report"),
                       QString::fromUtf8(QJsonDocument(screens).toJson(QJsonDocument::Compact))});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), EXIT_SUCCESS);

        const QJsonObject seen = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
        const QJsonArray ratios = seen.value(QLatin1String("ratios")).toArray();
        QCOMPARE(ratios.size(), drawn.size());
        for (qsizetype i = 0; i < drawn.size(); ++i)
            QCOMPARE(ratios[i].toDouble(), drawn[i]);
        QTEST(seen.value(QLatin1String("shrunk")).toBool(), "shrunk");
        QCOMPARE(seen.value(QLatin1String("font")).toDouble(), font);
    }

    void metricsOfTheStyleAreShrunk_data()
    {
        QTest::addColumn<QStyle::PixelMetric>("metric");
        QTest::addColumn<int>("full");
        QTest::addColumn<int>("shrunk");
        QTest::newRow("icons in menus") << QStyle::PM_SmallIconSize << 16 << 14;
        QTest::newRow("scroll bars") << QStyle::PM_ScrollBarExtent << 14 << 12;
        QTest::newRow("layout margins") << QStyle::PM_LayoutLeftMargin << 9 << 8;
        QTest::newRow("icons of messages") << QStyle::PM_MessageBoxIconSize << 48 << 41;
        QTest::newRow("a line stays visible") << QStyle::PM_DefaultFrameWidth << 1 << 1;
        QTest::newRow("nothing stays nothing") << QStyle::PM_MenuVMargin << 0 << 0;
        QTest::newRow("a sign stays what it means") << QStyle::PM_MaximumDragDistance << -1 << -1;
    }
    void metricsOfTheStyleAreShrunk()
    {
        QFETCH(QStyle::PixelMetric, metric);
        const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
        QTEST(fusion->pixelMetric(metric), "full");
        QTEST(QApplication::style()->pixelMetric(metric), "shrunk");
    }

    void spacingsOfLayoutsAreShrunk()
    {
        const auto spacing = [](const QStyle &style) {
            return style.layoutSpacing(QSizePolicy::Label, QSizePolicy::LineEdit, Qt::Horizontal);
        };
        // A style that answers for pairs of widgets, as some desktops' styles do.
        class Spacious : public QProxyStyle
        {
        public:
            int layoutSpacing(QSizePolicy::ControlType, QSizePolicy::ControlType, Qt::Orientation,
                              const QStyleOption *, const QWidget *) const override
            {
                return 20;
            }
        };
        ShrinkingStyle style;
        QCOMPARE(spacing(style), -1); // Fusion leaves it to its metrics
        style.setBaseStyle(new Spacious);
        QCOMPARE(spacing(style), 17);
    }

    void aButtonIsAsWideAsItsTextAndAsTheShrunkLeastWidth()
    {
        QPushButton button(QStringLiteral("OK"));
        QCOMPARE(button.sizeHint().width(), 68); // of 80
        button.setText(QString(60, QLatin1Char('M')));
        QVERIFY(button.sizeHint().width() > button.fontMetrics().horizontalAdvance(button.text()));
    }

    void theMainWindowHasItsInitialSizeShrunk()
    {
        MainWindow window;
        window.show();
        QCOMPARE(window.size(), QSize(1081, 742)); // of 1272 x 873
        QCOMPARE(window.iconSize(), QSize(14, 14));
    }

    void sizesThatFormsFixAreShrunkOnce()
    {
        MainWindow window;
        window.show();
        const auto *image = window.findChild<QLabel *>(QStringLiteral("imageLabel"));
        const auto *heading = window.findChild<QLabel *>(QStringLiteral("label_11"));
        const auto *energy = window.findChild<QTextEdit *>(QStringLiteral("lineEditAIE"));
        const auto check = [&] {
            QCOMPARE(image->minimumSize(), QSize(170, 128)); // of 200 x 150
            QCOMPARE(image->maximumSize(), QSize(17000, 128));
            QCOMPARE(heading->maximumSize(), QSize(55, QWIDGETSIZE_MAX));
            QCOMPARE(energy->maximumWidth(), 51);
            QCOMPARE(window.size(), QSize(1081, 742));
        };
        check();
        window.hide();
        window.setStyleSheet(QStringLiteral("QLabel { color: black; }"));
        window.show();
        check();
    }

    void oneLineEditorsAreAsHighAsTheirFontNeeds()
    {
        MainWindow window;
        window.show();
        const auto *editor = window.findChild<QTextEdit *>(QStringLiteral("lineEditSpecies"));
        const int needed = static_cast<int>(editor->document()->size().height()) + 5;
        QCOMPARE(editor->height(), needed);
        QVERIFY(needed > 15);
    }

    void spectrumWindowsThatComeLaterAreShrunk()
    {
        MainWindow window;
        window.show();
        window.createNewSpectrumWindow();
        const auto *area = window.findChild<QMdiArea *>();
        const auto *view = area->subWindowList().constFirst()->findChild<QChartView *>();
        QCOMPARE(view->minimumHeight(), 170); // of 200
        for (const QAbstractAxis *axis : view->chart()->axes()) {
            QCOMPARE(axis->labelsFont().pointSizeF(), QApplication::font().pointSizeF());
            QCOMPARE(axis->titleFont().pointSizeF(), QApplication::font().pointSizeF());
        }
    }

    void aChartsMarginsAreShrunk()
    {
        FormDialog form;
        auto *view = new QChartView(&form);
        view->setObjectName(QStringLiteral("view"));
        view->chart()->setMargins(QMargins(20, 20, 20, 20));
        form.show();
        QCOMPARE(view->chart()->margins(), QMargins(17, 17, 17, 17));
    }

    void dialogsOfTheProgramAreShrunkAndThoseOfQtAreNot()
    {
        FormDialog form;
        form.show();
        QCOMPARE(form.size(), QSize(615, 421));

        QDialog qtDialog;
        qtDialog.setObjectName(QStringLiteral("dialog"));
        qtDialog.setMinimumWidth(100);
        qtDialog.resize(724, 495);
        qtDialog.show();
        QCOMPARE(qtDialog.minimumWidth(), 100);
        QCOMPARE(qtDialog.size(), QSize(724, 495));
    }

    void theApplicationsFontIsShrunk()
    {
        QCOMPARE(QApplication::font().pointSizeF(), 9 * interfaceScale);
        QCOMPARE(QApplication::font("QMenu").pointSizeF(), 9 * interfaceScale);
    }
};

int main(int argc, char **argv)
{
    const QTemporaryDir folder;
    const QString screens = folder.filePath(QStringLiteral("screens.json"));
    if (argc == 3 && qstrcmp(argv[1], "--report") == 0) {
        useScreens(screens, QJsonDocument::fromJson(argv[2]).array());
        qputenv(scaleVariable, "0.85");
        return report(argc, argv);
    }
    useScreens(screens,
               {screenOf(QStringLiteral("A"), 0, 96), screenOf(QStringLiteral("B"), 3000, 192)});
    qputenv(scaleVariable, "0.85");
    qputenv("DESKTOP_STARTUP_ID", "startup");
    qputenv("SESSION_MANAGER", "session");
    qunsetenv("QT_ENABLE_HIGHDPI_SCALING");
    qunsetenv(factorsVariable);
    const InterfaceShrink shrink = prepareScreens(argc, argv);
    const QApplication application(argc, argv);
    shrinkInterface(shrink);
    TestInterfaceScale test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_interfacescale.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
// Everything by keyboard: where Tab goes, what the chart and the image do with keys, and whether
// the focus is visible.
#include "files/jsonfile.h"
#include "spectrum/spectrumchartview.h"
#include "spectrum/spectrumwindow.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QChart>
#include <QClipboard>
#include <QFocusFrame>
#include <QImage>
#include <QJsonArray>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QValueAxis>

#include <utility>

namespace
{

const QStringList speciesStops{
    QStringLiteral("lineEditSpecies"), QStringLiteral("textEditAliases"),
    QStringLiteral("lineEditMass"),    QStringLiteral("lineEditSumFormula"),
    QStringLiteral("lineEditInChI"),   QStringLiteral("lineEditCAS"),
    QStringLiteral("buttonDownload"),  QStringLiteral("lineEditCID"),
    QStringLiteral("lineEditAIE"),     QStringLiteral("lineEditAIEComment"),
    QStringLiteral("lineEditVIE"),     QStringLiteral("lineEditVIEComment"),
    QStringLiteral("imageLabel"),      QStringLiteral("Select Folder"),
    QStringLiteral("Previous File"),   QStringLiteral("Next File"),
};

const QStringList spectrumStops{
    QStringLiteral("tabs"),
    QStringLiteral("lineEditTitle"),
    QStringLiteral("lineEditUploader"),
    QStringLiteral("lineEditSpectDOI"),
    QStringLiteral("comboBoxType"),
    QStringLiteral("textEditCitations"),
    QStringLiteral("lineEditSource"),
    QStringLiteral("lineEditSourceT"),
    QStringLiteral("lineEditResolution"),
    QStringLiteral("lineEditFlux"),
    QStringLiteral("lineEditFacilityDate"),
    QStringLiteral("textEditComments"),
    QStringLiteral("checkBoxLineSpectrum"),
    QStringLiteral("buttonNormalize"),
    QStringLiteral("buttonSparse"),
    QStringLiteral("buttonCommaToDot"),
    QStringLiteral("textEditSpect"),
    QStringLiteral("chartSpectrum"),
};

// Sends a key as the user's keyboard does: to the window, which passes it to the focused widget.
void press(const MainWindowFixture &f, Qt::Key key)
{
    QTest::keyClick(f.window.windowHandle(), key);
}

// Ctrl+Tab.
void goBySpectrum(const MainWindowFixture &f)
{
    QWindow *window = f.window.windowHandle();
    QTest::keyPress(window, Qt::Key_Control);
    QTest::keyClick(window, Qt::Key_Tab, Qt::ControlModifier);
    QTest::keyRelease(window, Qt::Key_Control);
}

QString focusName()
{
    const QWidget *widget = QApplication::focusWidget();
    if (const auto *button = qobject_cast<const QToolButton *>(widget))
        return button->defaultAction()->text();
    if (qobject_cast<const QTabBar *>(widget))
        return QStringLiteral("tabs");
    return widget ? widget->objectName() : QString();
}

QStringList round(const MainWindowFixture &f, Qt::Key key)
{
    QStringList stops;
    const QWidget *start = QApplication::focusWidget();
    do {
        stops.append(focusName());
        press(f, key);
    } while (QApplication::focusWidget() != start && stops.size() < 100);
    return stops;
}

QStringList reversed(QStringList list)
{
    // The round's first widget stays the first.
    std::reverse(list.begin() + 1, list.end());
    return list;
}

QJsonObject spectrumOf(const QString &title)
{
    return {{QStringLiteral("Title"), title},
            {QStringLiteral("E"), QJsonArray{10, 10.5, 11.25, 12}},
            {QStringLiteral("I"), QJsonArray{1, 20, 3, 4}}};
}

QString readOut(const SpectrumChartView *chart)
{
    return chart->findChild<QLabel *>()->text();
}

} // namespace

class TestKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void tabGoesRoundTheForm();
    void tabGoesRoundTheFormAndTheShownSpectrum();
    void everyStopIsMarked();
    void ringGoesWithItsWidget();
    void menuKeysOpenTheMenuOfTheImage();
    void spaceOnAToolButtonDoesItsWork();
    void openingLeavesTheKeyboardBesideTheSpectra_data();
    void openingLeavesTheKeyboardBesideTheSpectra();
    void openingMovesTheKeyboardToTheNewSpectra();
    void otherwiseTheNameHasTheKeyboard();
    void arrowsOnTheTabsChangeTheSpectrum();
    void controlTabReachesTheSpectraFromEverywhere_data();
    void controlTabReachesTheSpectraFromEverywhere();
    void controlTabComesBackToTheSameField_data();
    void controlTabComesBackToTheSameField();
    void chartReadsOutPoints();
    void chartReadsOutPointsOfALineSpectrum();
    void chartWithoutPointsTakesKeys();
    void chartKeepsItsPlaceWhenPointsGo();
    void chartZooms();
    void chartZoomsOutToTheWholeSpectrumOnly();
    void chartZoomsASinglePointWithoutHarm();
};

void TestKeyboard::tabGoesRoundTheForm()
{
    MainWindowFixture f;
    QCOMPARE(focusName(), speciesStops.first());
    QCOMPARE(round(f, Qt::Key_Tab), speciesStops);
    QCOMPARE(round(f, Qt::Key_Backtab), reversed(speciesStops));
    // Tabs that are gone do not take the keyboard either.
    f.window.createNewSpectrumWindow();
    f.trigger(QStringLiteral("actionDelete"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    f.field(speciesStops.first())->setFocus();
    QCOMPARE(round(f, Qt::Key_Tab), speciesStops);
}

void TestKeyboard::tabGoesRoundTheFormAndTheShownSpectrum()
{
    MainWindowFixture f;
    for (const char *title : {"A", "B", "C"})
        f.window.createNewSpectrumWindow(spectrumOf(QString::fromLatin1(title)));
    const QList<QMdiSubWindow *> subWindows = f.area()->subWindowList();
    for (QMdiSubWindow *shown : subWindows) {
        f.area()->setActiveSubWindow(shown);
        f.field(QStringLiteral("lineEditSpecies"))->setFocus();
        QCOMPARE(round(f, Qt::Key_Tab), speciesStops + spectrumStops);
        QCOMPARE(round(f, Qt::Key_Backtab), reversed(speciesStops + spectrumStops));
        QCOMPARE(f.area()->activeSubWindow(), shown);
    }
}

// Each widget looks different with the focus, and those without a mark of their own get a distinct
// ring.
void TestKeyboard::everyStopIsMarked()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A")));
    f.field(QStringLiteral("lineEditSpecies"))->setFocus();
    for (qsizetype i = 0; i < speciesStops.size() + spectrumStops.size(); ++i) {
        const QWidget *stop = QApplication::focusWidget();
        const QRect place(stop->mapTo(&f.window, QPoint()), stop->size());
        const QImage with = f.window.grab(place.adjusted(-3, -3, 3, 3)).toImage();
        if (const auto *ring = f.window.findChild<QFocusFrame *>()) {
            QCOMPARE(ring->widget(), stop);
            QVERIFY(ring->isVisible());
        }
        press(f, Qt::Key_Tab);
        const QImage without = f.window.grab(place.adjusted(-3, -3, 3, 3)).toImage();
        int changed = 0;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x)
                changed += with.pixel(x, y) != without.pixel(x, y);
        }
        // At least a line along one of its sides.
        QVERIFY2(changed >= std::min(place.width(), place.height()),
                 qPrintable(stop->objectName() + QString::number(changed)));
    }
}

void TestKeyboard::ringGoesWithItsWidget()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow();
    MainWindowFixture::points(f.spectra().constFirst())->setFocus();
    QVERIFY(f.window.findChild<QFocusFrame *>());
    f.trigger(QStringLiteral("actionDelete"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    f.field(QStringLiteral("lineEditMass"))->setFocus();
    const QList<QFocusFrame *> rings = f.window.findChildren<QFocusFrame *>();
    QCOMPARE(rings.size(), 1);
    QCOMPARE(rings.first()->widget(), f.field(QStringLiteral("lineEditMass")));
    f.find<QPushButton>(QStringLiteral("buttonDownload"))->setFocus();
    QVERIFY(!f.window.findChild<QFocusFrame *>());
}

void TestKeyboard::menuKeysOpenTheMenuOfTheImage()
{
    MainWindowFixture f;
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QGuiApplication::clipboard()->setImage(image);
    f.window.pasteImageFromClipboard();
    auto *label = f.find<QLabel>(QStringLiteral("imageLabel"));
    QVERIFY(!label->pixmap().isNull());
    label->setFocus();
    int opened = 0;
    QList<Qt::Key> keys;
    QTimer answers;
    connect(&answers, &QTimer::timeout, this, [&] {
        QWidget *menu = QApplication::activePopupWidget();
        if (!menu)
            return;
        ++opened;
        for (const Qt::Key key : std::exchange(keys, {Qt::Key_Escape}))
            QTest::keyClick(menu, key);
    });
    answers.start();
    keys = {Qt::Key_Escape};
    QTest::keyClick(f.window.windowHandle(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(opened, 1);
    QVERIFY(!label->pixmap().isNull());
    keys = {Qt::Key_Down, Qt::Key_Return};
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, label->rect().center(),
                            label->mapToGlobal(label->rect().center()));
    QApplication::sendEvent(label, &byKey);
    QCOMPARE(opened, 2);
    QVERIFY(label->pixmap().isNull());
}

void TestKeyboard::spaceOnAToolButtonDoesItsWork()
{
    MainWindowFixture f;
    QAction *action = f.find<QAction>(QStringLiteral("actionNextFile"));
    // The action itself asks for a file.
    QVERIFY(action->disconnect());
    const QSignalSpy triggered(action, &QAction::triggered);
    f.find<QToolBar>(QStringLiteral("toolBar"))->widgetForAction(action)->setFocus();
    press(f, Qt::Key_Space);
    QCOMPARE(triggered.count(), 1);
}

void TestKeyboard::openingLeavesTheKeyboardBesideTheSpectra_data()
{
    QTest::addColumn<QString>("stop");
    QTest::addColumn<bool>("active");
    for (const QString &stop : speciesStops) {
        QTest::addRow("%s", qPrintable(stop)) << stop << true;
        // The state while a file dialog closes.
        QTest::addRow("%s, inactive", qPrintable(stop)) << stop << false;
    }
}

// Repeated Space on Next File steps through a folder: no press may reach a field.
void TestKeyboard::openingLeavesTheKeyboardBesideTheSpectra()
{
    QFETCH(QString, stop);
    QFETCH(bool, active);
    MainWindowFixture f;
    const QStringList titles{QStringLiteral("A"), QStringLiteral("B")};
    for (const char *name : {"1.json", "2.json"})
        QVERIFY(writeJsonObject(f.path(QString::fromLatin1(name)),
                                speciesFileWith(QString::fromLatin1(name), titles)));
    f.field(speciesStops.first())->setFocus();
    for (int i = 0; focusName() != stop && i < 100; ++i)
        press(f, Qt::Key_Tab);
    for (const char *name : {"1.json", "2.json"}) {
        if (!active)
            QApplication::setActiveWindow(nullptr);
        // A visit to the mass counts as a change.
        f.window.updateWindowTitle(false);
        QVERIFY(f.window.loadSpeciesFile(f.path(QString::fromLatin1(name))));
        QVERIFY(!f.isModified());
        if (!active)
            QApplication::setActiveWindow(&f.window);
        QCOMPARE(focusName(), stop);
    }
}

void TestKeyboard::openingMovesTheKeyboardToTheNewSpectra()
{
    MainWindowFixture f;
    const QString file = f.path(QStringLiteral("1.json"));
    QVERIFY(writeJsonObject(
        file, speciesFileWith(QStringLiteral("1"), {QStringLiteral("A"), QStringLiteral("B")})));
    for (const bool active : {true, false}) {
        QVERIFY(f.window.loadSpeciesFile(file));
        MainWindowFixture::points(f.spectra().constLast())->setFocus();
        if (!active)
            QApplication::setActiveWindow(nullptr);
        QVERIFY(f.window.loadSpeciesFile(file));
        if (!active)
            QApplication::setActiveWindow(&f.window);
        QCOMPARE(focusName(), QStringLiteral("lineEditTitle"));
        QVERIFY(f.spectra().constFirst()->isAncestorOf(QApplication::focusWidget()));
    }
}

void TestKeyboard::otherwiseTheNameHasTheKeyboard()
{
    MainWindowFixture f;
    // The same holds at a start with a file, when nothing has the focus yet.
    QVERIFY(writeJsonObject(f.path(QStringLiteral("1.json")),
                            speciesFileWith(QStringLiteral("1"), {QStringLiteral("A")})));
    QApplication::focusWidget()->clearFocus();
    QVERIFY(f.window.loadSpeciesFile(f.path(QStringLiteral("1.json"))));
    QCOMPARE(focusName(), speciesStops.first());
    const auto focusPoints = [&] {
        f.window.createNewSpectrumWindow();
        MainWindowFixture::points(f.spectra().constLast())->setFocus();
        f.window.updateWindowTitle(false);
    };
    focusPoints();
    f.trigger(QStringLiteral("actionClean"));
    QCOMPARE(focusName(), speciesStops.first());
    focusPoints();
    f.trigger(QStringLiteral("actionDelete"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(focusName(), speciesStops.first());
    focusPoints();
    f.area()->currentSubWindow()->close(); // as Ctrl+W does
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(focusName(), speciesStops.first());
    f.window.createNewSpectrumWindow();
    f.field(QStringLiteral("lineEditMass"))->setFocus();
    f.trigger(QStringLiteral("actionDelete"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(focusName(), QStringLiteral("lineEditMass"));
}

void TestKeyboard::arrowsOnTheTabsChangeTheSpectrum()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A")));
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("B")));
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("C")));
    f.area()->findChild<QTabBar *>()->setFocus();
    // The focus stays on the tabs, so that the arrows go through all of them.
    const std::pair<Qt::Key, int> steps[] = {{Qt::Key_Left, 1},
                                             {Qt::Key_Left, 0},
                                             {Qt::Key_Left, 0},
                                             {Qt::Key_Right, 1},
                                             {Qt::Key_Right, 2}};
    for (const auto &[key, shown] : steps) {
        press(f, key);
        QCOMPARE(f.area()->activeSubWindow(), f.area()->subWindowList().at(shown));
        QCOMPARE(focusName(), QStringLiteral("tabs"));
    }
    press(f, Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("lineEditTitle"));
    QVERIFY(f.spectra().constLast()->isAncestorOf(QApplication::focusWidget()));
}

void TestKeyboard::controlTabReachesTheSpectraFromEverywhere_data()
{
    QTest::addColumn<QString>("stop");
    for (const QString &stop : speciesStops + spectrumStops)
        QTest::addRow("%s", qPrintable(stop)) << stop;
}

// To the one that was on top before, and from there back.
void TestKeyboard::controlTabReachesTheSpectraFromEverywhere()
{
    QFETCH(QString, stop);
    MainWindowFixture f;
    for (const char *title : {"A", "B", "C"})
        f.window.createNewSpectrumWindow(spectrumOf(QString::fromLatin1(title)));
    const QList<QMdiSubWindow *> subWindows = f.area()->subWindowList();
    f.area()->setActiveSubWindow(subWindows.at(0));
    f.field(speciesStops.first())->setFocus();
    for (int i = 0; focusName() != stop && i < 100; ++i)
        press(f, Qt::Key_Tab);
    for (const int shown : {2, 0}) {
        goBySpectrum(f);
        QCOMPARE(f.area()->activeSubWindow(), subWindows.at(shown));
        QVERIFY(subWindows.at(shown)->isAncestorOf(QApplication::focusWidget())
                || focusName() == QLatin1String("tabs"));
    }
}

// Space must press only the button that was reached in that spectrum.
void TestKeyboard::controlTabComesBackToTheSameField()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    MainWindowFixture f;
    for (const char *title : {"A", "B"})
        f.window.createNewSpectrumWindow(spectrumOf(QString::fromLatin1(title)));
    const auto fieldOf = [&](int spectrum, const QString &name) {
        return f.spectra().at(spectrum)->findChild<QWidget *>(name);
    };
    fieldOf(1, second)->setFocus();
    goBySpectrum(f);
    QCOMPARE(QApplication::focusWidget(), fieldOf(0, QStringLiteral("lineEditTitle")));
    fieldOf(0, first)->setFocus();
    for (int i = 0; i < 3; ++i) {
        goBySpectrum(f);
        QCOMPARE(QApplication::focusWidget(), fieldOf(1, second));
        goBySpectrum(f);
        QCOMPARE(QApplication::focusWidget(), fieldOf(0, first));
    }
}

void TestKeyboard::controlTabComesBackToTheSameField_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    for (int i = 1; i < spectrumStops.size(); ++i) {
        const QString &stop = spectrumStops.at(i);
        QTest::addRow("%s", qPrintable(stop)) << stop << spectrumStops.constLast();
    }
}

void TestKeyboard::chartReadsOutPoints()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A")));
    auto *chart = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    chart->setFocus();
    const std::pair<Qt::Key, const char *> steps[] = {
        {Qt::Key_Right, "hν: 10.0000, I: 1.00"},     {Qt::Key_Left, "hν: 10.0000, I: 1.00"},
        {Qt::Key_Right, "hν: 10.5000, I: 20.00"},    {Qt::Key_Right, "hν: 11.2500, I: 3.00"},
        {Qt::Key_End, "hν: 12.0000, I: 4.00"},       {Qt::Key_Right, "hν: 12.0000, I: 4.00"},
        {Qt::Key_PageUp, "hν: 11.2500, I: 3.00"},    {Qt::Key_Home, "hν: 10.0000, I: 1.00"},
        {Qt::Key_PageDown, "hν: 10.5000, I: 20.00"},
    };
    for (const auto &[key, text] : steps) {
        press(f, key);
        QCOMPARE(readOut(chart), QString::fromUtf8(text));
    }
    QVERIFY(chart->hasFocus());
}

// Not the corners of its plot.
void TestKeyboard::chartReadsOutPointsOfALineSpectrum()
{
    MainWindowFixture f;
    QJsonObject spectrum = spectrumOf(QStringLiteral("A"));
    spectrum.insert(QStringLiteral("LineSpectrum"), true);
    f.window.createNewSpectrumWindow(spectrum);
    auto *chart = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    chart->setFocus();
    press(f, Qt::Key_Right);
    press(f, Qt::Key_Right);
    QCOMPARE(readOut(chart), QStringLiteral("hν: 10.5000, I: 20.00"));
}

void TestKeyboard::chartWithoutPointsTakesKeys()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow();
    auto *chart = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    chart->setFocus();
    for (const Qt::Key key :
         {Qt::Key_Right, Qt::Key_Left, Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown,
          Qt::Key_Plus, Qt::Key_Minus, Qt::Key_0})
        press(f, key);
    QCOMPARE(readOut(chart), QString());
    QVERIFY(chart->hasFocus());
}

void TestKeyboard::chartKeepsItsPlaceWhenPointsGo()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A")));
    SpectrumWindow *spectrum = f.spectra().constFirst();
    auto *chart = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    chart->setFocus();
    press(f, Qt::Key_End);
    MainWindowFixture::points(spectrum)->setPlainText(QStringLiteral("1 2\n3 4\n5 6"));
    MainWindowFixture::letPointsBeRead(spectrum);
    press(f, Qt::Key_Left);
    QCOMPARE(readOut(chart), QStringLiteral("hν: 3.0000, I: 4.00"));
    MainWindowFixture::points(spectrum)->clear();
    MainWindowFixture::letPointsBeRead(spectrum);
    press(f, Qt::Key_Left);
    chart->repaint();
    QVERIFY(chart->hasFocus());
}

void TestKeyboard::chartZooms()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A")));
    auto *view = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    QCoreApplication::processEvents();
    auto *energies = qobject_cast<QValueAxis *>(view->chart()->axes(Qt::Horizontal).first());
    const auto shows = [&](double energy) {
        return energies->min() <= energy + 1e-6 && energy - 1e-6 <= energies->max();
    };
    view->setFocus();
    press(f, Qt::Key_End);
    press(f, Qt::Key_Plus);
    QCOMPARE(energies->min(), 11.0);
    QCOMPARE(energies->max(), 12.0);
    press(f, Qt::Key_Plus);
    QCOMPARE(energies->max() - energies->min(), 0.5);
    QVERIFY(shows(12));
    press(f, Qt::Key_Home); // the view follows
    QVERIFY(shows(10));
    QVERIFY(!shows(12));
    press(f, Qt::Key_0);
    QCOMPARE(energies->min(), 10.0);
    QCOMPARE(energies->max(), 12.0);
}

void TestKeyboard::chartZoomsOutToTheWholeSpectrumOnly()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A")));
    auto *view = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    QCoreApplication::processEvents();
    auto *energies = qobject_cast<QValueAxis *>(view->chart()->axes(Qt::Horizontal).first());
    auto *intensities = qobject_cast<QValueAxis *>(view->chart()->axes(Qt::Vertical).first());
    const auto showsAll = [&] {
        return qFuzzyCompare(energies->min(), 10) && qFuzzyCompare(energies->max(), 12)
               && qFuzzyCompare(intensities->min(), 1) && qFuzzyCompare(intensities->max(), 20);
    };
    view->setFocus();
    press(f, Qt::Key_Minus);
    QVERIFY(showsAll());
    press(f, Qt::Key_End);
    for (int i = 0; i < 3; ++i)
        press(f, Qt::Key_Plus);
    QCOMPARE(energies->max() - energies->min(), 0.25);
    press(f, Qt::Key_Minus);
    // By two, and moved as far as the end of the spectrum needs it.
    QCOMPARE(energies->min(), 11.5);
    QCOMPARE(energies->max(), 12.0);
    for (int i = 0; i < 2; ++i)
        press(f, Qt::Key_Minus);
    QVERIFY2(showsAll(), qPrintable(QString::number(energies->max())));
    press(f, Qt::Key_Minus);
    QVERIFY(showsAll());
}

// The ranges of this spectrum have no width.
void TestKeyboard::chartZoomsASinglePointWithoutHarm()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(
        {{QStringLiteral("E"), QJsonArray{10}}, {QStringLiteral("I"), QJsonArray{5}}});
    auto *view = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    auto *energies = qobject_cast<QValueAxis *>(view->chart()->axes(Qt::Horizontal).first());
    const auto range = std::make_pair(energies->min(), energies->max());
    view->setFocus();
    for (const Qt::Key key :
         {Qt::Key_Right, Qt::Key_Minus, Qt::Key_Plus, Qt::Key_Minus, Qt::Key_Minus, Qt::Key_0})
        press(f, key);
    QCOMPARE(readOut(view), QStringLiteral("hν: 10.0000, I: 5.00"));
    QCOMPARE(std::make_pair(energies->min(), energies->max()), range);
}

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"

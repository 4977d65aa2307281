// SPDX-License-Identifier: GPL-3.0-or-later
// Everything by the keyboard alone: where Tab goes, what the chart and the image do with keys, and
// that it can be seen where the keyboard is.
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
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QValueAxis>

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

// As the user's keyboard sends it: to the window, which gives it to the widget with the focus.
void press(const MainWindowFixture &f, Qt::Key key)
{
    QTest::keyClick(f.window.windowHandle(), key);
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
    // The one at which the round starts stays the first.
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
    void menuKeyOpensTheMenuOfTheImage();
    void spaceOnAToolButtonDoesItsWork();
    void arrowsOnTheTabsChangeTheSpectrum();
    void chartReadsOutPoints();
    void chartReadsOutPointsOfALineSpectrum();
    void chartWithoutPointsTakesKeys();
    void chartKeepsItsPlaceWhenPointsGo();
    void chartZooms();
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

// Each changes the picture where it stands when it gets the keyboard, and what has no mark of its
// own gets a ring that stands out.
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
    MainWindowFixture::points(f.spectra().first())->setFocus();
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

void TestKeyboard::menuKeyOpensTheMenuOfTheImage()
{
    MainWindowFixture f;
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QGuiApplication::clipboard()->setImage(image);
    f.window.pasteImageFromClipboard();
    auto *label = f.find<QLabel>(QStringLiteral("imageLabel"));
    QVERIFY(!label->pixmap().isNull());
    label->setFocus();
    bool opened = false;
    QTimer::singleShot(0, &f.window, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        opened = menu;
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, label->rect().center(),
                            label->mapToGlobal(label->rect().center()));
    QApplication::sendEvent(label, &byKey);
    QVERIFY(opened);
    QVERIFY(label->pixmap().isNull());
}

void TestKeyboard::spaceOnAToolButtonDoesItsWork()
{
    MainWindowFixture f;
    QAction *action = f.find<QAction>(QStringLiteral("actionNextFile"));
    // What it does by itself asks for a file.
    QVERIFY(action->disconnect());
    int triggered = 0;
    connect(action, &QAction::triggered, this, [&] { ++triggered; });
    f.find<QToolBar>(QStringLiteral("toolBar"))->widgetForAction(action)->setFocus();
    press(f, Qt::Key_Space);
    QCOMPARE(triggered, 1);
}

void TestKeyboard::arrowsOnTheTabsChangeTheSpectrum()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A")));
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("B")));
    f.area()->findChild<QTabBar *>()->setFocus();
    press(f, Qt::Key_Left);
    QCOMPARE(f.area()->activeSubWindow(), f.area()->subWindowList().first());
    // The spectrum that comes up takes the keyboard.
    QVERIFY(f.spectra().first()->isAncestorOf(QApplication::focusWidget()));
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
    SpectrumWindow *spectrum = f.spectra().first();
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

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
// Readability of the windows' pictures in dark and light themes. Runs at several scales:
// QT_SCALE_FACTOR.
#include "database/createdatabase.h"
#include "spectrum/spectrumchartview.h"
#include "spectrum/spectrumwindow.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"
#include "widgets/contrast.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QHash>
#include <QImage>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTabBar>
#include <QTest>
#include <QToolBar>

#include <algorithm>
#include <cmath>

namespace
{

// The contrasts of the Web Content Accessibility Guidelines 2.1 for texts and for other visible
// things.
constexpr double leastOfText = 4.5;
constexpr double leastOfSymbols = 3;

double linear(int part)
{
    const double value = part / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(QRgb colour)
{
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour))
           + 0.0722 * linear(qBlue(colour));
}

double contrastOf(QRgb one, QRgb other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QHash<QRgb, int> coloursIn(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y) | 0xff000000];
    }
    return counts;
}

QRgb mostFrequent(const QHash<QRgb, int> &counts)
{
    QRgb colour = 0;
    int most = 0;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        if (it.value() > most) {
            most = it.value();
            colour = it.key();
        }
    }
    return colour;
}

// The contrast between a drawing and its background, the most frequent colour. Only the middle of a
// stroke has its full colour, so the strongest few pixels count.
double readContrast(const QImage &picture)
{
    const QHash<QRgb, int> counts = coloursIn(picture);
    const QRgb background = mostFrequent(counts);
    QList<std::pair<double, int>> contrasts;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        contrasts.append({contrastOf(it.key(), background), it.value()});
    std::sort(contrasts.rbegin(), contrasts.rend());
    constexpr int few = 6;
    int seen = 0;
    for (const auto &[value, count] : std::as_const(contrasts)) {
        seen += count;
        if (seen >= few)
            return value;
    }
    return 1;
}

// A part of a window as painted there, with its background.
QImage pictureOf(QWidget *widget, const QRect &part)
{
    QWidget *window = widget->window();
    return window->grab(QRect(widget->mapTo(window, part.topLeft()), part.size())).toImage();
}

// Without the frame, which is no text.
QImage insideOf(QWidget *widget)
{
    return pictureOf(widget, widget->rect().adjusted(4, 4, -4, -4));
}

void checkText(const QImage &picture, const QString &what, double least = leastOfText)
{
    const double value = readContrast(picture);
    QVERIFY2(value >= least, qPrintable(QStringLiteral("%1: %2").arg(what).arg(value)));
}

QPalette darkPalette()
{
    QPalette palette(QColor(49, 54, 59), QColor(42, 46, 50));
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    palette.setColor(QPalette::AlternateBase, QColor(35, 38, 41));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::HighlightedText, QPalette::ToolTipText})
        palette.setColor(role, QColor(252, 252, 252));
    palette.setColor(QPalette::Highlight, QColor(61, 174, 233));
    palette.setColor(QPalette::ToolTipBase, QColor(49, 54, 59));
    return palette;
}

// Like the dark variants of some styles, whose buttons ignore the palette.
class DarkButtons final : public QProxyStyle
{
public:
    DarkButtons() : QProxyStyle(QStringLiteral("Fusion")) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        if (element == PE_PanelButtonCommand)
            painter->fillRect(option->rect, QColor(40, 40, 40));
        else
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
};

QJsonObject fullSpectrum()
{
    QJsonObject spectrum{{QStringLiteral("LineSpectrum"), false},
                         {QStringLiteral("E"), QJsonArray{10, 10.5, 11}},
                         {QStringLiteral("I"), QJsonArray{1, 20, 3}}};
    for (const char *key : {"Title", "Uploader", "DOI", "FurtherRefs", "T", "FurtherComments",
                            "CreatedDate", "FacilityDate", "Source", "Resolution", "Normalization"})
        spectrum.insert(QString::fromLatin1(key), QStringLiteral("Hamburg"));
    return spectrum;
}

} // namespace

class TestLooks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void textsCanBeRead_data() { themes(); }
    void textsCanBeRead();
    void fieldsOfTheFormsLookAlike_data() { themes(); }
    void fieldsOfTheFormsLookAlike();
    void selectedTextCanBeRead_data() { themes(); }
    void selectedTextCanBeRead();
    void menusOfFieldsCanBeRead_data() { themes(); }
    void menusOfFieldsCanBeRead();
    void readOutCanBeRead_data() { themes(); }
    void readOutCanBeRead();
    void axesCanBeRead_data() { themes(); }
    void axesCanBeRead();
    void dialogCanBeRead_data() { themes(); }
    void dialogCanBeRead();
    void outlinesOfCheckBoxesCanBeMadeOut_data() { themes(); }
    void outlinesOfCheckBoxesCanBeMadeOut();
    void iconsCanBeMadeOut_data() { themes(); }
    void iconsCanBeMadeOut();
    void fieldsFollowAChangeOfTheTheme();
    void nothingIsGreyedOutOrHinted();
    void imageIsAsSharpAsTheScreen();
    void buttonsOfAStyleWithColoursOfItsOwnCanBeRead();
    void imageLeavesItsBorder();
    void windowFitsOnASmallScreen();
    void chartKeepsItsShareWithLargeLetters_data();
    void chartKeepsItsShareWithLargeLetters();
    void aFormThatIsLargerThanItsAreaScrolls();
    void selectionOfAnyThemeIsReadable_data();
    void selectionOfAnyThemeIsReadable();

private:
    static void themes();
    void useTheme(bool dark);

    QPalette m_light;
};

void TestLooks::initTestCase()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setCursorFlashTime(0);
    m_light = QApplication::palette();
}

void TestLooks::themes()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

// The colours of a desktop, and what the program's start makes of them.
void TestLooks::useTheme(bool dark)
{
    QApplication::setPalette(dark ? darkPalette() : m_light);
    const QPalette all = QApplication::palette();
    QApplication::setPalette(readableSelection(all).resolve(all));
    QApplication::setPalette(outlinedBoxes(all), "QCheckBox");
}

void TestLooks::init()
{
    failOnWarnings();
    useTheme(false);
}

void TestLooks::textsCanBeRead()
{
    QFETCH(bool, dark);
    useTheme(dark);
    MainWindowFixture f;
    const QList<CleanTextEdit *> species = f.window.findChildren<CleanTextEdit *>();
    for (CleanTextEdit *field : species)
        field->setPlainText(QStringLiteral("Hamburg"));
    f.window.createNewSpectrumWindow(fullSpectrum());
    f.window.createNewSpectrumWindow(fullSpectrum());
    QApplication::setActiveWindow(nullptr);
    QCoreApplication::processEvents();
    int count = 0;
    const QList<QWidget *> widgets = f.window.findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (!widget->isVisible() || isCovered(widget))
            continue;
        const auto *label = qobject_cast<QLabel *>(widget);
        const bool isText =
            (label && !label->text().isEmpty()) || qobject_cast<CleanTextEdit *>(widget)
            || qobject_cast<QPlainTextEdit *>(widget) || qobject_cast<QPushButton *>(widget)
            || qobject_cast<QCheckBox *>(widget) || qobject_cast<QComboBox *>(widget)
            || qobject_cast<QMenuBar *>(widget) || qobject_cast<QTabBar *>(widget);
        if (!isText)
            continue;
        ++count;
        if (auto *tabs = qobject_cast<QTabBar *>(widget)) {
            for (int i = 0; i < tabs->count(); ++i)
                checkText(pictureOf(tabs, tabs->tabRect(i).adjusted(26, 4, -4, -4)),
                          QStringLiteral("tab %1").arg(i));
        } else {
            const QString name = widget->objectName() + u' ' + (label ? label->text() : QString());
            checkText(label ? pictureOf(widget, widget->rect()) : insideOf(widget), name);
        }
    }
    // The dock has 12 labels, 11 fields and a button; a spectrum 13 labels, 10 fields, the points,
    // 3 buttons, a check box and a combo box; a menu bar and the tabs.
    QVERIFY2(count >= 55, qPrintable(QString::number(count)));
    checkText(pictureOf(f.find<QWidget>(QStringLiteral("speciesDock")), QRect(4, 3, 120, 18)),
              QStringLiteral("title of the dock"));
}

void TestLooks::fieldsOfTheFormsLookAlike()
{
    QFETCH(bool, dark);
    useTheme(dark);
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(fullSpectrum());
    QCoreApplication::processEvents();
    int fields = 0;
    for (QWidget *widget : f.window.findChildren<QWidget *>()) {
        if (!qobject_cast<CleanTextEdit *>(widget) && !qobject_cast<QPlainTextEdit *>(widget))
            continue;
        ++fields;
        const QRgb paper = mostFrequent(coloursIn(insideOf(widget)));
        QVERIFY2(paper == qRgb(255, 255, 255), qPrintable(widget->objectName()));
    }
    QCOMPARE(fields, 11 + 11);
}

void TestLooks::selectedTextCanBeRead()
{
    QFETCH(bool, dark);
    useTheme(dark);
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(fullSpectrum());
    for (const char *name :
         {"lineEditSpecies", "textEditAliases", "lineEditTitle", "textEditComments"}) {
        auto *field = f.field(QString::fromLatin1(name));
        field->setPlainText(QString(200, u'H'));
        field->setFocus();
        field->selectAll();
        QTest::qWait(0);
        checkText(insideOf(field), QStringLiteral("selection in %1").arg(field->objectName()));
    }
    QPlainTextEdit *points = MainWindowFixture::points(f.spectra().constFirst());
    points->setPlainText(QString(5000, u'1'));
    points->setFocus();
    points->selectAll();
    checkText(insideOf(points), QStringLiteral("selected points"));
}

void TestLooks::menusOfFieldsCanBeRead()
{
    QFETCH(bool, dark);
    useTheme(dark);
    MainWindowFixture f;
    f.window.createNewSpectrumWindow();
    for (const char *name : {"lineEditSpecies", "textEditAliases", "lineEditTitle"}) {
        auto *field = f.field(QString::fromLatin1(name));
        field->setPlainText(QStringLiteral("x"));
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                                field->viewport()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(field->viewport(), &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QVERIFY(menu->actions().size() > 5);
        const QList<QAction *> actions = menu->actions();
        for (QAction *action : actions) {
            if (!action->isSeparator())
                checkText(pictureOf(menu, menu->actionGeometry(action).adjusted(2, 2, -2, -2)),
                          QStringLiteral("%1 of %2").arg(action->text(), field->objectName()));
        }
        menu->close();
    }
}

void TestLooks::readOutCanBeRead()
{
    QFETCH(bool, dark);
    useTheme(dark);
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(fullSpectrum());
    auto *chart = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    chart->updateMousePositionLabel({10, 20});
    auto *label = chart->findChild<QLabel *>();
    checkText(pictureOf(label, label->rect()), QStringLiteral("read-out"));
}

void TestLooks::axesCanBeRead()
{
    QFETCH(bool, dark);
    useTheme(dark);
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(fullSpectrum());
    QCoreApplication::processEvents();
    auto *view = f.find<SpectrumChartView>(QStringLiteral("chartSpectrum"));
    int texts = 0;
    for (QGraphicsItem *item : view->scene()->items()) {
        auto *text = qgraphicsitem_cast<QGraphicsTextItem *>(item);
        if (!text || text->toPlainText().isEmpty() || !text->isVisible())
            continue;
        ++texts;
        const QRect place = view->mapFromScene(text->sceneBoundingRect()).boundingRect();
        checkText(pictureOf(view, place.adjusted(3, 3, -3, -3)), text->toPlainText());
    }
    QVERIFY2(texts >= 8, qPrintable(QString::number(texts)));
}

void TestLooks::dialogCanBeRead()
{
    QFETCH(bool, dark);
    useTheme(dark);
    CreateDatabase dialog;
    dialog.findChild<QListWidget *>()->addItem(QStringLiteral("water.json"));
    dialog.show();
    for (QWidget *widget : dialog.findChildren<QWidget *>()) {
        const auto *label = qobject_cast<QLabel *>(widget);
        if ((label && !label->text().isEmpty()) || qobject_cast<QLineEdit *>(widget)
            || qobject_cast<QPushButton *>(widget) || qobject_cast<QCheckBox *>(widget)
            || qobject_cast<QListWidget *>(widget))
            checkText(label ? pictureOf(widget, widget->rect()) : insideOf(widget),
                      widget->objectName());
    }
}

// Against the window and against the paper of the box.
void TestLooks::outlinesOfCheckBoxesCanBeMadeOut()
{
    QFETCH(bool, dark);
    useTheme(dark);
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(fullSpectrum());
    CreateDatabase dialog;
    dialog.show();
    QCoreApplication::processEvents();
    for (auto *box : {f.find<QCheckBox>(QStringLiteral("checkBoxLineSpectrum")),
                      dialog.findChild<QCheckBox *>()}) {
        QStyleOptionButton option;
        option.initFrom(box);
        const QRect indicator =
            box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
        const QImage picture = pictureOf(box, indicator.adjusted(-2, -2, 0, 2));
        // Across the left outline, half way down.
        const int y = picture.height() / 2;
        const QRgb window = picture.pixel(0, y);
        const QRgb paper = picture.pixel(picture.width() / 2, y);
        double best = 0;
        for (int x = 0; x < picture.width() / 2; ++x) {
            const QRgb colour = picture.pixel(x, y);
            best = std::max(best, std::min(contrastOf(colour, window), contrastOf(colour, paper)));
        }
        QVERIFY2(best >= leastOfSymbols,
                 qPrintable(QStringLiteral("%1: %2").arg(box->objectName()).arg(best)));
    }
}

void TestLooks::iconsCanBeMadeOut()
{
    QFETCH(bool, dark);
    useTheme(dark);
    MainWindowFixture f;
    auto *bar = f.find<QToolBar>(QStringLiteral("toolBar"));
    int icons = 0;
    for (QAction *action : bar->actions()) {
        if (action->isSeparator())
            continue;
        ++icons;
        QWidget *button = bar->widgetForAction(action);
        checkText(insideOf(button), action->text(), leastOfSymbols);
    }
    QCOMPARE(icons, 5);
    // Those of the menus, on the colour of a menu.
    for (const QAction *action : f.window.findChildren<QAction *>()) {
        if (action->icon().isNull())
            continue;
        QImage picture(64, 64, QImage::Format_RGB32);
        picture.fill(QApplication::palette().color(QPalette::Window));
        QPainter painter(&picture);
        action->icon().paint(&painter, picture.rect().adjusted(8, 8, -8, -8));
        painter.end();
        checkText(picture, action->objectName(), leastOfSymbols);
    }
}

// A desktop may become dark while the program runs.
void TestLooks::fieldsFollowAChangeOfTheTheme()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(fullSpectrum());
    useTheme(true);
    QCoreApplication::processEvents();
    for (const char *name :
         {"lineEditSpecies", "textEditAliases", "lineEditTitle", "textEditComments"}) {
        auto *field = f.field(QString::fromLatin1(name));
        field->setPlainText(QStringLiteral("Hamburg"));
        field->clearFocus();
        checkText(insideOf(field), field->objectName());
    }
    for (const char *name : {"label", "label_12", "labelCreated", "label_14"}) {
        auto *label = f.find<QLabel>(QString::fromLatin1(name));
        checkText(pictureOf(label, label->rect()), label->objectName());
    }
}

// Such texts are paler on purpose.
void TestLooks::nothingIsGreyedOutOrHinted()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow();
    for (const QWidget *widget : f.window.findChildren<QWidget *>())
        QVERIFY2(widget->isEnabled() || widget->objectName().startsWith(QLatin1String("Scroll")),
                 qPrintable(widget->objectName()));
    for (const QTextEdit *field : f.window.findChildren<QTextEdit *>())
        QCOMPARE(field->placeholderText(), QString());
    QCOMPARE(MainWindowFixture::points(f.spectra().constFirst())->placeholderText(), QString());
}

// The image has as many screen pixels as the label, at the form's size.
void TestLooks::imageIsAsSharpAsTheScreen()
{
    MainWindowFixture f;
    QImage image(600, 300, QImage::Format_RGB32);
    image.fill(Qt::white);
    QGuiApplication::clipboard()->setImage(image);
    f.window.pasteImageFromClipboard();
    auto *label = f.find<QLabel>(QStringLiteral("imageLabel"));
    const QPixmap pixmap = label->pixmap();
    const qreal ratio = label->devicePixelRatioF();
    QCOMPARE(pixmap.devicePixelRatio(), ratio);
    const QSizeF logical = pixmap.deviceIndependentSize();
    QVERIFY(logical.width() <= label->width() + 1 && logical.height() <= 151);
    // It is limited by its height or by its width.
    QVERIFY(std::abs(logical.height() - 150) <= 1
            || std::abs(logical.width() - label->width()) <= 1);
    QVERIFY(std::abs(pixmap.width() - logical.width() * ratio) <= 1);
    QCOMPARE(label->height(), 150);
}

void TestLooks::buttonsOfAStyleWithColoursOfItsOwnCanBeRead()
{
    QApplication::setStyle(new DarkButtons);
    useTheme(true);
    {
        MainWindowFixture f;
        f.window.createNewSpectrumWindow(fullSpectrum());
        for (QPushButton *button : f.window.findChildren<QPushButton *>())
            checkText(insideOf(button), button->objectName());
    }
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
}

// The whole ring, and also at the fractional ratios of the program's scale.
void TestLooks::imageLeavesItsBorder()
{
    MainWindowFixture f;
    auto *label = f.find<QLabel>(QStringLiteral("imageLabel"));
    const QImage without = pictureOf(label, label->rect());
    QImage image(300, 300, QImage::Format_RGB32);
    image.fill(Qt::white);
    QGuiApplication::clipboard()->setImage(image);
    f.window.pasteImageFromClipboard();
    QCOMPARE(label->pixmap().deviceIndependentSize().toSize(), QSize(150, 150));
    QVERIFY(pictureOf(label, label->rect()) == without);
}

// The form and a spectrum's window must fit on a small laptop's screen.
void TestLooks::windowFitsOnASmallScreen()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(fullSpectrum());
    QCoreApplication::processEvents();
    const QSize least = f.window.minimumSizeHint();
    // In the program all lengths are 0.85 of these.
    const QSize room = QSize(1280, 720 - 30) / 0.85;
    QVERIFY2(least.width() <= room.width() && least.height() <= room.height(),
             qPrintable(QStringLiteral("%1 x %2").arg(least.width()).arg(least.height())));
}

void TestLooks::chartKeepsItsShareWithLargeLetters_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("height");
    QTest::newRow("usual") << 10 << 900;
    QTest::newRow("large") << 15 << 1100;
}

// The fields of several lines become lower first, down to two lines.
void TestLooks::chartKeepsItsShareWithLargeLetters()
{
    QFETCH(int, points);
    QFETCH(int, height);
    const QFont usual = QApplication::font();
    QFont font = usual;
    font.setPointSize(points);
    QApplication::setFont(font);
    {
        SpectrumWindow window(fullSpectrum());
        window.resize(1000, height);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto *chart = window.findChild<SpectrumChartView *>();
        const double share = 3.0 / 8;
        QVERIFY2(chart->height() > 0.95 * share * window.height(),
                 qPrintable(QString::number(chart->height())));
        QVERIFY(chart->chart()->plotArea().height() > 0.6 * chart->height());
        for (const char *name : {"textEditCitations", "textEditComments"}) {
            const auto *memo = window.findChild<QWidget *>(QLatin1String(name));
            QVERIFY(memo->height() >= 2 * memo->fontMetrics().lineSpacing());
        }
    }
    QApplication::setFont(usual);
}

// The fields of several lines are as low as possible here.
void TestLooks::aFormThatIsLargerThanItsAreaScrolls()
{
    const QFont usual = QApplication::font();
    QFont font = usual;
    font.setPointSize(22);
    QApplication::setFont(font);
    {
        MainWindowFixture f;
        f.window.createNewSpectrumWindow(fullSpectrum());
        f.window.resize(1500, 700);
        const auto *area = f.find<QMdiArea>(QStringLiteral("mdiArea"));
        QScrollBar *bar = area->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        for (const char *name : {"textEditCitations", "textEditComments"}) {
            const auto *memo = f.find<QWidget>(QLatin1String(name));
            QVERIFY(memo->height() <= memo->minimumSizeHint().height());
        }
        const auto isSeen = [&](const QWidget *widget) {
            const QRect place(widget->mapTo(area->viewport(), QPoint()), widget->size());
            return place.top() >= 0 && place.bottom() < area->viewport()->height();
        };
        const auto *chart = f.find<QWidget>(QStringLiteral("chartSpectrum"));
        QVERIFY(!isSeen(chart));
        bar->setValue(bar->maximum());
        QTRY_VERIFY(isSeen(chart));
    }
    QApplication::setFont(usual);
}

void TestLooks::selectionOfAnyThemeIsReadable_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("background");
    QTest::newRow("as it is") << QColor(Qt::white) << QColor(0, 0, 128);
    QTest::newRow("white on pale blue") << QColor(252, 252, 252) << QColor(61, 174, 233);
    QTest::newRow("black on blue") << QColor(Qt::black) << QColor(0, 0, 200);
    QTest::newRow("white on white") << QColor(Qt::white) << QColor(Qt::white);
    QTest::newRow("black on black") << QColor(Qt::black) << QColor(Qt::black);
    QTest::newRow("grey on grey") << QColor(120, 120, 120) << QColor(130, 130, 130);
}

void TestLooks::selectionOfAnyThemeIsReadable()
{
    QFETCH(QColor, text);
    QFETCH(QColor, background);
    QPalette palette;
    palette.setColor(QPalette::HighlightedText, text);
    palette.setColor(QPalette::Highlight, background);
    const QPalette readable = readableSelection(palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor shown = readable.color(group, QPalette::Highlight);
        QCOMPARE(readable.color(group, QPalette::HighlightedText), text);
        QVERIFY(contrastOf(shown.rgb(), text.rgb()) >= 4.5 || text == QColor(120, 120, 120));
        if (contrastOf(background.rgb(), text.rgb()) >= 4.5)
            QCOMPARE(shown, background);
    }
    QVERIFY(!readable.isBrushSet(QPalette::Active, QPalette::WindowText));
}

QTEST_MAIN(TestLooks)
#include "tst_looks.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
// The tabs' texts, and whether the focused part of a spectrum is visible.
#include "app/quietarea.h"
#include "spectrum/spectrumwindow.h"
#include "support/mainwindowfixture.h"
#include "widgets/cleantextedit.h"

#include <QAccessible>
#include <QApplication>
#include <QDockWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace
{

class Fixture : public MainWindowFixture
{
public:
    SpectrumWindow *add(const QString &title)
    {
        window.createNewSpectrumWindow(QJsonObject{{u"Title"_s, title.toHtmlEscaped()}});
        return spectra().constLast();
    }

    [[nodiscard]] QTabBar *tabs() const { return area()->findChild<QTabBar *>(); }

    [[nodiscard]] QString accessibleName(int index) const
    {
        QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(tabs());
        return bar->child(index)->text(QAccessible::Name);
    }
};

// Keeps a widget from being closed.
class Refusal : public QObject
{
public:
    explicit Refusal(QWidget *widget) : QObject(widget) { widget->installEventFilter(this); }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Close)
            event->ignore();
        return event->type() == QEvent::Close;
    }
};

} // namespace

class TestSpectrumTabs : public QObject
{
    Q_OBJECT

private slots:
    // "&" would underline the letter behind it, "[*]" is Qt's place for a mark.
    void aTitleIsShownLetterByLetter_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << u"TPES"_s << u"TPES"_s;
        QTest::newRow("ampersand") << u"R&P && Q"_s << u"R&&P &&&& Q"_s;
        QTest::newRow("mark") << u"M[*]"_s << u"M[*]"_s;
        QTest::newRow("markup") << u"a <b> c"_s << u"a <b> c"_s;
    }
    void aTitleIsShownLetterByLetter()
    {
        QFETCH(QString, title);
        QFETCH(QString, text);
        Fixture f;
        const SpectrumWindow *loaded = f.add(title);
        f.add(u"other"_s);
        SpectrumWindow *typed = f.add({});
        Fixture::field(typed, u"lineEditTitle"_s)->setPlainText(title);
        for (const int index : {0, 2}) {
            QCOMPARE(f.tabs()->tabText(index), text);
            QCOMPARE(f.accessibleName(index), title);
            QCOMPARE(f.tabs()->tabToolTip(index), u"<qt>"_s + title.toHtmlEscaped() + u"</qt>"_s);
        }
        QCOMPARE(loaded->windowTitle(), title);
        QCOMPARE(typed->windowTitle(), title);
        QCOMPARE(f.tabs()->tabText(1), u"other"_s);
    }

    void aTitleThatIsClearedLeavesTheTab()
    {
        Fixture f;
        f.add({});
        const QString untitled = f.tabs()->tabText(0);
        SpectrumWindow *spectrum = f.add(u"New"_s);
        Fixture::field(spectrum, u"lineEditTitle"_s)->selectAll();
        QTest::keyClick(Fixture::field(spectrum, u"lineEditTitle"_s), Qt::Key_Delete);
        QCOMPARE(spectrum->windowTitle(), QString());
        QCOMPARE(f.area()->subWindowList().at(1)->windowTitle(), QString());
        QCOMPARE(f.tabs()->tabText(1), untitled);
        QCOMPARE(f.tabs()->tabToolTip(1), QString());
        QTest::keyClicks(Fixture::field(spectrum, u"lineEditTitle"_s), u"AB"_s);
        QCOMPARE(f.tabs()->tabText(1), u"AB"_s);
    }

    // Beginning and end can be read; the others stay in sight.
    void aLongTitleIsShortened()
    {
        Fixture f;
        const QString title =
            u"First of many words, "_s + u"and more words, "_s.repeated(30) + u"the last"_s;
        f.add(title.left(400));
        f.add(u"B"_s);
        const QString text = f.tabs()->tabText(0);
        QVERIFY(text.startsWith(u"First of"_s));
        QVERIFY(text.contains(u'…'));
        const QFontMetrics metrics = f.tabs()->fontMetrics();
        QVERIFY(metrics.horizontalAdvance(text) <= 48 * metrics.averageCharWidth());
        QVERIFY(f.tabs()->tabToolTip(0).contains(title.left(400)));
        QCOMPARE(f.spectra().constFirst()->windowTitle(), title.left(400));
    }

    // Qt would shorten all of it, again and again.
    void ofAnEndlessTitleTheTabTakesTheBeginning()
    {
        Fixture f;
        const QString title(1'000'000, u'x');
        SpectrumWindow *spectrum = f.add(u"short"_s);
        Fixture::field(spectrum, u"lineEditTitle"_s)->setPlainText(title);
        QCOMPARE(spectrum->windowTitle(), title.left(10'000));
        QCOMPARE(f.area()->subWindowList().constFirst()->windowTitle(), title.left(500));
        QVERIFY(f.tabs()->tabToolTip(0).size() < 600);
    }

    void tabsAndTitlesStayTogetherWhenOneIsClosed()
    {
        Fixture f;
        for (const auto &title : {u"A"_s, u"B"_s, u"C"_s})
            f.add(title);
        f.area()->subWindowList().at(0)->close();
        Fixture::field(f.spectra().constLast(), u"lineEditTitle"_s)->setPlainText(u"D & E"_s);
        QCOMPARE(f.tabs()->tabText(0), u"B"_s);
        QCOMPARE(f.tabs()->tabText(1), u"D && E"_s);
    }

    void closingATabShowsItsNeighbour_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<int>("closed");
        QTest::addColumn<int>("shown"); // by the numbers from before
        for (const QString &way : {u"menu"_s, u"Ctrl+W"_s}) {
            const QByteArray name = way.toLatin1();
            QTest::addRow("the last, by %s", name.constData()) << way << 3 << 2;
            QTest::addRow("one in the middle, by %s", name.constData()) << way << 1 << 2;
            QTest::addRow("the first, by %s", name.constData()) << way << 0 << 1;
        }
    }
    void closingATabShowsItsNeighbour()
    {
        QFETCH(QString, way);
        QFETCH(int, closed);
        QFETCH(int, shown);
        Fixture f;
        for (const auto &title : {u"0"_s, u"1"_s, u"2"_s, u"3"_s})
            f.add(title);
        const QList<QMdiSubWindow *> before = f.area()->subWindowList();
        f.area()->setActiveSubWindow(before.at(closed));
        QSignalSpy activated(f.area(), &QMdiArea::subWindowActivated);
        if (way == u"menu"_s)
            f.trigger(u"actionDelete"_s);
        else
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(f.area()->subWindowList().size(), 3);
        QCOMPARE(f.area()->activeSubWindow(), before.at(shown));
        QVERIFY(before.at(shown)->isMaximized());
        QVERIFY(before.at(shown)->isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(f.tabs()->tabText(f.tabs()->currentIndex()), QString::number(shown));
        // No other sub-window comes up in between.
        for (const QList<QVariant> &arguments : activated) {
            auto *subWindow = arguments.value(0).value<QMdiSubWindow *>();
            QVERIFY(!subWindow || subWindow == before.at(shown));
        }
    }

    void closingTheLastTabWhileAFloatingDockHasTheKeyboardShowsItsNeighbour()
    {
        Fixture f;
        for (const auto &title : {u"0"_s, u"1"_s, u"2"_s})
            f.add(title);
        f.find<QDockWidget>(u"speciesDock"_s)->setFloating(true);
        CleanTextEdit *name = f.field(u"lineEditSpecies"_s);
        name->activateWindow();
        name->setFocus();
        QTRY_VERIFY(name->hasFocus());
        f.trigger(u"actionDelete"_s);
        QCOMPARE(f.area()->currentSubWindow(), f.area()->subWindowList().at(1));
        QCOMPARE(f.tabs()->currentIndex(), 1);
    }

    void aLastTabThatRefusesToCloseStays()
    {
        Fixture f;
        for (const auto &title : {u"0"_s, u"1"_s, u"2"_s})
            f.add(title);
        new Refusal(f.spectra().constLast());
        f.trigger(u"actionDelete"_s);
        QCOMPARE(f.area()->activeSubWindow(), f.area()->subWindowList().at(2));
        QCOMPARE(f.area()->subWindowList().size(), 3);
    }

    void theTabsAreThereAgainWhenAllWereClosed_data()
    {
        QTest::addColumn<int>("staying");
        QTest::newRow("none stays") << -1;
        QTest::newRow("the first stays") << 0;
        QTest::newRow("the last, which is current, stays") << 2;
    }
    void theTabsAreThereAgainWhenAllWereClosed()
    {
        QFETCH(int, staying);
        Fixture f;
        QList<SpectrumWindow *> spectra{f.add(u"0"_s), f.add(u"1"_s), f.add(u"2"_s)};
        QStringList titles;
        if (staying >= 0) {
            new Refusal(spectra.at(staying));
            titles.append(spectra.at(staying)->windowTitle());
        }
        closeQuietly(f.area());
        f.add(u"new"_s);
        titles.append(u"new"_s);
        QVERIFY(f.tabs()->isVisible());
        QCOMPARE(f.tabs()->count(), titles.size());
        for (int i = 0; i < titles.size(); ++i) {
            QCOMPARE(f.tabs()->tabText(i), titles.at(i));
            QVERIFY(f.tabs()->isTabVisible(i));
            QVERIFY(!f.tabs()->tabRect(i).isEmpty());
        }
        QCOMPARE(f.area()->activeSubWindow(), f.area()->subWindowList().constLast());
    }

    // Tab skips them: the arrows on the tabs scroll too.
    void theButtonsThatScrollTheTabsDoNotTakeTheKeyboard()
    {
        const Fixture f;
        const QList<QToolButton *> buttons = f.tabs()->findChildren<QToolButton *>();
        QCOMPARE(buttons.size(), 2);
        for (const QToolButton *button : buttons)
            QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    }

    void aSubWindowThatIsNoSpectrumIsLeftAlone()
    {
        Fixture f;
        f.add(u"A"_s);
        auto *other = new QWidget;
        auto *inside = new QPushButton(other);
        QMdiSubWindow *subWindow = f.area()->addSubWindow(other);
        subWindow->show();
        inside->setFocus();
        QCOMPARE(f.area()->activeSubWindow(), subWindow);
        QWindow *window = f.window.windowHandle();
        for (const int shown : {0, 1}) {
            f.field(u"lineEditSpecies"_s)->setFocus();
            QTest::keyClick(window, Qt::Key_Tab, Qt::ControlModifier);
            QCOMPARE(f.area()->subWindowList().indexOf(f.area()->activeSubWindow()), shown);
        }
    }

    // A click into a window in the background may come before the window is active.
    void aFieldThatIsChosenInAnInactiveWindowKeepsTheKeyboard()
    {
        Fixture f;
        const SpectrumWindow *spectrum = f.add(u"A"_s);
        Fixture::field(spectrum, u"lineEditTitle"_s)->setFocus();
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        CleanTextEdit *chosen = Fixture::field(spectrum, u"lineEditUploader"_s);
        chosen->setFocus(Qt::MouseFocusReason);
        f.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&f.window));
        QCOMPARE(QApplication::focusWidget(), chosen);
    }

    // In a window that is smaller than a spectrum.
    void whatTabReachesIsScrolledIntoSight()
    {
        Fixture f;
        SpectrumWindow *spectrum = f.add(u"A"_s);
        f.window.resize(500, 400);
        QVERIFY(f.area()->horizontalScrollBar()->maximum() > 0);
        QVERIFY(f.area()->verticalScrollBar()->maximum() > 0);
        f.tabs()->setFocus();
        QTest::keyClick(f.window.windowHandle(), Qt::Key_Tab);
        const QWidget *viewport = f.area()->viewport();
        QStringList seen;
        for (int i = 0; i < 20 && spectrum->isAncestorOf(QApplication::focusWidget()); ++i) {
            const QWidget *focused = QApplication::focusWidget();
            const QRect place(focused->mapTo(viewport, QPoint()), focused->size());
            const QRect shown = place & viewport->rect();
            QVERIFY2(shown.topLeft() == place.topLeft(), qPrintable(focused->objectName()));
            QVERIFY2(shown.width() == std::min(place.width(), viewport->width()),
                     qPrintable(focused->objectName()));
            QVERIFY2(shown.height() == std::min(place.height(), viewport->height()),
                     qPrintable(focused->objectName()));
            seen.append(focused->objectName());
            QTest::keyClick(f.window.windowHandle(), Qt::Key_Tab);
        }
        QVERIFY(seen.contains(u"buttonCommaToDot"_s));
        QVERIFY(seen.contains(u"chartSpectrum"_s));
    }
};

QTEST_MAIN(TestSpectrumTabs)
#include "tst_spectrumtabs.moc"

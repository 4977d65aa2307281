// SPDX-License-Identifier: GPL-3.0-or-later
// Entries of many spectra, of which one is shown: what the others hold, what they cost, and what is
// made of them when they come up.
#include "species/speciesfile.h"
#include "spectrum/pointeditor.h"
#include "spectrum/spectrumobject.h"
#include "spectrum/spectrumwindow.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QJsonArray>
#include <QLabel>
#include <QLineSeries>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QTextCursor>
#include <QVBoxLayout>
#include <QValueAxis>

#ifdef Q_OS_LINUX
#include <unistd.h>
#endif

namespace
{

using namespace Qt::Literals::StringLiterals;

QJsonObject richSpectrum(int type)
{
    return {{u"Title"_s, u"a<sub>2</sub> spectrum"_s},
            {u"Uploader"_s, u"somebody"_s},
            {u"SpectType"_s, type},
            {u"FurtherRefs"_s, u"one<br>two"_s},
            {u"FurtherComments"_s, u"line<br>line"_s},
            {u"T"_s, u"300"_s},
            {u"CreatedDate"_s, u"2020-02-02"_s},
            {u"LineSpectrum"_s, true},
            {u"Resolution"_s, u"12"_s},
            {u"AIE"_s, u"9.24"_s},
            {u"E"_s, QJsonArray{10.5, 11.25, 12}},
            {u"I"_s, QJsonArray{1, 3, 2}}};
}

// More than the few that are shown at once.
QList<QJsonObject> manySpectra(int type = 0)
{
    return QList<QJsonObject>(12, richSpectrum(type));
}

QString load(MainWindowFixture &fixture, const QList<QJsonObject> &spectra)
{
    QString path = fixture.path(u"many.json"_s);
    writeFile(path, speciesFileObject({}, spectra));
    if (!fixture.window.loadSpeciesFile(path))
        qFatal("cannot load %s", qPrintable(path));
    return path;
}

// All that the parts of a spectrum window hold, in words.
QStringList contentsOf(const SpectrumWindow *window)
{
    QStringList contents{window->windowTitle()};
    const QList<QWidget *> parts = window->findChildren<QWidget *>();
    for (QWidget *part : parts) {
        QString held = part->objectName() + u": "_s;
        if (const auto *field = qobject_cast<CleanTextEdit *>(part))
            held += field->cleanedHtml() + u"|"_s + field->toPlainText();
        else if (const auto *points = qobject_cast<QPlainTextEdit *>(part))
            held += points->toPlainText();
        else if (const auto *label = qobject_cast<QLabel *>(part))
            held += label->text();
        else if (const auto *types = qobject_cast<QComboBox *>(part))
            held += QString::number(types->currentIndex());
        else if (const auto *box = qobject_cast<QCheckBox *>(part))
            held += box->isChecked() ? u"checked"_s : u"unchecked"_s;
        else
            continue;
        contents.append(held + part->accessibleDescription());
    }
    const auto *view = window->findChild<QChartView *>(u"chartSpectrum"_s);
    contents.append(view->accessibleDescription());
    const auto *series = qobject_cast<QLineSeries *>(view->chart()->series().value(0));
    const QList<QPointF> corners = series->points();
    for (const QPointF &corner : corners)
        contents.append(u"%1 %2"_s.arg(corner.x()).arg(corner.y()));
    const QList<QAbstractAxis *> axes = view->chart()->axes();
    for (QAbstractAxis *axis : axes) {
        const auto *values = qobject_cast<QValueAxis *>(axis);
        contents.append(u"%1 to %2"_s.arg(values->min()).arg(values->max()));
    }
    return contents;
}

QImage lookOf(SpectrumWindow *window)
{
    QCoreApplication::processEvents();
    return window->grab().toImage();
}

} // namespace

class TestManySpectra : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void aSpectrumThatIsNotShownHoldsAllThatAShownOneDoes_data()
    {
        QTest::addColumn<int>("type");
        for (const int type : {0, 4, 7})
            QTest::addRow("type %d", type) << type;
    }

    void aSpectrumThatIsNotShownHoldsAllThatAShownOneDoes()
    {
        QFETCH(int, type);
        MainWindowFixture fixture;
        load(fixture, manySpectra(type));
        const QList<SpectrumWindow *> spectra = fixture.spectra();
        const QStringList covered = contentsOf(spectra.at(1));
        QCOMPARE(fixture.field(spectra.at(1), u"lineEditTitle"_s)->styleSheet(),
                 u"background-color: white; border: 1px solid gray; padding: 2px;"_s);
        QVERIFY(covered.size() > 30);
        QCOMPARE(covered, contentsOf(spectra.first()));
        QVERIFY(spectra.at(1)->isVisible());
        QCOMPARE(spectra.at(1)->toJson(), spectra.first()->toJson());

        fixture.area()->setActiveSubWindow(fixture.area()->subWindowList().at(1));
        QCOMPARE(contentsOf(spectra.at(1)), covered);
        QVERIFY(!fixture.isModified());
    }

    void ofAFewSpectraAllFormsAreMadeAtOnce()
    {
        MainWindowFixture fixture;
        load(fixture, manySpectra().mid(0, 10));
        for (const SpectrumWindow *spectrum : fixture.spectra())
            QVERIFY(fixture.field(spectrum, u"lineEditTitle"_s)->isVisible());
    }

    void theFormIsMadeForTheEyeWhenItsSpectrumComesUp()
    {
        MainWindowFixture fixture;
        load(fixture, manySpectra());
        QCoreApplication::processEvents();
        const QList<SpectrumWindow *> spectra = fixture.spectra();
        const auto *covered = fixture.field(spectra.at(1), u"lineEditTitle"_s);
        QVERIFY(fixture.field(spectra.first(), u"lineEditTitle"_s)->isVisible());
        QVERIFY(!covered->isVisible());

        fixture.area()->setActiveSubWindow(fixture.area()->subWindowList().at(1));
        QVERIFY(covered->isVisible());
        for (const QWidget *part :
             spectra.at(1)->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
            QVERIFY2(part->isVisible() && !part->sizePolicy().retainSizeWhenHidden(),
                     qPrintable(part->objectName()));
    }

    void aSpectrumThatComesUpTakesTheKeyboardAndLooksLikeTheFirst()
    {
        MainWindowFixture fixture;
        fixture.window.resize(1200, 1000);
        load(fixture, manySpectra());
        const QList<SpectrumWindow *> spectra = fixture.spectra();
        const QImage first = lookOf(spectra.first());
        spectra.first()->focusTitle();
        fixture.area()->activateNextSubWindow();
        QCOMPARE(QApplication::focusWidget(), fixture.field(spectra.at(1), u"lineEditTitle"_s));
        fixture.field(u"lineEditSpecies"_s)->setFocus();
        QCOMPARE(lookOf(spectra.at(1)), first);
    }

    // Not for each part of the form that is shown.
    void theChartIsLaidOutTwiceAtMostWhenItsSpectrumComesUp()
    {
        MainWindowFixture fixture;
        load(fixture, manySpectra());
        QCoreApplication::processEvents();
        const auto *view = fixture.spectra().at(1)->findChild<QChartView *>(u"chartSpectrum"_s);
        const QSignalSpy layouts(view->chart(), &QChart::plotAreaChanged);
        fixture.area()->activateNextSubWindow();
        QCoreApplication::processEvents();
        QVERIFY2(layouts.size() == 1 || layouts.size() == 2,
                 qPrintable(QString::number(layouts.size())));
    }

    void whatIsPaintedIsShownHoweverItCameUp()
    {
        MainWindowFixture fixture;
        load(fixture, manySpectra());
        SpectrumWindow *covered = fixture.spectra().at(1);
        covered->grab();
        QVERIFY(fixture.field(covered, u"lineEditTitle"_s)->isVisible());
    }

    void tabsThatWereHiddenOnTheWayAreAllShown()
    {
        MainWindowFixture fixture;
        for (const int count : {1, 3, 11}) {
            load(fixture, QList<QJsonObject>(count, richSpectrum(0)));
            const auto *tabs = fixture.area()->findChild<QTabBar *>();
            QVERIFY(tabs->isVisible());
            QCOMPARE(tabs->count(), count);
            int right = 0;
            for (int i = 0; i < count; ++i) {
                QVERIFY(tabs->isTabVisible(i));
                QVERIFY(tabs->tabRect(i).left() >= right && tabs->tabRect(i).width() > 50);
                right = tabs->tabRect(i).right();
            }
        }
    }

    void manyPointsAreNotWrappedAndKeepTheirText()
    {
        constexpr int count = 100'001;
        QJsonArray numbers;
        for (int i = 0; i < count; ++i)
            numbers.append(i % 10);
        MainWindowFixture fixture;
        load(fixture, {{{u"E"_s, numbers}, {u"I"_s, numbers}}, richSpectrum(0)});
        const auto *many = MainWindowFixture::points(fixture.spectra().constFirst());
        QCOMPARE(many->lineWrapMode(), QPlainTextEdit::NoWrap);
        QCOMPARE(many->blockCount(), count);
        QCOMPARE(many->toPlainText().left(10), u"0; 0\n1; 1\n"_s);
        const auto *few = MainWindowFixture::points(fixture.spectra().at(1));
        QCOMPARE(few->lineWrapMode(), QPlainTextEdit::WidgetWidth);
    }

    void linesAreWrappedAgainOnceTheyAreFew()
    {
        constexpr int count = 100'001;
        PointEditor editor;
        editor.setPlainText(QStringList(count, u"1 2"_s).join(u'\n'));
        QCOMPARE(editor.lineWrapMode(), QPlainTextEdit::NoWrap);
        QTextCursor cursor(editor.document());
        cursor.movePosition(QTextCursor::NextBlock);
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        QCOMPARE(editor.lineWrapMode(), QPlainTextEdit::WidgetWidth);
        editor.undo();
        QCOMPARE(editor.lineWrapMode(), QPlainTextEdit::NoWrap);
    }

    void whatOthersAskedForIsDoneAllTheSame()
    {
        MainWindowFixture fixture;
        QWidget other;
        load(fixture, manySpectra());
        QVERIFY(other.testAttribute(Qt::WA_WState_Polished));
        other.resize(200, 200);
        auto *layout = new QVBoxLayout(&other);
        auto *part = new QWidget;
        layout->addWidget(part);
        other.show();
        QCoreApplication::processEvents();
        part->setMinimumHeight(150);
        load(fixture, manySpectra());
        QCoreApplication::processEvents();
        QVERIFY(part->height() >= 150 && layout->isEnabled());
    }

    void aSpectrumThatIsNotShownTakesLittleMemory()
    {
#if !defined(Q_OS_LINUX) || defined(__SANITIZE_ADDRESS__)
        QSKIP("asks Linux for the memory of this process, which the sanitizers enlarge");
#else
        constexpr int count = 300;
        const auto residentBytes = [] {
            QFile file(u"/proc/self/statm"_s);
            if (!file.open(QIODevice::ReadOnly))
                qFatal("cannot read the size of this process");
            return file.readAll().split(' ').at(1).toLongLong() * sysconf(_SC_PAGESIZE);
        };
        MainWindowFixture fixture;
        load(fixture, {QJsonObject()});
        QCoreApplication::processEvents();
        const qint64 before = residentBytes();
        load(fixture, QList<QJsonObject>(count, QJsonObject()));
        QCoreApplication::processEvents();
        const qint64 each = (residentBytes() - before) / count;
        // One that is shown takes 1.4 MB.
        qInfo("%lld bytes", each);
        QVERIFY2(each <= 700'000, qPrintable(u"%1 bytes"_s.arg(each)));
#endif
    }
};

QTEST_MAIN(TestManySpectra)
#include "tst_manyspectra.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/compileprogress.h"
#include "spectrum/spectrumwindow.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "testfiles.h"
#include "widgets/cleantextedit.h"

#include <QChart>
#include <QChartView>
#include <QDate>
#include <QFile>
#include <QGraphicsTextItem>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <clocale>

using namespace Qt::StringLiterals;

// Numbers and dates look and are written the same in every locale. All tests of this folder run in
// some locales; this one checks what no other has reason to check.
class TestLocale : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void isRunInTheLocaleOfTheEnvironment();
    void showsNumbersWithPointsAndPlainDigits();
    void showsPlainDigitsUnderTheMouse();
    void datesNewSpectraInPlainDigits();
    void keepsTheDirectionOfTheForms();
    void countsFilesInPlainDigits();
    void savesTheSameFile();
};

namespace
{

// Every text in the chart: titles and numbers of the axes.
QStringList chartTexts(const SpectrumWindow *spectrum)
{
    const auto *view = spectrum->findChild<QChartView *>();
    QStringList texts;
    for (const QGraphicsItem *item : view->scene()->items()) {
        const auto *text = qgraphicsitem_cast<const QGraphicsTextItem *>(item);
        if (text && text->isVisible())
            texts.append(text->toPlainText());
    }
    return texts;
}

bool isPlainNumber(const QString &text)
{
    static const QRegularExpression form(u"^-?[0-9]+\\.[0-9]{2}$"_s);
    return form.match(text).hasMatch();
}

} // namespace

void TestLocale::init()
{
    failOnWarnings();
}

void TestLocale::isRunInTheLocaleOfTheEnvironment()
{
    const QByteArray wanted = qgetenv("LC_ALL");
    QCOMPARE(QByteArray(std::setlocale(LC_NUMERIC, nullptr)), wanted);
    const QLocale locale;
    if (wanted == "de_DE.UTF-8") {
        QCOMPARE(QByteArray(std::localeconv()->decimal_point), QByteArray(","));
        QCOMPARE(locale.toString(1234.5), u"1.234,5"_s);
    } else if (wanted == "ar_EG.UTF-8") {
        QCOMPARE(locale.toString(12.5), u"١٢٫٥"_s);
        QCOMPARE(locale.textDirection(), Qt::RightToLeft);
    } else {
        QCOMPARE(locale.language(), QLocale::C);
    }
}

void TestLocale::showsNumbersWithPointsAndPlainDigits()
{
    MainWindowFixture f;
    QVERIFY(f.window.loadSpeciesFile(QStringLiteral(ZORAVEL_EXAMPLES "/benzene.json")));
    QCOMPARE(f.field(u"lineEditMass"_s)->toPlainText(), u"78.112"_s);
    const SpectrumWindow *spectrum = f.spectra().constFirst();
    QVERIFY(
        MainWindowFixture::points(spectrum)->toPlainText().startsWith(u"9.1; 3.7\n9.102; 3.4\n"_s));

    int numbers = 0;
    QTRY_VERIFY(chartTexts(spectrum).size() > 6);
    for (const QString &text : chartTexts(spectrum)) {
        if (isPlainNumber(text))
            ++numbers;
        else
            QVERIFY2(text.isEmpty() || text.contains(u'/'), qPrintable(text));
    }
    QVERIFY2(numbers >= 8, qPrintable(chartTexts(spectrum).join(u' ')));

    // Only now was the text changed, which shows the number of lines.
    MainWindowFixture::typePoints(spectrum, QString(1500, u'\n'));
    QCOMPARE(spectrum->findChild<QLabel *>(u"label_14"_s)->text(),
             u"Spectrum, I(hv / eV) (2051 lines)"_s);
}

void TestLocale::showsPlainDigitsUnderTheMouse()
{
    MainWindowFixture f;
    QVERIFY(f.window.loadSpeciesFile(QStringLiteral(ZORAVEL_EXAMPLES "/benzene.json")));
    const auto *view = f.spectra().constFirst()->findChild<QChartView *>();
    QTest::mouseMove(view->viewport(), view->viewport()->rect().center());
    static const QRegularExpression form(u"^hν: [0-9]+\\.[0-9]+, I: [0-9]+\\.[0-9]+$"_s);
    const auto *label = view->findChild<QLabel *>();
    QTRY_VERIFY2(form.match(label->text()).hasMatch(), qPrintable(label->text()));
}

void TestLocale::datesNewSpectraInPlainDigits()
{
    MainWindowFixture f;
    const QDate before = QDate::currentDate();
    f.trigger(u"actionNew"_s);
    const QString shown = f.spectra().constFirst()->findChild<QLabel *>(u"labelCreated"_s)->text();
    static const QRegularExpression form(u"^[0-9]{4}-[0-9]{2}-[0-9]{2}$"_s);
    QVERIFY2(form.match(shown).hasMatch(), qPrintable(shown));
    const QDate date = QDate::fromString(shown, Qt::ISODate);
    QVERIFY(date >= before && date <= QDate::currentDate());
}

// Texts are not translated, so mirrored forms would not fit them.
void TestLocale::keepsTheDirectionOfTheForms()
{
    const MainWindowFixture f;
    QCOMPARE(QGuiApplication::layoutDirection(), Qt::LeftToRight);
    QCOMPARE(f.window.layoutDirection(), Qt::LeftToRight);
}

void TestLocale::countsFilesInPlainDigits()
{
    CompileProgressDialog progress(4, nullptr);
    progress.setValue(2);
    QCOMPARE(progress.findChild<QProgressBar *>()->text(), u"50%"_s);
}

// The expected bytes are the same in all locales, as the example comes from another one.
void TestLocale::savesTheSameFile()
{
    MainWindowFixture f;
    const QString copy = f.path(u"water.json"_s);
    QVERIFY(QFile::copy(QStringLiteral(ZORAVEL_EXAMPLES "/water.json"), copy));
    QVERIFY(f.window.loadSpeciesFile(copy));
    CleanTextEdit *mass = f.field(u"lineEditMass"_s);
    mass->setFocus();
    mass->selectAll();
    QTest::keyClicks(mass, u"1234567.5"_s);
    SpectrumWindow *spectrum = f.spectra().constFirst();
    MainWindowFixture::typePoints(spectrum, u"1234.5 1e6\n"_s);
    MainWindowFixture::letPointsBeRead(spectrum);
    f.trigger(u"actionSaveSpecies"_s);

    const QByteArray saved = fileBytes(copy);
    QVERIFY(saved.contains("\"Mass\": 1234567.5,"));
    QVERIFY(saved.contains("\"E\": [\n            1234.5,\n            12.2,\n"));
    QVERIFY(saved.contains("\"I\": [\n            1000000,\n"));
    const auto isForeignDigit = [](QChar letter) { return letter.isDigit() && letter > u'9'; };
    const QString text = QString::fromUtf8(saved);
    QVERIFY(std::none_of(text.begin(), text.end(), isForeignDigit));
}

QTEST_MAIN(TestLocale)

#include "tst_locale.moc"

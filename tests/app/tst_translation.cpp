// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/compileprogress.h"
#include "app/translation.h"
#include "database/createdatabase.h"
#include "spectrum/spectrumwindow.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"

#include <QAbstractButton>
#include <QAction>
#include <QChart>
#include <QChartView>
#include <QClipboard>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QDockWidget>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolBar>
#include <QTranslator>
#include <QValueAxis>

#include <functional>

using namespace Qt::StringLiterals;

// Shows the windows in a translation that puts each text of the template into angle quotes, so that
// an untranslated text shows.
class TestTranslation : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void changesNothingWithoutATranslation();
    void translatesTheMainWindow();
    void translatesASpectrumWindow();
    void translatesTheDatabaseDialog();
    void translatesMessages();
    void translatesEveryError_data();
    void translatesEveryError();
    void keepsShortcuts();
};

namespace
{

const QString folder = QStringLiteral(ZORAVEL_PSEUDO_TRANSLATION_FOLDER);

// Qt's own texts have their own translations.
bool isOfQt(const QWidget *widget)
{
    return widget->objectName().startsWith(u"qt_"_s)
           || qobject_cast<const QDialogButtonBox *>(widget->parentWidget())
           || widget->parentWidget()->inherits("QTabBar");
}

void add(QStringList &texts, const QString &text)
{
    if (!text.isEmpty())
        texts.append(text);
}

void addTextsOf(QStringList &texts, const QWidget *widget)
{
    add(texts, widget->accessibleName());
    add(texts, widget->toolTip());
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        add(texts, label->text());
    else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        add(texts, button->text());
    else if (const auto *menu = qobject_cast<const QMenu *>(widget))
        add(texts, menu->title());
    else if (const auto *line = qobject_cast<const QLineEdit *>(widget))
        add(texts, line->text());
    else if (qobject_cast<const QDockWidget *>(widget) || qobject_cast<const QToolBar *>(widget))
        add(texts, widget->windowTitle());
    else if (const auto *box = qobject_cast<const QComboBox *>(widget))
        for (int i = 0; i < box->count(); ++i)
            add(texts, box->itemText(i));
    else if (const auto *view = qobject_cast<const QChartView *>(widget))
        for (const QAbstractAxis *axis : view->chart()->axes())
            add(texts, axis->titleText());
}

// Every text that a window shows in its widgets and actions; contents of fields are not among them.
QStringList textsOf(const QWidget *window)
{
    QStringList texts{window->windowTitle()};
    for (const QWidget *widget : window->findChildren<QWidget *>()) {
        if (!isOfQt(widget))
            addTextsOf(texts, widget);
    }
    for (const QAction *action : window->findChildren<QAction *>()) {
        if (action->objectName().startsWith(u"action"_s))
            texts << action->text() << action->toolTip();
    }
    return texts;
}

QStringList untranslated(const QWidget *window)
{
    QStringList texts = textsOf(window);
    texts.removeIf([](const QString &text) {
        return text.isEmpty() || (text.startsWith(u'«') && text.endsWith(u'»'));
    });
    texts.sort();
    texts.removeDuplicates();
    return texts;
}

void translate()
{
    installTranslation(folder, QLocale(QLocale::German));
}

// Opens a box, or prepares that.
using Step = std::function<void(MainWindowFixture &, Dialogs &)>;

const Step nothing = [](auto &, auto &) {};

Step trigger(const char *action)
{
    return [action](const MainWindowFixture &f, auto &) { f.trigger(QLatin1String(action)); };
}

Step copy(const QString &text)
{
    return [text](auto &, auto &) { QGuiApplication::clipboard()->setText(text); };
}

Step resample(const QJsonObject &spectrum)
{
    return [spectrum](MainWindowFixture &f, auto &) {
        f.window.createNewSpectrumWindow(spectrum);
        f.spectra().constFirst()->findChild<QPushButton *>(u"buttonSparse"_s)->click();
    };
}

const Step chooseAnEmptyObject = [](MainWindowFixture &f, Dialogs &dialogs) {
    writeFile(f.path(u"a.json"_s), QByteArray("{}"));
    dialogs.choose(f.path(u"a.json"_s));
};

// The folder of the file is gone when the dialog is over.
const Step chooseInAFolderThatGoes = [](MainWindowFixture &f, Dialogs &dialogs) {
    f.trigger(u"actionNew"_s);
    const QString gone = f.path(u"folder"_s);
    QDir().mkpath(gone);
    dialogs.handle([gone](QWidget *widget) {
        auto *dialog = qobject_cast<QDialog *>(widget);
        widget->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(gone + u"/a.json"_s);
        QObject::connect(dialog, &QDialog::finished, dialog, [gone] { QDir().rmdir(gone); });
        dialog->accept();
    });
};

} // namespace

Q_DECLARE_METATYPE(Step)

void TestTranslation::init()
{
    failOnWarnings();
}

void TestTranslation::cleanup()
{
    for (QTranslator *translator : QCoreApplication::instance()->findChildren<QTranslator *>())
        delete translator;
}

void TestTranslation::changesNothingWithoutATranslation()
{
    installTranslation(folder, QLocale(QLocale::Finnish));
    installTranslation(translationFolder(), QLocale());
    QVERIFY(QCoreApplication::instance()->findChildren<QTranslator *>().isEmpty());
    const MainWindowFixture f;
    QCOMPARE(f.find<QAction>(u"actionNextFile"_s)->text(), u"Next File"_s);
    QVERIFY(untranslated(&f.window).size() > 20);
}

void TestTranslation::translatesTheMainWindow()
{
    translate();
    const MainWindowFixture f;
    QCOMPARE(f.window.windowTitle(), u"«ZORAVEL Entry Edit»"_s);
    QCOMPARE(f.find<QAction>(u"actionSubscript"_s)->toolTip(), u"«Ctrl + B»"_s);
    QCOMPARE(untranslated(&f.window), QStringList());
    QVERIFY(textsOf(&f.window).size() > 40);
}

void TestTranslation::translatesASpectrumWindow()
{
    translate();
    MainWindowFixture f;
    f.trigger(u"actionNew"_s);
    SpectrumWindow *spectrum = f.spectra().constFirst();
    MainWindowFixture::typePoints(spectrum, u"1 2\n"_s);
    QCOMPARE(spectrum->findChild<QLabel *>(u"label_14"_s)->text(),
             u"«Spectrum, I(hv / eV) (2 lines)»"_s);

    // The date, and the labels that follow the type, whose texts are fixed.
    const QString date = spectrum->findChild<QLabel *>(u"labelCreated"_s)->text();
    QStringList fixed{
        date,
        u"Comments: mass resolution, extraction field, details of spectral treatment, sample / "
        u"isomeric purity etc."_s,
        u"Flux normalization"_s,
        u"Further citations (expt., source, light source etc.)"_s,
        u"Resolution / meV"_s,
        u"Source"_s,
        u"Source T / K"_s,
    };
    QCOMPARE(untranslated(spectrum), fixed);

    spectrum->findChild<QComboBox *>()->setCurrentIndex(4);
    fixed = {date,
             u"0-0 transition / eV"_s,
             u"Comments: programs used, approximations, convergence, simulation issues etc."_s,
             u"Conv. FWHM / meV"_s,
             u"Further citations (program(s), theory etc.)"_s,
             u"Level(s) of theory"_s,
             u"Vib. T / K"_s};
    fixed.sort();
    QCOMPARE(untranslated(spectrum), fixed);
    QVERIFY(textsOf(spectrum).contains(u"«hν / eV»"_s));
    QVERIFY(textsOf(spectrum).contains(u"«FC simulation»"_s));
}

void TestTranslation::translatesTheDatabaseDialog()
{
    translate();
    const CreateDatabase dialog;
    QCOMPARE(dialog.windowTitle(), u"«Create database»"_s);
    QCOMPARE(dialog.version(), u"«1.0»"_s);
    QCOMPARE(untranslated(&dialog), QStringList());
    QVERIFY(textsOf(&dialog).size() > 10);

    const CompileProgressDialog progress(1, nullptr);
    QCOMPARE(progress.windowTitle(), u"«Create database»"_s);
}

// Fixed texts stay as they are among translated ones.
void TestTranslation::translatesMessages()
{
    translate();
    MainWindowFixture f;
    Dialogs dialogs;
    dialogs.press().press();
    QVERIFY(!f.window.loadSpeciesFile(u"/nowhere.json"_s));
    QCOMPARE(dialogs.boxes[0].title, u"«File Not Found»"_s);
    QCOMPARE(dialogs.boxes[0].text, u"«The file /nowhere.json does not exist.»"_s);
    QVERIFY(!f.window.loadJSONSpecies(u"/nowhere.json"_s));
    QCOMPARE(dialogs.boxes[1].title, u"Error"_s);
    QCOMPARE(dialogs.boxes[1].text, u"Could not open file for reading"_s);
}

void TestTranslation::translatesEveryError_data()
{
    QTest::addColumn<Step>("answer");
    QTest::addColumn<Step>("act");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *text, const Step &answer, const Step &act) {
        QTest::newRow(text) << answer << act << QString::fromLatin1(text);
    };
    const Step escape = [](auto &, Dialogs &dialogs) { dialogs.escape(); };
    row("Could not open file for writing.", chooseInAFolderThatGoes, trigger("actionSaveSpecies"));
    row("Could not open file for writing", chooseInAFolderThatGoes,
        trigger("actionSaveSpectrumAs"));
    row("Could not open file for reading", escape, trigger("actionLoadSpectrum"));
    row("Spectrum not found in JSON file. Load aborted.", chooseAnEmptyObject,
        trigger("actionLoadSpectrum"));
    row("No active spectrum window to save.", nothing, trigger("actionSaveSpectrumAs"));
    row("No spectrum window is selected.", nothing, trigger("actionCopy"));
    row("Clipboard does not contain a valid spectrum.", copy(u"x"_s), trigger("actionPaste"));
    row("Format error, cannot paste.", copy(u"{}"_s), trigger("actionPaste"));
    row("Cannot resample line spectra", nothing, resample({{u"LineSpectrum"_s, true}}));
    row("Energy range too large to resample", nothing,
        resample({{u"E"_s, QJsonArray{1, 1e9}}, {u"I"_s, QJsonArray{1, 2}}}));
}

void TestTranslation::translatesEveryError()
{
    QFETCH(Step, answer);
    QFETCH(Step, act);
    QFETCH(QString, text);
    translate();
    MainWindowFixture f;
    Dialogs dialogs;
    answer(f, dialogs);
    dialogs.press();
    act(f, dialogs);
    QCOMPARE(dialogs.boxes.size(), 1);
    QCOMPARE(dialogs.boxes[0].title, u"«Error»"_s);
    QCOMPARE(dialogs.boxes[0].text, QString(u'«' + text + u'»'));
}

void TestTranslation::keepsShortcuts()
{
    translate();
    const MainWindowFixture f;
    QCOMPARE(f.find<QAction>(u"actionSaveSpecies"_s)->shortcut(), QKeySequence(u"Ctrl+S"_s));
    QCOMPARE(f.find<QAction>(u"actionNew"_s)->shortcut(), QKeySequence(u"Ctrl+Shift+N"_s));
}

QTEST_MAIN(TestTranslation)

#include "tst_translation.moc"

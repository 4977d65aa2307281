// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumwindow.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace
{

const QString untitled = QStringLiteral("ZORAVEL Entry Edit - (untitled)");
const QString savePrompt = QStringLiteral("The species has been modified.");

QString storedFolder()
{
    return QSettings(QStringLiteral("Tarnwick Institute"), QStringLiteral("ZORAVEL"))
        .value(QStringLiteral("lastOpenFolder"))
        .toString();
}

void store(const QString &folder)
{
    QSettings settings(QStringLiteral("Tarnwick Institute"), QStringLiteral("ZORAVEL"));
    settings.setValue(QStringLiteral("lastOpenFolder"), folder);
}

// A text that a field cannot show as it is.
const QString rawText = QStringLiteral("m/z <40,  two blanks\nand a line");

QJsonObject withRawTexts()
{
    QJsonObject file = speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")});
    // Saving removes tags from the form's texts.
    QJsonObject species = file[QLatin1String("Species")].toObject();
    QJsonObject spectrum = file[QLatin1String("Dataset1")].toObject();
    species[QLatin1String("Aliases")] = QStringLiteral("two  blanks\nand a line");
    spectrum[QLatin1String("FurtherComments")] = rawText;
    file[QLatin1String("Species")] = species;
    file[QLatin1String("Dataset1")] = spectrum;
    return file;
}

QJsonObject withEdit(QJsonObject file, bool isInSpectrum, const QString &text)
{
    const QLatin1String part(isInSpectrum ? "Dataset1" : "Species");
    QJsonObject object = file[part].toObject();
    object[QLatin1String(isInSpectrum ? "Uploader" : "PubChem")] = text;
    file[part] = object;
    return file;
}

// At the start of the field.
void insertAccessibly(QWidget *field, const QString &text)
{
    QAccessible::queryAccessibleInterface(field)->editableTextInterface()->insertText(0, text);
}

} // namespace

// The window's knowledge of the document: its file, its changes, the prompt that guards them, and
// the start folder of dialogs.
class TestMainWindowDocument : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void cleanUpWithoutChangesAsksNothingAndEmptiesEverything()
    {
        MainWindowFixture fixture;
        writeFile(fixture.path(QStringLiteral("a.json")),
                  speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(fixture.path(QStringLiteral("a.json"))));
        const Dialogs none;
        fixture.trigger(QStringLiteral("actionClean"));
        QCOMPARE(fixture.window.windowTitle(), untitled);
        QCOMPARE(fixture.field(QStringLiteral("lineEditSpecies"))->cleanedHtml(), QString());
        QCOMPARE(fixture.field(QStringLiteral("lineEditMass"))->cleanedHtml(), QString());
        QVERIFY(fixture.spectra().isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(fixture.window.windowTitle(), untitled);
        QVERIFY(none.boxes.isEmpty());
    }

    void cancelLeavesDocumentFileAndTitleAlone_data()
    {
        QTest::addColumn<int>("way");
        for (const char *way : {"clean", "load", "drop", "close", "step"})
            QTest::newRow(way) << 0;
    }
    void cancelLeavesDocumentFileAndTitleAlone()
    {
        const QByteArray way = QTest::currentDataTag();
        MainWindowFixture fixture;
        const QString first = fixture.path(QStringLiteral("first.json"));
        const QString second = fixture.path(QStringLiteral("second.json"));
        writeFile(first, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        writeFile(second, speciesFileWith(QStringLiteral("ammonia")));
        QVERIFY(fixture.window.loadSpeciesFile(first));
        fixture.trigger(QStringLiteral("actionNew"));
        const QString title = fixture.window.windowTitle();
        QCOMPARE(title, QStringLiteral("ZORAVEL Entry Edit - first.json *"));

        Dialogs dialogs;
        dialogs.press(QMessageBox::Cancel);
        if (way == "clean") {
            fixture.window.cleanUp();
        } else if (way == "load") {
            QVERIFY(!fixture.window.loadSpeciesFile(second));
        } else if (way == "drop") {
            QVERIFY(dropFiles(&fixture.window, {second}));
        } else if (way == "step") {
            if (!fixture.window.findChild<QAction *>(QStringLiteral("actionNextFile"))->isEnabled())
                QFAIL("stepping is disabled");
            fixture.trigger(QStringLiteral("actionNextFile"));
        } else {
            QVERIFY(!fixture.window.close());
            QVERIFY(fixture.window.isVisible());
        }
        QCOMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(fixture.window.windowTitle(), title);
        QCOMPARE(fixture.spectra().size(), 2);
        QCOMPARE(fixture.field(QStringLiteral("lineEditSpecies"))->cleanedHtml(),
                 QStringLiteral("water"));
    }

    void promptHasItsTextsButtonsAndNeitherParentNorTitleNorIcon()
    {
        MainWindowFixture fixture;
        fixture.window.setModified();
        Dialogs dialogs;
        dialogs.escape();
        QVERIFY(!fixture.window.promptToSaveChanges());
        const SeenBox box = dialogs.boxes.value(0);
        QCOMPARE(box.text, savePrompt);
        QCOMPARE(box.informativeText, QStringLiteral("Do you want to save your changes?"));
        QCOMPARE(box.buttons, QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        QCOMPARE(box.defaultButton, QMessageBox::Save);
        QCOMPARE(box.parent, nullptr);
        QCOMPARE(box.title, QString());
        QCOMPARE(box.icon, QMessageBox::NoIcon);
    }

    void savingInThePromptOfAnUntitledDocumentAsksForAFileAndGoesOnWhenThatIsCancelled()
    {
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionNew"));
        Dialogs dialogs;
        dialogs.press(QMessageBox::Save).escape();
        fixture.window.cleanUp();
        QCOMPARE(dialogs.fileDialogTitles, QStringList{QStringLiteral("Save Species JSON File")});
        QVERIFY(fixture.spectra().isEmpty());
        QCOMPARE(fixture.window.windowTitle(), untitled);
    }

    void aSaveThatFailsInThePromptStillGoesOn()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("gone/a.json"));
        QDir().mkpath(fixture.path(QStringLiteral("gone")));
        writeFile(file, speciesFileWith(QStringLiteral("water")));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QVERIFY(QDir(fixture.path(QStringLiteral("gone"))).removeRecursively());
        fixture.window.setModified();
        Dialogs dialogs;
        dialogs.press(QMessageBox::Save).press(QMessageBox::Ok);
        QVERIFY(fixture.window.promptToSaveChanges());
        QCOMPARE(dialogs.boxes.value(1).text, QStringLiteral("Could not open file for writing."));
    }

    void titleShowsTheNameOfTheFileAsStoredWithoutFolder()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("x/Benzene.JSON"));
        QDir().mkpath(fixture.path(QStringLiteral("x")));
        fixture.trigger(QStringLiteral("actionNew"));
        QCOMPARE(fixture.window.windowTitle(), untitled + QStringLiteral(" *"));
        Dialogs dialogs;
        dialogs.choose(file);
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - Benzene.JSON"));
        fixture.window.setModified();
        QCOMPARE(fixture.window.windowTitle(),
                 QStringLiteral("ZORAVEL Entry Edit - Benzene.JSON *"));
    }

    // "[*]" is Qt's place for a mark.
    void titleShowsTheNameOfTheFileLetterByLetter_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"a[*].json", "[*]", "a[*][*]b[*].json", "a[[*]*].json", "%1 &b.json"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void titleShowsTheNameOfTheFileLetterByLetter()
    {
        QFETCH(QString, name);
        MainWindowFixture fixture;
        writeFile(fixture.path(name), speciesFileWith(QStringLiteral("water")));
        QVERIFY(fixture.window.loadSpeciesFile(fixture.path(name)));
        const QString title = QStringLiteral("ZORAVEL Entry Edit - ") + name;
        QCOMPARE(fixture.window.windowHandle()->title(), title);
        fixture.window.setModified();
        QCOMPARE(fixture.window.windowHandle()->title(), title + QStringLiteral(" *"));
    }

    void rightAfterCleanUpTheTitleCarriesNoMark()
    {
        MainWindowFixture fixture;
        writeFile(fixture.path(QStringLiteral("a.json")),
                  speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(fixture.path(QStringLiteral("a.json"))));
        auto *name = fixture.field(QStringLiteral("lineEditSpecies"));
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("heavy "));
        Dialogs dialogs;
        dialogs.press(QMessageBox::Discard);
        fixture.window.cleanUp();
        QCOMPARE(fixture.window.windowTitle(), untitled);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(fixture.window.windowTitle(), untitled);
    }

    void closingAsksForATypedTextThatHasNotLeftItsField()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water")));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        auto *name = fixture.field(QStringLiteral("lineEditSpecies"));
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("D"));
        QVERIFY(!fixture.isModified());
        Dialogs dialogs;
        dialogs.press(QMessageBox::Save);
        QVERIFY(fixture.window.close());
        QCOMPARE(fileObject(file)[QLatin1String("Species")][QLatin1String("Name")].toString(),
                 QStringLiteral("Dwater"));
    }

    void anEditWithoutTheFocusIsMarkedAskedAboutAndSaved_data()
    {
        QTest::addColumn<bool>("isInSpectrum");
        QTest::newRow("in the form") << false;
        QTest::newRow("in a spectrum") << true;
    }
    // Edits like dictation and screen readers.
    void anEditWithoutTheFocusIsMarkedAskedAboutAndSaved()
    {
        QFETCH(bool, isInSpectrum);
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, withRawTexts());
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCoreApplication::processEvents();
        QVERIFY(!fixture.isModified());
        CleanTextEdit *field = isInSpectrum ? MainWindowFixture::field(
                                   fixture.spectra().value(0), QStringLiteral("lineEditUploader"))
                                            : fixture.field(QStringLiteral("lineEditCID"));
        QVERIFY(!field->hasFocus());
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        const QJsonObject before = fileObject(file);
        Dialogs dialogs;

        insertAccessibly(field, QStringLiteral("123"));
        QCoreApplication::processEvents();
        QVERIFY(fixture.isModified());
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QVERIFY(!fixture.isModified());
        QCOMPARE(fileObject(file), withEdit(before, isInSpectrum, QStringLiteral("123")));

        // Without a moment for the mark.
        insertAccessibly(field, QStringLiteral("45"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(fileObject(file), withEdit(before, isInSpectrum, QStringLiteral("45123")));

        insertAccessibly(field, QStringLiteral("6"));
        dialogs.press(QMessageBox::Save);
        QVERIFY(fixture.window.close());
        QCOMPARE(dialogs.boxes.value(0).text, savePrompt);
        QCOMPARE(fileObject(file), withEdit(before, isInSpectrum, QStringLiteral("645123")));
    }

    void anEditWithoutTheFocusIsCopiedAndExportedWithItsSpectrum()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        const QString exported = fixture.path(QStringLiteral("spectrum.json"));
        writeFile(file, withRawTexts());
        QVERIFY(fixture.window.loadSpeciesFile(file));
        CleanTextEdit *field = MainWindowFixture::field(fixture.spectra().value(0),
                                                        QStringLiteral("lineEditUploader"));
        QVERIFY(!field->hasFocus());
        insertAccessibly(field, QStringLiteral("1"));
        fixture.trigger(QStringLiteral("actionCopy"));
        const QString copied = QGuiApplication::clipboard()->text();
        QCOMPARE(QJsonDocument::fromJson(copied.toUtf8())[QLatin1String("Uploader")].toString(),
                 QStringLiteral("1"));
        insertAccessibly(field, QStringLiteral("2"));
        Dialogs dialogs;
        dialogs.choose(exported);
        fixture.trigger(QStringLiteral("actionSaveSpectrumAs"));
        QCOMPARE(fileObject(exported)[QLatin1String("Uploader")].toString(), QStringLiteral("21"));
        QCOMPARE(fileObject(exported)[QLatin1String("FurtherComments")].toString(), rawText);
    }

    void closingWithSaveWritesThePointsThatWereJustTyped()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        MainWindowFixture::typePoints(fixture.spectra().value(0), QStringLiteral("9.5 3\n"));
        Dialogs dialogs;
        dialogs.press(QMessageBox::Save);
        QVERIFY(fixture.window.close());
        QCOMPARE(fileObject(file)[QLatin1String("Dataset1")][QLatin1String("E")].toArray(),
                 (QJsonArray{9.5, 10.5, 11.25}));
    }

    // The question takes the focus, which makes an input method finish.
    void closingWithSaveWritesWhatWasStillBeingComposed()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        fixture.window.setModified();
        auto *points = fixture.spectra().value(0)->findChild<QPlainTextEdit *>(
            QStringLiteral("textEditSpect"));
        auto *name = fixture.window.findChild<QWidget *>(QStringLiteral("lineEditSpecies"));
        const auto finish = [](QWidget *field, const QString &text) {
            QInputMethodEvent event;
            event.setCommitString(text);
            QCoreApplication::sendEvent(field, &event);
        };
        Dialogs dialogs;
        dialogs.handle([&](QWidget *box) {
            finish(points, QStringLiteral("9.5 3\n"));
            finish(name, QStringLiteral("heavy "));
            qobject_cast<QMessageBox *>(box)->button(QMessageBox::Save)->click();
        });
        QVERIFY(fixture.window.close());
        const QJsonObject saved = fileObject(file);
        QCOMPARE(saved[QLatin1String("Dataset1")][QLatin1String("E")].toArray(),
                 (QJsonArray{9.5, 10.5, 11.25}));
        QCOMPARE(saved[QLatin1String("Species")][QLatin1String("Name")],
                 QJsonValue(QStringLiteral("heavy water")));
    }

    void pointsTypedShortlyBeforeASaveAreNotWrittenButMarkTheDocumentWhenTheyAreRead()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        SpectrumWindow *spectrum = fixture.spectra().value(0);
        MainWindowFixture::typePoints(spectrum, QStringLiteral("9.5 3\n"));
        QVERIFY(fixture.isModified());
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QVERIFY(!fixture.isModified());
        QCOMPARE(fileObject(file)[QLatin1String("Dataset1")][QLatin1String("E")].toArray(),
                 (QJsonArray{10.5, 11.25}));
        MainWindowFixture::letPointsBeRead(spectrum);
        QVERIFY(fixture.isModified());
    }

    void closingRightAfterASaveAsksAgainForPointsNotYetRead()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        MainWindowFixture::typePoints(fixture.spectra().value(0), QStringLiteral("9.5 3\n"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        Dialogs dialogs;
        dialogs.press(QMessageBox::Save);
        QVERIFY(fixture.window.close());
        QCOMPARE(dialogs.boxes.value(0).text, savePrompt);
        QCOMPARE(fileObject(file)[QLatin1String("Dataset1")][QLatin1String("E")].toArray(),
                 (QJsonArray{9.5, 10.5, 11.25}));
    }

    void goingPastLineSpectrumInANewSavedSpectrumMarksNothing()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water")));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        fixture.trigger(QStringLiteral("actionNew"));
        fixture.window.saveSpecies();
        QVERIFY(!fixture.isModified());
        auto *box = fixture.spectra().value(0)->findChild<QCheckBox *>();
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Tab);
        QVERIFY(!box->hasFocus());
        QVERIFY(!fixture.isModified());
        box->click();
        QVERIFY(fixture.isModified());
    }

    // Typed and saved text is shown as typed, unlike what the file would show.
    void whatIsDeletedAfterASaveIsSaved_data()
    {
        QTest::addColumn<bool>("isInSpectrum");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("left");
        for (const bool isInSpectrum : {false, true}) {
            const char *where = isInSpectrum ? "spectrum" : "species";
            const auto row = [&](const char *what, const QString &typed, int from, int to,
                                 const QString &left) {
                QTest::addRow("%s in the %s", what, where)
                    << isInSpectrum << typed << from << to << left;
            };
            row("less than", QStringLiteral("E<8"), 1, 3, QStringLiteral("E"));
            row("two blanks", QStringLiteral("two  blanks"), 3, 4, QStringLiteral("two blanks"));
            row("a tag", QStringLiteral("a<b>c"), 1, 4, QStringLiteral("ac"));
            row("blank at the end", QStringLiteral("E "), 1, 2, QStringLiteral("E"));
        }
    }
    void whatIsDeletedAfterASaveIsSaved()
    {
        QFETCH(bool, isInSpectrum);
        QFETCH(QString, typed);
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(QString, left);
        MainWindowFixture fixture;
        const QString path = fixture.path(QStringLiteral("a.json"));
        writeFile(path, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(path));
        CleanTextEdit *field = isInSpectrum ? MainWindowFixture::field(
                                   fixture.spectra().value(0), QStringLiteral("lineEditUploader"))
                                            : fixture.field(QStringLiteral("lineEditCID"));
        field->setFocus();
        QTest::keyClicks(field, typed);
        QTest::keyClick(field, Qt::Key_Tab);
        fixture.window.saveSpecies();
        QVERIFY(!fixture.isModified());
        const QJsonObject saved = fileObject(path);

        field->setFocus();
        QTextCursor cursor = field->textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        field->setTextCursor(cursor);
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClick(field, Qt::Key_Tab);
        QVERIFY(fixture.isModified());
        fixture.window.saveSpecies();
        QVERIFY(!fixture.isModified());
        QCOMPARE(fileObject(path), withEdit(saved, isInSpectrum, left));
    }

    void aReadingThatChangesNothingMarksNothing()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        SpectrumWindow *spectrum = fixture.spectra().value(0);
        MainWindowFixture::typePoints(spectrum, QStringLiteral("\n"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        MainWindowFixture::letPointsBeRead(spectrum);
        QVERIFY(!fixture.isModified());
    }

    void noTimerFiresIntoASpectrumThatWasCleanedAway()
    {
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionNew"));
        SpectrumWindow *spectrum = fixture.spectra().value(0);
        MainWindowFixture::typePoints(spectrum, QStringLiteral("9.5 3"));
        const auto timers = spectrum->findChildren<QTimer *>();
        const auto running = std::find_if(timers.begin(), timers.end(), [](const QTimer *timer) {
            return timer->isSingleShot() && timer->interval() == 2000;
        });
        QVERIFY(running != timers.end());
        QVERIFY((*running)->isActive());
        fixture.window.updateWindowTitle(false);
        Dialogs dialogs;
        dialogs.press(QMessageBox::Discard);
        fixture.window.cleanUp();
        QVERIFY(!(*running)->isActive());
        QCOMPARE(fixture.window.windowTitle(), untitled);
    }

    void closingASubWindowByItselfMarksTheDocument()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QVERIFY(!fixture.isModified());
        fixture.area()->closeActiveSubWindow();
        QVERIFY(fixture.isModified());
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QVERIFY(!fileObject(file).contains(QLatin1String("Dataset1")));
    }

    void replacingTheDocumentMarksNothing()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!fixture.isModified());
        QCOMPARE(fixture.spectra().size(), 1);
    }

    void onTheFirstRunTheOpenDialogStartsInTheHomeFolder()
    {
        MainWindowFixture fixture;
        QCOMPARE(fixture.window.lastfolder(), QDir::homePath());
        Dialogs dialogs;
        dialogs.escape();
        fixture.trigger(QStringLiteral("actionLoadSpecies"));
        QCOMPARE(dialogs.fileDialogFolders, QStringList{QDir::homePath()});
        QCOMPARE(dialogs.fileDialogTitles, QStringList{QStringLiteral("Open Species JSON File")});
        QCOMPARE(dialogs.fileDialogFilters,
                 QStringList{QStringLiteral("JSON Files (*.json);;All Files (*)")});
    }

    void loadingAFileStoresItsFolder()
    {
        MainWindowFixture fixture;
        QDir().mkpath(fixture.path(QStringLiteral("a/b")));
        const QString file = fixture.path(QStringLiteral("a/b/c.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water")));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCOMPARE(storedFolder(), fixture.folder() + QStringLiteral("/a/b"));
        QCOMPARE(fixture.window.lastfolder(), storedFolder());
    }

    void aStoredFolderThatIsGoneIsStillReturnedAndTheDialogCopes()
    {
        MainWindowFixture fixture;
        const QString gone = fixture.path(QStringLiteral("gone"));
        store(gone);
        QCOMPARE(fixture.window.lastfolder(), gone);
        Dialogs dialogs;
        dialogs.escape();
        fixture.trigger(QStringLiteral("actionLoadSpecies"));
        QCOMPARE(dialogs.fileDialogTitles.size(), 1);
    }
};

QTEST_MAIN(TestMainWindowDocument)
#include "tst_mainwindow_document.moc"

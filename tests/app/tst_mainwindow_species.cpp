// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/assaved.h"
#include "spectrum/spectrumwindow.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "testfiles.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QBuffer>
#include <QDockWidget>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>

namespace
{

const QString nameField = QStringLiteral("lineEditSpecies");
const QString massField = QStringLiteral("lineEditMass");

QJsonObject speciesOf(const QString &file)
{
    return fileObject(file)[QLatin1String("Species")].toObject();
}

QStringList titlesOf(const QList<SpectrumWindow *> &spectra)
{
    QStringList titles;
    for (const SpectrumWindow *spectrum : spectra)
        titles.append(spectrum->windowTitle());
    return titles;
}

QString datasetTitle(const QString &file, const QString &key)
{
    return fileObject(file)[key][QLatin1String("Title")].toString();
}

QString base64Png(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QString::fromLatin1(bytes.toBase64());
}

QImage plainImage(int width, int height, Qt::GlobalColor colour = Qt::red)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

} // namespace

// The species form over its record, and the files of whole entries.
class TestMainWindowSpecies : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    // The form

    void visitingTheNameFieldWithoutTypingMarksNothing()
    {
        MainWindowFixture fixture;
        loadInto(fixture, {{QStringLiteral("Name"), QStringLiteral("water")}});
        auto *name = fixture.field(nameField);
        name->setFocus();
        QVERIFY(name->hasFocus());
        QTest::keyClick(name, Qt::Key_Tab);
        QVERIFY(!name->hasFocus());
        QVERIFY(!fixture.isModified());
    }

    void typingAndTabbingAwayStoresOnceAndMarksTheDocument()
    {
        MainWindowFixture fixture;
        loadInto(fixture, {{QStringLiteral("Name"), QStringLiteral("water")}});
        auto *model = fixture.window.findChild<SpeciesModel *>();
        QSignalSpy changes(model, &SpeciesModel::dataChanged);
        auto *name = fixture.field(nameField);
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("ab"));
        QCOMPARE(changes.size(), 0);
        QTest::keyClick(name, Qt::Key_Tab);
        QCOMPARE(changes.size(), 1);
        QVERIFY(fixture.isModified());
        QCOMPARE(model->data(model->index(0, 0)).toString(), QStringLiteral("abwater"));
    }

    void anEditedMassIsATextInTheRecordAndANumberInTheFile()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {{QStringLiteral("Mass"), 12.5}});
        auto *mass = fixture.field(massField);
        QCOMPARE(mass->cleanedHtml(), QStringLiteral("12.5"));
        mass->setFocus();
        QTest::keyClick(mass, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(mass, QStringLiteral("13"));
        QTest::keyClick(mass, Qt::Key_Tab);
        auto *model = fixture.window.findChild<SpeciesModel *>();
        QCOMPARE(model->data(model->index(0, 2)).typeId(), QMetaType::QString);
        QCOMPARE(model->data(model->index(0, 2)).toString(), QStringLiteral("13"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(speciesOf(file)[QLatin1String("Mass")], QJsonValue(13));
    }

    void leavingTheMassFieldAfterALoadStoresItsTextAndMarksTheDocument()
    {
        MainWindowFixture fixture;
        loadInto(fixture, {{QStringLiteral("Mass"), 12.5}});
        auto *model = fixture.window.findChild<SpeciesModel *>();
        QCOMPARE(model->data(model->index(0, 2)).typeId(), QMetaType::Double);
        auto *mass = fixture.field(massField);
        mass->setFocus();
        QVERIFY(!fixture.isModified());
        QTest::keyClick(mass, Qt::Key_Tab);
        QCOMPARE(model->data(model->index(0, 2)).typeId(), QMetaType::QString);
        QVERIFY(fixture.isModified());
    }

    void escapePutsTheRecordsValueBackAndStoresNothing()
    {
        MainWindowFixture fixture;
        loadInto(fixture, {{QStringLiteral("Name"), QStringLiteral("water")}});
        auto *name = fixture.field(nameField);
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("xyz"));
        QTest::keyClick(name, Qt::Key_Escape);
        QCOMPARE(name->cleanedHtml(), QStringLiteral("water"));
        QTest::keyClick(name, Qt::Key_Tab);
        QVERIFY(!fixture.isModified());
    }

    void aNewImageShowsAtOnceAndMarksTheDocumentAndSoDoesClearingIt()
    {
        MainWindowFixture fixture;
        auto *model = fixture.window.findChild<SpeciesModel *>();
        const auto *label = fixture.find<QLabel>(QStringLiteral("imageLabel"));
        model->setData(model->index(0, 11), plainImage(20, 20));
        QVERIFY(!label->pixmap().isNull());
        QVERIFY(fixture.isModified());
        fixture.window.updateWindowTitle(false);
        model->setData(model->index(0, 11), QVariant());
        QVERIFY(label->pixmap().isNull());
        QVERIFY(fixture.isModified());
    }

    void aTallImageIsLimitedByTheLabelsHeightAndAWideOneByItsWidth()
    {
        MainWindowFixture fixture;
        auto *model = fixture.window.findChild<SpeciesModel *>();
        const auto *label = fixture.find<QLabel>(QStringLiteral("imageLabel"));
        QCOMPARE(label->height(), 150);
        model->setData(model->index(0, 11), plainImage(100, 600));
        QCOMPARE(label->pixmap().size(), QSize(25, 150));
        model->setData(model->index(0, 11), plainImage(4000, 40));
        QCOMPARE(label->pixmap().width(), label->width());
        QVERIFY(label->pixmap().height() < 20);
    }

    void theSamePictureInAnotherFormatChangesNothing()
    {
        MainWindowFixture fixture;
        loadInto(fixture, {{QStringLiteral("StructuralFormula"), base64Png(plainImage(30, 20))}});
        auto *model = fixture.window.findChild<SpeciesModel *>();
        const QSignalSpy images(model, &SpeciesModel::imageChanged);
        model->setData(model->index(0, 11),
                       plainImage(30, 20).convertToFormat(QImage::Format_ARGB32_Premultiplied));
        QCOMPARE(images.size(), 0);
        QVERIFY(!fixture.isModified());
    }

    // What the form shows is what is saved

    void savingWithTheFocusInATypedFieldWritesItAndKeepsFocusCursorAndSelection()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {{QStringLiteral("Name"), QStringLiteral("water")}});
        auto *name = fixture.field(nameField);
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("heavy "));
        QTest::keyClick(name, Qt::Key_Right, Qt::ShiftModifier);
        QTest::keyClick(name, Qt::Key_Right, Qt::ShiftModifier);
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(speciesOf(file)[QLatin1String("Name")].toString(), QStringLiteral("heavy water"));
        QVERIFY(name->hasFocus());
        QCOMPARE(name->textCursor().selectedText(), QStringLiteral("wa"));
        QCOMPARE(name->textCursor().position(), 8);
        QVERIFY(!fixture.isModified());
    }

    void savingShowsTheWaitCursorAndTakesItAwayAgain()
    {
        QList<Qt::CursorShape> shapes;
        MainWindowFixture fixture;
        loadInto(fixture, {});
        auto *name = fixture.field(nameField);
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("water"));
        // Saving commits the typed name first.
        connect(fixture.window.findChild<SpeciesModel *>(), &SpeciesModel::dataChanged,
                &fixture.window, [&] {
                    const QCursor *cursor = QGuiApplication::overrideCursor();
                    shapes.append(cursor ? cursor->shape() : Qt::ArrowCursor);
                });
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(shapes, QList{Qt::WaitCursor});
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
    }

    void savingRewritesNoFieldThatTheUserHasNotTouched()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {{QStringLiteral("Mass"), 12.5},
                                                {QStringLiteral("Name"), QStringLiteral("a\nb")}});
        fixture.field(massField)->setFocus();
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        auto *model = fixture.window.findChild<SpeciesModel *>();
        QCOMPARE(model->data(model->index(0, 2)).typeId(), QMetaType::Double);
        QCOMPARE(speciesOf(file)[QLatin1String("Name")].toString(), QStringLiteral("a\nb"));
    }

    void aTypedSpectrumFieldIsSavedToo()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {}, {QStringLiteral("one")});
        auto *uploader = MainWindowFixture::field(fixture.spectra().value(0),
                                                  QStringLiteral("lineEditUploader"));
        uploader->setFocus();
        QTest::keyClicks(uploader, QStringLiteral("me"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(fileObject(file)[QLatin1String("Dataset1")][QLatin1String("Uploader")].toString(),
                 QStringLiteral("me"));
    }

    void aTypedFieldOfTheFloatingDockIsSavedToo()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {});
        fixture.find<QDockWidget>(QStringLiteral("speciesDock"))->setFloating(true);
        auto *name = fixture.field(nameField);
        name->activateWindow();
        name->setFocus();
        QTRY_VERIFY(name->hasFocus());
        QTest::keyClicks(name, QStringLiteral("water"));
        fixture.window.saveSpecies();
        QCOMPARE(speciesOf(file)[QLatin1String("Name")].toString(), QStringLiteral("water"));
    }

    // Files

    void spectraAreNumberedInTheOrderOfCreationWithoutGaps()
    {
        MainWindowFixture fixture;
        const QString file =
            loadInto(fixture, {}, {QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(datasetTitle(file, QStringLiteral("Dataset1")), QStringLiteral("A"));
        QCOMPARE(datasetTitle(file, QStringLiteral("Dataset2")), QStringLiteral("B"));
        QCOMPARE(datasetTitle(file, QStringLiteral("Dataset3")), QStringLiteral("C"));
        fixture.area()->setActiveSubWindow(fixture.area()->subWindowList().value(1));
        fixture.trigger(QStringLiteral("actionDelete"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(datasetTitle(file, QStringLiteral("Dataset1")), QStringLiteral("A"));
        QCOMPARE(datasetTitle(file, QStringLiteral("Dataset2")), QStringLiteral("C"));
        QVERIFY(!fileObject(file).contains(QLatin1String("Dataset3")));
    }

    void datasetsLoadInTheOrderOfTheirKeysAsTexts()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        QJsonObject object = speciesFileWith(QStringLiteral("water"));
        const auto titled = [](const char *title) {
            return QJsonObject{{QStringLiteral("Title"), QLatin1String(title)}};
        };
        object[QLatin1String("Dataset2")] = titled("two");
        object[QLatin1String("Dataset10")] = titled("ten");
        writeFile(file, object);
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCOMPARE(titlesOf(fixture.spectra()),
                 (QStringList{QStringLiteral("ten"), QStringLiteral("two")}));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(datasetTitle(file, QStringLiteral("Dataset1")), QStringLiteral("ten"));
        QCOMPARE(datasetTitle(file, QStringLiteral("Dataset2")), QStringLiteral("two"));
    }

    void savingALoadedFileWritesWhatTheRecordsMakeOfItWithoutTheWindow()
    {
        QJsonObject odd = fileObject(QStringLiteral(ZORAVEL_EXAMPLES "/water.json"));
        odd[QLatin1String("Remark")] = 1;
        odd[QLatin1String("Dataset10")] =
            QJsonObject{{QStringLiteral("SpectType"), 7},
                        {QStringLiteral("Source"), QStringLiteral("a  <i>b</i>")},
                        {QStringLiteral("Title"), QStringLiteral(" x < 5 <i>b</i>")},
                        {QStringLiteral("T"), 300},
                        {QStringLiteral("E"), QJsonArray{9.12345678, 10, 11}},
                        {QStringLiteral("I"), QJsonArray{1e-7, 2, QStringLiteral("3")}}};
        QJsonObject species = odd[QLatin1String("Species")].toObject();
        species[QLatin1String("AIE")] = 9.5;
        species[QLatin1String("Aliases")] = QStringLiteral("a\nb");
        odd[QLatin1String("Species")] = species;
        for (const QJsonObject &object :
             {odd, fileObject(QStringLiteral(ZORAVEL_EXAMPLES "/nitric-oxide.json"))}) {
            MainWindowFixture fixture;
            const QString file = fixture.path(QStringLiteral("a.json"));
            writeFile(file, object);
            QVERIFY(fixture.window.loadSpeciesFile(file));
            fixture.trigger(QStringLiteral("actionSaveSpecies"));
            QCOMPARE(fileObject(file), asSavedSpeciesFile(object));
        }
    }

    void keysThatAreNoDatasetKeysAreIgnored()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        QJsonObject object = speciesFileWith(QStringLiteral("water"));
        for (const char *key : {"dataset1", "Dataset", "Dataset1a", "XDataset1", "Dataset1\n",
                                "Dataset-1", "Other", "Dataset\u0661"})
            object[QString::fromUtf8(key)] =
                QJsonObject{{QStringLiteral("Title"), QStringLiteral("no")}};
        object[QLatin1String("Dataset007")] = 5;
        object[QLatin1String("Dataset99999999999999999999")] = QJsonObject();
        writeFile(file, object);
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCOMPARE(titlesOf(fixture.spectra()), (QStringList{QString(), QString()}));
    }

    void aTypeInLowerCaseIsRefusedByMenuAndByDrop()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, QJsonObject{{QStringLiteral("Type"), QStringLiteral("species v1")}});
        Dialogs dialogs;
        dialogs.press();
        QVERIFY(!fixture.window.loadSpeciesFile(file));
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Invalid Species File"));
        QCOMPARE(dialogs.boxes.value(0).text,
                 QStringLiteral("The file %1 is not a valid species file.").arg(file));
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Warning);
        dialogs.press();
        QVERIFY(dropFiles(&fixture.window, {file}));
        QCOMPARE(dialogs.boxes.value(1).text,
                 QStringLiteral("Species not found in JSON file. Load aborted."));
        QCOMPARE(dialogs.boxes.value(1).icon, QMessageBox::Critical);
        QCOMPARE(dialogs.boxes.value(1).parent, &fixture.window);
    }

    void aFileWithItsTypeAloneLoadsAsAnEmptySpecies()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, QJsonObject{{QStringLiteral("Type"), QStringLiteral("Species v1")}});
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - a.json"));
        QCOMPARE(fixture.field(nameField)->cleanedHtml(), QString());
        QVERIFY(fixture.spectra().isEmpty());
    }

    void ofTwoDroppedFilesTheFirstIsLoadedAndTheEndingIsReadWithoutCase()
    {
        MainWindowFixture fixture;
        const QString first = fixture.path(QStringLiteral("a.JSON"));
        const QString second = fixture.path(QStringLiteral("b.json"));
        const QString text = fixture.path(QStringLiteral("c.txt"));
        writeFile(first, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        writeFile(second, speciesFileWith(QStringLiteral("ammonia")));
        writeFile(text, speciesFileWith(QStringLiteral("methane")));
        QVERIFY(dropFiles(&fixture.window, {first, second}));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - a.JSON"));
        QCOMPARE(fixture.field(nameField)->cleanedHtml(), QStringLiteral("water"));
        QVERIFY(!dropFiles(&fixture.window, {text, second}));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - a.JSON"));
    }

    void aFileDroppedOnAnyFieldReachesTheWindow()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        const QList<QAbstractScrollArea *> areas =
            fixture.window.findChildren<QAbstractScrollArea *>();
        int fields = 0;
        for (const QAbstractScrollArea *area : areas) {
            QVERIFY2(!area->viewport()->acceptDrops(), qPrintable(area->objectName()));
            QVERIFY2(!area->acceptDrops(), qPrintable(area->objectName()));
            fields += qobject_cast<const QTextEdit *>(area) != nullptr;
        }
        QVERIFY(fields > 18);
        auto *pointEditor = MainWindowFixture::points(fixture.spectra().value(0));
        QVERIFY(dropFiles(pointEditor->viewport(), {file}));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - a.json"));
    }

    void aFileDroppedOnTheFloatingDockReachesTheWindow()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water")));
        fixture.find<QDockWidget>(QStringLiteral("speciesDock"))->setFloating(true);
        QVERIFY(dropFiles(fixture.field(nameField)->viewport(), {file}));
        QCOMPARE(fixture.field(nameField)->cleanedHtml(), QStringLiteral("water"));
    }

    void openingABadFileAsksToSaveFirstAndKeepsTheDocument_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("title");
        const QString invalid = QStringLiteral("Invalid Species File");
        QTest::newRow("missing") << QByteArray() << QStringLiteral("File Not Found");
        QTest::newRow("no JSON") << QByteArray("hello") << invalid;
        QTest::newRow("cut off") << QByteArray("{\"Type\": \"Species v1\", \"Spec") << invalid;
        QTest::newRow("array") << QByteArray("[\"Species v1\"]") << invalid;
        QTest::newRow("spectrum") << QByteArray("{\"Type\": \"Spectrum v1\"}") << invalid;
        QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\xff\xfe", 12) << invalid;
        QTest::newRow("number out of range")
            << QByteArray("{\"Type\": \"Species v1\", \"x\": 1e400}") << invalid;
        QTest::newRow("deep") << QByteArray(5000, '[') + QByteArray(5000, ']') << invalid;
    }
    void openingABadFileAsksToSaveFirstAndKeepsTheDocument()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, title);
        MainWindowFixture fixture;
        const QString good = loadInto(fixture, {{QStringLiteral("Name"), QStringLiteral("water")}},
                                      {QStringLiteral("one")});
        const QString bad = fixture.path(QStringLiteral("<b>bad</b>.json"));
        if (!bytes.isEmpty()) {
            QDir().mkpath(QFileInfo(bad).path());
            writeFile(bad, bytes);
        }
        fixture.window.setModified();
        Dialogs dialogs;
        dialogs.press(QMessageBox::Save).press();
        QVERIFY(!fixture.window.loadSpeciesFile(bad));
        QCOMPARE(dialogs.boxes.value(0).text, QStringLiteral("The species has been modified."));
        QCOMPARE(dialogs.boxes.value(1).title, title);
        QCOMPARE(dialogs.boxes.value(1).format, Qt::PlainText);
        QVERIFY(dialogs.boxes.value(1).text.contains(bad));
        QCOMPARE(fixture.spectra().size(), 1);
        QVERIFY(!fixture.isModified());
        QVERIFY(fixture.window.windowTitle().endsWith(QFileInfo(good).fileName()));
    }

    void aDroppedFileThatCannotBeReadLeavesTheDocumentEmptyAndStoresItsFolder()
    {
        MainWindowFixture fixture;
        loadInto(fixture, {{QStringLiteral("Name"), QStringLiteral("water")}},
                 {QStringLiteral("one")});
        Dialogs dialogs;
        dialogs.press();
        QVERIFY(dropFiles(&fixture.window, {fixture.path(QStringLiteral("missing/a.json"))}));
        QCOMPARE(dialogs.boxes.value(0).text, QStringLiteral("Could not open file for reading"));
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Warning);
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - (untitled)"));
        QVERIFY(fixture.spectra().isEmpty());
        QCOMPARE(fixture.window.lastfolder(), fixture.folder() + QStringLiteral("/missing"));
    }

    void cancellingTheSaveDialogChangesNothing()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {});
        fixture.window.setModified();
        const QString title = fixture.window.windowTitle();
        Dialogs dialogs;
        dialogs.escape();
        fixture.trigger(QStringLiteral("actionSaveSpeciesAs"));
        QCOMPARE(dialogs.fileDialogTitles, QStringList{QStringLiteral("Save Species JSON File")});
        QCOMPARE(dialogs.fileDialogNames, QStringList{QFileInfo(file).fileName()});
        QCOMPARE(dialogs.fileDialogFolders, QStringList{fixture.folder()});
        QCOMPARE(fixture.window.windowTitle(), title);
    }

    void saveAsTakesTheNameAsTypedAndStoresItsFolder()
    {
        MainWindowFixture fixture;
        loadInto(fixture, {{QStringLiteral("Name"), QStringLiteral("water")}});
        QDir().mkpath(fixture.path(QStringLiteral("sub")));
        const QString file = fixture.path(QStringLiteral("sub/no ending"));
        Dialogs dialogs;
        dialogs.choose(file);
        fixture.trigger(QStringLiteral("actionSaveSpeciesAs"));
        QCOMPARE(speciesOf(file)[QLatin1String("Name")].toString(), QStringLiteral("water"));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - no ending"));
        QCOMPARE(fixture.window.lastfolder(), fixture.folder() + QStringLiteral("/sub"));
    }

    void aSaveAsThatFailsLeavesAModifiedDocumentUnderTheNewName_data()
    {
        QTest::addColumn<bool>("isModified");
        QTest::newRow("with changes") << true;
        QTest::newRow("without changes") << false;
    }
    void aSaveAsThatFailsLeavesAModifiedDocumentUnderTheNewName()
    {
        QFETCH(bool, isModified);
        MainWindowFixture fixture;
        loadInto(fixture, {});
        QDir().mkpath(fixture.path(QStringLiteral("taken.json")));
        fixture.window.updateWindowTitle(isModified);
        Dialogs dialogs;
        dialogs.handle([&](QWidget *dialog) {
            // The folder of that name appears after the dialog has been left.
            QDir().rmdir(fixture.path(QStringLiteral("taken.json")));
            dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
                ->setText(fixture.path(QStringLiteral("taken.json")));
            QObject::connect(qobject_cast<QDialog *>(dialog), &QDialog::finished,
                             [&] { QDir().mkpath(fixture.path(QStringLiteral("taken.json"))); });
            qobject_cast<QDialog *>(dialog)->accept();
        });
        dialogs.press();
        fixture.trigger(QStringLiteral("actionSaveSpeciesAs"));
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Error"));
        QCOMPARE(dialogs.boxes.value(0).text, QStringLiteral("Could not open file for writing."));
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Warning);
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - taken.json *"));
        dialogs.press(QMessageBox::Discard);
        QVERIFY(fixture.window.close());
        QCOMPARE(dialogs.boxes.value(1).text, QStringLiteral("The species has been modified."));
    }

    void aSaveThatFailsMarksTheDocument()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {});
        QVERIFY(QFile::remove(file));
        QVERIFY(QDir().mkpath(file));
        QVERIFY(!fixture.isModified());
        Dialogs dialogs;
        QString titleBehindTheBox;
        dialogs.handle([&](QWidget *box) {
            titleBehindTheBox = fixture.window.windowTitle();
            box->close();
        });
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(titleBehindTheBox, QStringLiteral("ZORAVEL Entry Edit - entry.json *"));
        QVERIFY(fixture.isModified());
    }

    void afterALoadTheFirstSpectrumIsActiveAndTheTitleUnmarked()
    {
        MainWindowFixture fixture;
        loadInto(fixture, {}, {QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
        QCOMPARE(fixture.area()->activeSubWindow()->windowTitle(), QStringLiteral("A"));
        QVERIFY(!fixture.isModified());
        QCoreApplication::processEvents();
        QVERIFY(!fixture.isModified());
    }

    void ofManySpectraOnlyTheFirstBecomesActiveOnTheWayAndAllCanBeUsed()
    {
        constexpr int count = 12;
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        QStringList titles;
        for (int i = 1; i <= count; ++i)
            titles.append(QStringLiteral("spectrum %1").arg(i));
        writeFile(file, speciesFileWith(QStringLiteral("water"), titles));
        QStringList activated;
        connect(fixture.area(), &QMdiArea::subWindowActivated, this,
                [&](const QMdiSubWindow *subWindow) {
                    activated.append(subWindow ? subWindow->windowTitle() : QStringLiteral("none"));
                });
        const QWidget *focused = QApplication::focusWidget();
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCOMPARE(activated, QStringList{QStringLiteral("spectrum 1")});

        const QList<QMdiSubWindow *> windows = fixture.area()->subWindowList();
        QCOMPARE(windows.size(), count);
        for (const QMdiSubWindow *window : windows) {
            QVERIFY(window->isVisible() && window->isEnabled() && window->updatesEnabled());
            QCOMPARE(window->isMaximized(), window == windows.first());
            QVERIFY(window->widget()->isVisible());
        }
        // This is the state after activating each and then the first again.
        QList<QMdiSubWindow *> raised = windows.sliced(1) + windows.first(1);
        QCOMPARE(fixture.area()->subWindowList(QMdiArea::StackingOrder), raised);
        QCOMPARE(fixture.area()->subWindowList(QMdiArea::ActivationHistoryOrder), raised);
        const auto *tabs = fixture.area()->findChild<QTabBar *>();
        QCOMPARE(tabs->count(), count);
        QCOMPARE(tabs->currentIndex(), 0);
        QCOMPARE(tabs->tabText(1), QStringLiteral("spectrum 10"));
        QCOMPARE(QApplication::focusWidget(), focused);

        fixture.area()->setActiveSubWindow(windows.at(3));
        QVERIFY(windows.at(3)->isMaximized() && !windows.first()->isMaximized());
        activated.clear();
        fixture.window.cleanUp();
        QCOMPARE(activated, QStringList{QStringLiteral("none")});
        QVERIFY(fixture.area()->subWindowList().isEmpty());
        QVERIFY(fixture.area()->updatesEnabled());
    }

    void loadingAndLookingRewriteNoTextThatCannotBeShown()
    {
        MainWindowFixture fixture;
        const QString text = QStringLiteral("at T<Tc,  5 K");
        const QString file =
            loadInto(fixture, {{QStringLiteral("Name"), text}}, {text, text, text});
        QVERIFY(!fixture.isModified());
        for (const char *name : {"lineEditSpecies", "lineEditInChI"}) {
            auto *field = fixture.field(QLatin1String(name));
            field->setFocus();
            QTRY_VERIFY(field->hasFocus());
        }
        QVERIFY(!fixture.isModified());
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(speciesOf(file)[QLatin1String("Name")].toString(), text);
        for (const char *key : {"Dataset1", "Dataset2", "Dataset3"})
            QCOMPARE(datasetTitle(file, QLatin1String(key)), text);
    }

    // As the guide says of it.
    void aSignWithoutItsCounterpartIsSavedButEndsTheFieldWhenItIsOpenedAgain()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {});
        CleanTextEdit *name = fixture.field(QStringLiteral("lineEditSpecies"));
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("T < 300 K"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(speciesOf(file)[QLatin1String("Name")], QJsonValue(QStringLiteral("T < 300 K")));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCOMPARE(name->toPlainText().trimmed(), QStringLiteral("T"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(speciesOf(file)[QLatin1String("Name")], QJsonValue(QStringLiteral("T < 300 K")));
        QTest::keyClicks(name, QStringLiteral("x"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QVERIFY(!speciesOf(file)[QLatin1String("Name")].toString().contains(QLatin1String("300")));
    }

    void savingInTheMiddleOfTypingKeepsWhatIsTypedAndItsUndo()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {});
        auto *name = fixture.field(nameField);
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("T<Tc,  5"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QTest::keyClicks(name, QStringLiteral(" K"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QCOMPARE(speciesOf(file)[QLatin1String("Name")].toString(), QStringLiteral("T<Tc,  5 K"));
        QVERIFY(name->document()->isUndoAvailable());
    }

    void anEmptyKeyIsNoDataset()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, QByteArray("{\"\": {}, \"Type\": \"Species v1\"}"));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QVERIFY(fixture.spectra().isEmpty());
    }

    void aFileTooLargeToParseIsRefused()
    {
        MainWindowFixture fixture;
        const QString path = fixture.path(QStringLiteral("a.json"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(qint64(1) << 30));
        file.close();
        Dialogs dialogs;
        dialogs.press();
        QVERIFY(!fixture.window.loadSpeciesFile(path));
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Invalid Species File"));
        // It says so in every box.
        dialogs.press();
        QVERIFY(dropFiles(&fixture.window, {path}));
        dialogs.choose(path).press();
        QVERIFY(!fixture.window.loadJSONSpectrum());
        dialogs.press();
        QVERIFY(!fixture.window.compileSpeciesFiles({path}, fixture.path(QStringLiteral("db.json")),
                                                    {}, {}, {}, true));
        QCOMPARE(dialogs.boxes.size(), 4);
        for (const SeenBox &box : std::as_const(dialogs.boxes))
            QCOMPARE(box.informativeText,
                     QStringLiteral("It is larger than 256 MB, without the blanks and line ends "
                                    "between its values."));
        dialogs.press();
        QVERIFY(!fixture.window.loadSpeciesFile(fixture.folder()));
        QCOMPARE(dialogs.boxes.last().informativeText, QString());
    }

    void aSaveThatIsRefusedForItsSizeSaysSo()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        auto *model = fixture.window.findChild<SpeciesModel *>();
        // Control characters take six bytes each in a file. The form may leave them out.
        const QSignalBlocker unseen(model);
        QVERIFY(model->setData(model->index(0, 0), QString((256 << 20) / 6, QChar(1))));
        Dialogs dialogs;
        dialogs.choose(file).press();
        fixture.window.saveSpeciesAs();
        QCOMPARE(dialogs.boxes.value(0).text, QStringLiteral("Could not open file for writing."));
        QVERIFY(dialogs.boxes.value(0).informativeText.startsWith(
            QStringLiteral("It is larger than 256 MB")));
        QVERIFY(!QFile::exists(file));
        QVERIFY(fixture.isModified());
    }

    void aDateFromAFileIsNeverMarkup()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        QJsonObject object = speciesFileWith(QStringLiteral("x"));
        object[QLatin1String("Dataset1")] =
            QJsonObject{{QStringLiteral("CreatedDate"), QStringLiteral("<b>2026</b>")}};
        writeFile(file, object);
        QVERIFY(fixture.window.loadSpeciesFile(file));
        const auto *label =
            fixture.spectra().value(0)->findChild<QLabel *>(QStringLiteral("labelCreated"));
        QCOMPARE(label->text(), QStringLiteral("<b>2026</b>"));
        QCOMPARE(label->textFormat(), Qt::PlainText);
    }

    void loadingTheOpenFileAgainByItsOwnPathWorks()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {{QStringLiteral("Name"), QStringLiteral("water")}});
        // The title's path and the argument share their text as long as nobody copies it.
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCOMPARE(fixture.field(nameField)->cleanedHtml(), QStringLiteral("water"));
        QVERIFY(fixture.window.windowTitle().endsWith(QFileInfo(file).fileName()));
    }

    void theSavedFileIsIndentedAndSortedAndEndsWithALineFeed()
    {
        MainWindowFixture fixture;
        const QString file = loadInto(fixture, {}, {QStringLiteral("A")});
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        const QByteArray bytes = fileBytes(file);
        QVERIFY(bytes.startsWith("{\n    \"Dataset1\": {\n        \"CreatedDate\": "));
        QVERIFY(bytes.endsWith("\n    \"Type\": \"Species v1\"\n}\n"));
    }

    void wrongTypesUnderEveryKeyLoadAsEmptyAndNeverHalf_data()
    {
        QTest::addColumn<QByteArray>("json");
        for (const char *value : {"null", "true", "12", "\"text\"", "[1, 2]", "{\"a\": 1}"})
            QTest::newRow(value) << QByteArray(value);
    }
    void wrongTypesUnderEveryKeyLoadAsEmptyAndNeverHalf()
    {
        QFETCH(QByteArray, json);
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        QByteArray species;
        for (const SpeciesField &field : speciesFields)
            species += "\"" + QByteArray(field.key.data(), field.key.size()) + "\": " + json + ",";
        QByteArray spectrum;
        for (const char *key : {"Title", "Uploader", "DOI", "SpectType", "FurtherRefs", "T",
                                "FurtherComments", "CreatedDate", "FacilityDate", "LineSpectrum",
                                "Source", "Resolution", "Normalization", "E", "I"})
            spectrum += "\"" + QByteArray(key) + "\": " + json + ",";
        writeFile(file, "{\"Type\": \"Species v1\", \"Species\": {" + species
                            + "\"x\": 1}, \"Dataset1\": {" + spectrum
                            + "\"x\": 1}, \"Dataset2\": " + json + "}");
        QVERIFY(fixture.window.loadSpeciesFile(file));
        QCOMPARE(fixture.spectra().size(), 2);
        QVERIFY(!fixture.isModified());
        const bool isText = json.startsWith('"');
        QCOMPARE(fixture.field(nameField)->cleanedHtml(),
                 isText ? QStringLiteral("text") : QString());
    }

    void everyExampleLoadsWithoutAComplaintAndSavesUnchanged_data()
    {
        QTest::addColumn<QString>("file");
        const QDir folder(QStringLiteral(ZORAVEL_EXAMPLES));
        const QStringList names = folder.entryList({QStringLiteral("*.json")});
        QVERIFY(names.size() >= 6);
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << folder.filePath(name);
    }
    void everyExampleLoadsWithoutAComplaintAndSavesUnchanged()
    {
        QFETCH(QString, file);
        MainWindowFixture fixture;
        const QString copy = fixture.path(QFileInfo(file).fileName());
        QVERIFY(QFile::copy(file, copy));
        QVERIFY(QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(fixture.window.loadSpeciesFile(copy));
        QVERIFY(!fixture.spectra().isEmpty());
        QVERIFY(!fixture.find<QLabel>(QStringLiteral("imageLabel"))->pixmap().isNull());
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QJsonObject before = fileObject(file);
        QJsonObject after = fileObject(copy);
        // The picture must be the same, but not its bytes.
        for (QJsonObject *object : {&before, &after}) {
            QJsonObject species = (*object)[QLatin1String("Species")].toObject();
            species.remove(QLatin1String("StructuralFormula"));
            (*object)[QLatin1String("Species")] = species;
        }
        QCOMPARE(after, before);
    }

private:
    // Loads a species file with this species object and spectra of these titles; returns its path.
    static QString loadInto(MainWindowFixture &fixture, const QJsonObject &species,
                            const QStringList &titles = {})
    {
        QString file = fixture.path(QStringLiteral("entry.json"));
        QJsonObject object = speciesFileWith(QString(), titles);
        object[QLatin1String("Species")] = species;
        writeFile(file, object);
        if (!fixture.window.loadSpeciesFile(file))
            QTest::qFail("the file does not load", __FILE__, __LINE__);
        return file;
    }
};

QTEST_MAIN(TestMainWindowSpecies)
#include "tst_mainwindow_species.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumwindow.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QClipboard>
#include <QDate>
#include <QDockWidget>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>

namespace
{

const QString title = QStringLiteral("Title");
const QLatin1String energies("E");

QJsonObject spectrumFile(const QString &name)
{
    return {{QStringLiteral("Type"), QStringLiteral("Spectrum v1")},
            {title, name},
            {QStringLiteral("SpectType"), 2},
            {QStringLiteral("Source"), QStringLiteral("a lamp")},
            {QStringLiteral("T"), QStringLiteral("300")},
            {QStringLiteral("E"), QJsonArray{10.5, 11.25, 12}},
            {QStringLiteral("I"), QJsonArray{1, 2.5, 0}}};
}

QString clipboardText()
{
    return QGuiApplication::clipboard()->text();
}

} // namespace

// Spectrum sub-windows, their files and the clipboard.
class TestMainWindowSpectra : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void aNewSpectrumIsAnActiveTabThatIsDestroyedWhenItCloses()
    {
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionNew"));
        fixture.trigger(QStringLiteral("actionNew"));
        QCOMPARE(fixture.spectra().size(), 2);
        QVERIFY(fixture.isModified());
        QMdiSubWindow *second = fixture.area()->subWindowList().value(1);
        QCOMPARE(fixture.area()->activeSubWindow(), second);
        QVERIFY(second->testAttribute(Qt::WA_DeleteOnClose));
        const QPointer<SpectrumWindow> window = fixture.spectra().value(1);
        QCOMPARE(window->toJson()[QLatin1String("CreatedDate")].toString(),
                 QDate::currentDate().toString(Qt::ISODate));
        fixture.trigger(QStringLiteral("actionDelete"));
        QTRY_VERIFY(window.isNull());
        QCOMPARE(fixture.spectra().size(), 1);
    }

    void cancellingTheOpenDialogComplainsAndCancellingTheSaveDialogDoesNot()
    {
        MainWindowFixture fixture;
        Dialogs dialogs;
        dialogs.escape().press();
        fixture.trigger(QStringLiteral("actionLoadSpectrum"));
        QCOMPARE(dialogs.boxes.size(), 1);
        checkError(dialogs.boxes.value(0), QMessageBox::Warning,
                   QStringLiteral("Could not open file for reading"), fixture);
        QCOMPARE(dialogs.fileDialogTitles.value(0), QStringLiteral("Open Spectrum JSON File"));
        QVERIFY(!fixture.isModified());

        fixture.trigger(QStringLiteral("actionNew"));
        dialogs.escape();
        fixture.trigger(QStringLiteral("actionSaveSpectrumAs"));
        QCOMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(dialogs.fileDialogTitles.value(1), QStringLiteral("Save Spectrum"));
    }

    void aSpeciesFileIsRefusedAsASpectrum()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water")));
        Dialogs dialogs;
        dialogs.choose(file).press();
        fixture.trigger(QStringLiteral("actionLoadSpectrum"));
        checkError(dialogs.boxes.value(0), QMessageBox::Critical,
                   QStringLiteral("Spectrum not found in JSON file. Load aborted."), fixture);
        QVERIFY(fixture.spectra().isEmpty());
        QVERIFY(!fixture.isModified());
    }

    void aTypeInAnotherCaseIsRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("lower case") << QByteArray("{\"Type\": \"spectrum v1\"}");
        QTest::newRow("blank behind") << QByteArray("{\"Type\": \"Spectrum v1 \"}");
        QTest::newRow("no type") << QByteArray("{}");
        QTest::newRow("type in an array") << QByteArray("{\"Type\": [\"Spectrum v1\"]}");
        QTest::newRow("array") << QByteArray("[]");
        QTest::newRow("no JSON") << QByteArray("Spectrum v1");
        QTest::newRow("cut off") << QByteArray("{\"Type\": \"Spectrum v1\"");
    }
    void aTypeInAnotherCaseIsRefused()
    {
        QFETCH(QByteArray, bytes);
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, bytes);
        Dialogs dialogs;
        dialogs.choose(file).press();
        fixture.trigger(QStringLiteral("actionLoadSpectrum"));
        checkError(dialogs.boxes.value(0), QMessageBox::Critical,
                   QStringLiteral("Spectrum not found in JSON file. Load aborted."), fixture);
    }

    void copyThenPasteYieldsASecondWindowWithTheSameFieldsAndPoints()
    {
        MainWindowFixture fixture;
        fixture.window.createNewSpectrumWindow(spectrumFile(QStringLiteral("H<sub>2</sub>O")));
        fixture.trigger(QStringLiteral("actionCopy"));
        fixture.window.updateWindowTitle(false);
        fixture.trigger(QStringLiteral("actionPaste"));
        QCOMPARE(fixture.spectra().size(), 2);
        QCOMPARE(fixture.spectra().value(1)->toJson(), fixture.spectra().value(0)->toJson());
        QCOMPARE(fixture.spectra().value(1)->toJson()[title].toString(),
                 QStringLiteral("H<sub>2</sub>O"));
        QCOMPARE(MainWindowFixture::points(fixture.spectra().value(1))->toPlainText(),
                 QStringLiteral("10.5; 1\n11.25; 2.5\n12; 0"));
        QVERIFY(fixture.isModified());
    }

    void aSavedSpectrumLoadsTheSameAndIsIndentedWhileTheClipboardIsOneLine()
    {
        MainWindowFixture fixture;
        fixture.window.createNewSpectrumWindow(spectrumFile(QStringLiteral("one")));
        const QString file = fixture.path(QStringLiteral("s.json"));
        Dialogs dialogs;
        dialogs.choose(file);
        fixture.trigger(QStringLiteral("actionSaveSpectrumAs"));
        QCOMPARE(fixture.window.lastfolder(), fixture.folder());
        QVERIFY(fileBytes(file).startsWith("{\n    \"CreatedDate\": "));
        dialogs.choose(file);
        fixture.trigger(QStringLiteral("actionLoadSpectrum"));
        QCOMPARE(fixture.spectra().size(), 2);
        QCOMPARE(fixture.spectra().value(1)->toJson(), fixture.spectra().value(0)->toJson());

        fixture.trigger(QStringLiteral("actionCopy"));
        QVERIFY(!clipboardText().contains(QLatin1Char('\n')));
        QCOMPARE(QJsonDocument::fromJson(clipboardText().toUtf8()).object(), fileObject(file));
    }

    void deletingWithoutAnActiveSubWindowDoesNothing()
    {
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionDelete"));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit"));
    }

    void savingASpectrumLeavesTheTitlesMarkAsItWas()
    {
        MainWindowFixture fixture;
        fixture.window.createNewSpectrumWindow(spectrumFile(QStringLiteral("one")));
        Dialogs dialogs;
        dialogs.choose(fixture.path(QStringLiteral("s.json")));
        fixture.trigger(QStringLiteral("actionSaveSpectrumAs"));
        QVERIFY(fixture.isModified());
        fixture.window.updateWindowTitle(false);
        dialogs.choose(fixture.path(QStringLiteral("t.json")));
        fixture.trigger(QStringLiteral("actionSaveSpectrumAs"));
        QVERIFY(!fixture.isModified());
        fixture.trigger(QStringLiteral("actionCopy"));
        QVERIFY(!fixture.isModified());
    }

    void savingAndCopyingWithoutASpectrumComplain()
    {
        MainWindowFixture fixture;
        Dialogs dialogs;
        dialogs.press().press();
        fixture.trigger(QStringLiteral("actionSaveSpectrumAs"));
        checkError(dialogs.boxes.value(0), QMessageBox::Warning,
                   QStringLiteral("No active spectrum window to save."), fixture);
        fixture.trigger(QStringLiteral("actionCopy"));
        checkError(dialogs.boxes.value(1), QMessageBox::Warning,
                   QStringLiteral("No spectrum window is selected."), fixture);
    }

    void whatIsNoSpectrumIsNotPasted_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("critical");
        const QString invalid = QStringLiteral("Clipboard does not contain a valid spectrum.");
        const QString format = QStringLiteral("Format error, cannot paste.");
        QTest::newRow("empty") << QString() << invalid << false;
        QTest::newRow("text") << QStringLiteral("hello") << invalid << false;
        QTest::newRow("array") << QStringLiteral("[1]") << invalid << false;
        QTest::newRow("no type") << QStringLiteral("{}") << format << true;
        QTest::newRow("species") << QStringLiteral("{\"Type\":\"Species v1\"}") << format << true;
        QTest::newRow("number") << QStringLiteral("{\"Type\":1}") << format << true;
    }
    void whatIsNoSpectrumIsNotPasted()
    {
        QFETCH(QString, text);
        QFETCH(QString, message);
        QFETCH(bool, critical);
        MainWindowFixture fixture;
        QGuiApplication::clipboard()->setText(text);
        Dialogs dialogs;
        dialogs.press();
        fixture.trigger(QStringLiteral("actionPaste"));
        checkError(dialogs.boxes.value(0), critical ? QMessageBox::Critical : QMessageBox::Warning,
                   message, fixture);
        QVERIFY(fixture.spectra().isEmpty());
        QVERIFY(!fixture.isModified());
    }

    void aSpectrumThatCannotBeWrittenIsSaidAndStoresNoFolder()
    {
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionNew"));
        QDir().mkpath(fixture.path(QStringLiteral("gone")));
        const QString folder = fixture.window.lastfolder();
        Dialogs dialogs;
        dialogs.handle([&](QWidget *widget) {
            auto *dialog = qobject_cast<QDialog *>(widget);
            widget->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
                ->setText(fixture.path(QStringLiteral("gone/s.json")));
            QObject::connect(dialog, &QDialog::finished, dialog,
                             [gone = fixture.path(QStringLiteral("gone"))] { QDir().rmdir(gone); });
            dialog->accept();
        });
        dialogs.press();
        fixture.trigger(QStringLiteral("actionSaveSpectrumAs"));
        checkError(dialogs.boxes.value(0), QMessageBox::Warning,
                   QStringLiteral("Could not open file for writing"), fixture);
        QCOMPARE(fixture.window.lastfolder(), folder);
    }

    void aTypedTitleThatHasNotLeftItsFieldIsCopied()
    {
        MainWindowFixture fixture;
        fixture.trigger(QStringLiteral("actionNew"));
        auto *field =
            MainWindowFixture::field(fixture.spectra().value(0), QStringLiteral("lineEditTitle"));
        field->setFocus();
        QTest::keyClicks(field, QStringLiteral("PES of water"));
        fixture.trigger(QStringLiteral("actionCopy"));
        const QJsonObject copied = QJsonDocument::fromJson(clipboardText().toUtf8()).object();
        QCOMPARE(copied[title].toString(), QStringLiteral("PES of water"));
        QVERIFY(field->hasFocus());
        QCOMPARE(field->textCursor().position(), 12);
    }

    // Later nobody could tell that the copy is older than what is shown.
    void pointsThatWereJustTypedAreCopiedAndExported()
    {
        MainWindowFixture fixture;
        fixture.window.createNewSpectrumWindow(spectrumFile(QStringLiteral("one")));
        const SpectrumWindow *spectrum = fixture.spectra().value(0);
        MainWindowFixture::typePoints(spectrum, QStringLiteral("9.5 3\n"));
        fixture.trigger(QStringLiteral("actionCopy"));
        const QJsonObject copied = QJsonDocument::fromJson(clipboardText().toUtf8()).object();
        QCOMPARE(copied[energies].toArray(), (QJsonArray{9.5, 10.5, 11.25, 12}));

        MainWindowFixture::typePoints(spectrum, QStringLiteral("9.25 4\n"));
        const QString file = fixture.path(QStringLiteral("s.json"));
        Dialogs dialogs;
        dialogs.choose(file);
        fixture.trigger(QStringLiteral("actionSaveSpectrumAs"));
        QCOMPARE(fileObject(file)[energies].toArray(), (QJsonArray{9.5, 9.25, 10.5, 11.25, 12}));
        QCOMPARE(MainWindowFixture::points(spectrum)->toPlainText(),
                 QStringLiteral("9.5 3\n9.25 4\n10.5; 1\n11.25; 2.5\n12; 0"));
    }

    // The entry's file has other points than the copy.
    void copyingPointsThatASaveLeftOutMarksTheDocument()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(QStringLiteral("a.json"));
        writeFile(file, speciesFileWith(QStringLiteral("water"), {QStringLiteral("one")}));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        MainWindowFixture::typePoints(fixture.spectra().value(0), QStringLiteral("9.5 3\n"));
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        QVERIFY(!fixture.isModified());
        fixture.trigger(QStringLiteral("actionCopy"));
        QVERIFY(fixture.isModified());
    }

    void theSpectrumThatIsShownIsCopiedWhileTheFloatingDockHasTheFocus()
    {
        MainWindowFixture fixture;
        fixture.window.createNewSpectrumWindow(spectrumFile(QStringLiteral("one")));
        fixture.find<QDockWidget>(QStringLiteral("speciesDock"))->setFloating(true);
        auto *name = fixture.field(QStringLiteral("lineEditSpecies"));
        name->activateWindow();
        name->setFocus();
        QTRY_VERIFY(name->hasFocus());
        fixture.trigger(QStringLiteral("actionCopy"));
        const QJsonObject copied = QJsonDocument::fromJson(clipboardText().toUtf8()).object();
        QCOMPARE(copied[title].toString(), QStringLiteral("one"));
    }

private:
    static void checkError(const SeenBox &box, QMessageBox::Icon icon, const QString &text,
                           const MainWindowFixture &fixture)
    {
        QCOMPARE(box.text, text);
        QCOMPARE(box.title, QStringLiteral("Error"));
        QCOMPARE(box.icon, icon);
        QCOMPARE(box.buttons, QMessageBox::Ok);
        QCOMPARE(box.parent, &fixture.window);
    }
};

QTEST_MAIN(TestMainWindowSpectra)
#include "tst_mainwindow_spectra.moc"

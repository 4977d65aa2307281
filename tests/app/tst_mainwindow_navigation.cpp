// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace
{

const QString next = QStringLiteral("actionNextFile");
const QString previous = QStringLiteral("actionPreviousFile");

void makeSpecies(const MainWindowFixture &fixture, const QStringList &names)
{
    for (const QString &name : names)
        writeFile(fixture.path(name), speciesFileWith(name));
}

} // namespace

// Stepping through the species files of a folder.
class TestMainWindowNavigation : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void steppingGoesByNumbersAndRoundTheEnds()
    {
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("A1.json"), QStringLiteral("A2.json"),
                              QStringLiteral("A10.json")});
        open(fixture, QStringLiteral("A2.json"));
        fixture.trigger(next);
        checkOpen(fixture, QStringLiteral("A10.json"));
        fixture.trigger(next);
        checkOpen(fixture, QStringLiteral("A1.json"));
        fixture.trigger(previous);
        checkOpen(fixture, QStringLiteral("A10.json"));
        QCOMPARE(fixture.window.lastfolder(), fixture.folder());
    }

    void theOnlySpeciesFileHasNoOther()
    {
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("a.json")});
        writeFile(fixture.path(QStringLiteral("b.json")), QByteArray("{}"));
        open(fixture, QStringLiteral("a.json"));
        Dialogs dialogs;
        dialogs.press().press();
        fixture.trigger(next);
        fixture.trigger(previous);
        checkBox(dialogs.boxes.value(0), QMessageBox::Information,
                 QStringLiteral("No Other Species Files"),
                 QStringLiteral("No other species JSON files found in the directory."), fixture);
        checkBox(dialogs.boxes.value(1), QMessageBox::Information,
                 QStringLiteral("No Other Species Files"),
                 QStringLiteral("No other species JSON files found in the directory."), fixture);
        checkOpen(fixture, QStringLiteral("a.json"));
    }

    // A link to a system file that never ends, whatever its size says.
    void aFileWithoutAnEndIsSteppedOver()
    {
        const QString endless = QStringLiteral("/proc/self/pagemap");
        if (!QFileInfo(endless).isReadable())
            QSKIP("there is no such file here");
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("a.json"), QStringLiteral("z.json")});
        QVERIFY(QFile::link(endless, fixture.path(QStringLiteral("m.json"))));
        open(fixture, QStringLiteral("a.json"));
        fixture.trigger(next);
        checkOpen(fixture, QStringLiteral("z.json"));
    }

    // "dl/.." is the parent of the link's target, not of the link.
    void aPathThroughALinkAndBackIsTheFileThatTheSystemFinds()
    {
        MainWindowFixture fixture;
        const auto at = [&](const char *name) { return fixture.path(QLatin1String(name)); };
        QVERIFY(QDir(fixture.folder()).mkpath(QStringLiteral("elsewhere/inside")));
        QVERIFY(QFile::link(at("elsewhere/inside"), at("dl")));
        writeFile(at("z.json"), speciesFileWith(QStringLiteral("near")));
        writeFile(at("elsewhere/y.json"), speciesFileWith(QStringLiteral("next")));
        writeFile(at("elsewhere/z.json"), speciesFileWith(QStringLiteral("far")));
        const auto shown = [&] {
            return fixture.field(QStringLiteral("lineEditSpecies"))->cleanedHtml();
        };
        QVERIFY(fixture.window.loadSpeciesFile(at("dl/../z.json")));
        QCOMPARE(shown(), QStringLiteral("far"));
        const QString folder = QFileInfo(at("elsewhere")).canonicalFilePath();
        QCOMPARE(fixture.window.lastfolder(), folder);
        fixture.trigger(next);
        QCOMPARE(shown(), QStringLiteral("next"));
        fixture.window.cleanUp();
        QVERIFY(dropFiles(&fixture.window, {at("dl/../z.json")}));
        QCOMPARE(shown(), QStringLiteral("far"));
        fixture.window.setModified();
        Dialogs dialogs;
        dialogs.choose(at("dl/../y.json"));
        fixture.window.saveSpeciesAs();
        QCOMPARE(dialogs.fileDialogFolders.value(0), folder);
        QVERIFY(fileBytes(at("elsewhere/y.json")).contains("far"));
        QVERIFY(!QFile::exists(at("y.json")));
        QVERIFY(fixture.window.navigateSpeciesFiles(at("dl/../z.json"), -1));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - y.json"));
        QCOMPARE(shown(), QStringLiteral("far"));
    }

    void filesThatAreNoSpeciesFilesAreSkippedSilently()
    {
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("a.json"), QStringLiteral("z.json")});
        writeFile(fixture.path(QStringLiteral("b.json")),
                  QByteArray("{\"Type\": \"Spectrum v1\"}"));
        writeFile(fixture.path(QStringLiteral("c.json")), QByteArray("{\"Type\": \"Spec"));
        writeFile(fixture.path(QStringLiteral("d.json")), QByteArray());
        writeFile(fixture.path(QStringLiteral("e.json")), QByteArray("\0\xff\x12", 3));
        QVERIFY(QFile::link(fixture.path(QStringLiteral("gone")),
                            fixture.path(QStringLiteral("f.json"))));
        open(fixture, QStringLiteral("a.json"));
        fixture.trigger(next);
        checkOpen(fixture, QStringLiteral("z.json"));
        fixture.trigger(previous);
        checkOpen(fixture, QStringLiteral("a.json"));
    }

    void withoutAFileSteppingSelectsAFolder_data()
    {
        QTest::addColumn<QString>("action");
        for (const char *action : {"actionNextFile", "actionPreviousFile", "actionSelectFolder"})
            QTest::newRow(action) << QString::fromLatin1(action);
    }
    void withoutAFileSteppingSelectsAFolder()
    {
        QFETCH(QString, action);
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("C10.json"), QStringLiteral("C9.json")});
        writeFile(fixture.path(QStringLiteral("C1.json")), QByteArray("{}"));
        fixture.window.setlastfolder(fixture.path(QStringLiteral("any")));
        Dialogs dialogs;
        dialogs.choose(fixture.folder());
        fixture.trigger(action);
        QCOMPARE(dialogs.fileDialogTitles, QStringList{QStringLiteral("Select Folder")});
        QCOMPARE(dialogs.fileDialogFolders, QStringList{fixture.folder()});
        checkOpen(fixture, QStringLiteral("C9.json"));
    }

    void cancellingTheFolderDialogDoesNothing()
    {
        MainWindowFixture fixture;
        Dialogs dialogs;
        dialogs.escape();
        fixture.trigger(QStringLiteral("actionSelectFolder"));
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit"));
    }

    void theFolderDialogStartsAtTheOpenFile()
    {
        MainWindowFixture fixture;
        QDir().mkpath(fixture.path(QStringLiteral("sub")));
        makeSpecies(fixture, {QStringLiteral("sub/a.json")});
        open(fixture, QStringLiteral("sub/a.json"));
        fixture.window.setlastfolder(QStringLiteral("/elsewhere/x"));
        Dialogs dialogs;
        dialogs.escape();
        fixture.trigger(QStringLiteral("actionSelectFolder"));
        QCOMPARE(dialogs.fileDialogFolders, QStringList{fixture.folder() + QStringLiteral("/sub")});
    }

    void steppingAsksToSaveOnlyOnceANeighbourIsFoundAndCancelStays()
    {
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("a.json")});
        open(fixture, QStringLiteral("a.json"));
        fixture.window.setModified();
        Dialogs dialogs;
        dialogs.press();
        fixture.trigger(next);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("No Other Species Files"));

        makeSpecies(fixture, {QStringLiteral("b.json"), QStringLiteral("c.json")});
        dialogs.press(QMessageBox::Cancel);
        fixture.trigger(next);
        QCOMPARE(dialogs.boxes.value(1).text, QStringLiteral("The species has been modified."));
        QCOMPARE(dialogs.boxes.size(), 2);
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - a.json *"));
    }

    void aFileThatWasMovedAwayCannotBeSteppedFrom()
    {
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("a.json"), QStringLiteral("b.json")});
        open(fixture, QStringLiteral("a.json"));
        QVERIFY(QFile::rename(fixture.path(QStringLiteral("a.json")),
                              fixture.path(QStringLiteral("A.json"))));
        Dialogs dialogs;
        dialogs.press().press();
        fixture.trigger(next);
        fixture.trigger(previous);
        for (int i : {0, 1})
            checkBox(dialogs.boxes.value(i), QMessageBox::Warning, QStringLiteral("Error"),
                     QStringLiteral("Current file is not in the directory."), fixture);
        checkOpen(fixture, QStringLiteral("a.json"), QStringLiteral("a.json"));
    }

    void emptyFoldersAndFoldersWithoutSpeciesAreSaid()
    {
        MainWindowFixture fixture;
        Dialogs dialogs;
        dialogs.press();
        QVERIFY(!fixture.window.navigateSpeciesFiles(fixture.folder(), 0));
        checkBox(dialogs.boxes.value(0), QMessageBox::Information, QStringLiteral("No JSON Files"),
                 QStringLiteral("No JSON files found in the directory."), fixture);
        writeFile(fixture.path(QStringLiteral("a.json")), QByteArray("{}"));
        dialogs.press();
        QVERIFY(!fixture.window.navigateSpeciesFiles(fixture.folder(), 0));
        checkBox(dialogs.boxes.value(1), QMessageBox::Information,
                 QStringLiteral("No Species Files"),
                 QStringLiteral("No species JSON files found in the directory."), fixture);
        dialogs.press();
        QVERIFY(!fixture.window.navigateSpeciesFiles(fixture.folder(), 1));
        checkBox(dialogs.boxes.value(2), QMessageBox::Information,
                 QStringLiteral("No Current File"),
                 QStringLiteral("No current file loaded to step from."), fixture);
    }

    void stepZeroFromAFileLoadsTheFirstOfItsFolder()
    {
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("a.json"), QStringLiteral("b.json")});
        QVERIFY(fixture.window.navigateSpeciesFiles(fixture.path(QStringLiteral("b.json")), 0));
        checkOpen(fixture, QStringLiteral("a.json"));
    }

    void filesThatAppearMeanwhileAreSteppedTo()
    {
        MainWindowFixture fixture;
        makeSpecies(fixture, {QStringLiteral("a.json"), QStringLiteral("c.json")});
        open(fixture, QStringLiteral("a.json"));
        makeSpecies(fixture, {QStringLiteral("b.json")});
        fixture.trigger(next);
        checkOpen(fixture, QStringLiteral("b.json"));
    }

private:
    static void open(MainWindowFixture &fixture, const QString &name)
    {
        QVERIFY(fixture.window.loadSpeciesFile(fixture.path(name)));
    }

    static void checkOpen(const MainWindowFixture &fixture, const QString &file,
                          const QString &name = {})
    {
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - ") + file);
        QCOMPARE(fixture.field(QStringLiteral("lineEditSpecies"))->toPlainText(),
                 name.isEmpty() ? file : name);
    }

    static void checkBox(const SeenBox &box, QMessageBox::Icon icon, const QString &title,
                         const QString &text, const MainWindowFixture &fixture)
    {
        QCOMPARE(box.icon, icon);
        QCOMPARE(box.title, title);
        QCOMPARE(box.text, text);
        QCOMPARE(box.buttons, QMessageBox::Ok);
        QCOMPARE(box.parent, &fixture.window);
    }
};

QTEST_MAIN(TestMainWindowNavigation)
#include "tst_mainwindow_navigation.moc"

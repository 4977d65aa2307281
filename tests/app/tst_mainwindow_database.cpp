// SPDX-License-Identifier: GPL-3.0-or-later
#include "database/createdatabase.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"

#include <QApplication>
#include <QDate>
#include <QDialogButtonBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>

namespace
{

const QString one = QStringLiteral("1.0");
const QString three = QStringLiteral("3.0");
const QString title = QStringLiteral("A title");

} // namespace

// Compiling species files from the window.
class TestMainWindowDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void twoFilesGiveTwoEntriesInListOrderAndOneListedTwiceStandsTwice()
    {
        MainWindowFixture fixture;
        const QStringList files = makeSpecies(fixture, 2);
        QVERIFY(fixture.window.compileSpeciesFiles({files[1], files[0], files[1]}, output(fixture),
                                                   one, three, title, false));
        const QJsonObject database = fileObject(output(fixture));
        QCOMPARE(database.keys().join(QLatin1Char(' ')),
                 QStringLiteral("Entry1 Entry2 Entry3 Header Type"));
        QCOMPARE(nameIn(database, "Entry1"), QStringLiteral("s1"));
        QCOMPARE(nameIn(database, "Entry2"), QStringLiteral("s0"));
        QCOMPARE(nameIn(database, "Entry3"), QStringLiteral("s1"));
        QCOMPARE(database[QLatin1String("Type")].toString(), QStringLiteral("Database v1"));
    }

    void aFileOfAnotherTypeStopsTheRunAndIsNamed_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("spectrum") << QByteArray("{\"Type\": \"Spectrum v1\"}");
        QTest::newRow("database") << QByteArray("{\"Type\": \"Database v1\"}");
        QTest::newRow("no type") << QByteArray("{\"Species\": {}}");
    }
    void aFileOfAnotherTypeStopsTheRunAndIsNamed()
    {
        QFETCH(QByteArray, bytes);
        checkInvalid(bytes);
    }

    void aFileThatIsNoJsonIsSaidTheSameWay() { checkInvalid("not JSON at all"); }

    void theDateIsTheDayOfTheCompilation()
    {
        MainWindowFixture fixture;
        const QDate before = QDate::currentDate();
        QVERIFY(fixture.window.compileSpeciesFiles({}, output(fixture), one, three, title, true));
        const QDate after = QDate::currentDate();
        const QJsonObject database = fileObject(output(fixture));
        const QJsonObject header = database[QLatin1String("Header")].toObject();
        const QDate date = QDate::fromString(header[QLatin1String("Date")].toString(), Qt::ISODate);
        QVERIFY(date == before || date == after);
        QCOMPARE(header[QLatin1String("Version")].toString(), one);
        QCOMPARE(header[QLatin1String("Database")].toString(), three);
        QCOMPARE(header[QLatin1String("Title")].toString(), title);
        QCOMPARE(database.size(), 2);
        QVERIFY(!fileBytes(output(fixture)).contains('\n'));
    }

    void anEntryKeepsEverythingButItsType()
    {
        MainWindowFixture fixture;
        const QStringList files = makeSpecies(fixture, 1);
        QVERIFY(
            fixture.window.compileSpeciesFiles(files, output(fixture), one, three, title, false));
        QJsonObject expected = fileObject(files[0]);
        expected.remove(QLatin1String("Type"));
        QVERIFY(expected.contains(QLatin1String("Dataset1")));
        QCOMPARE(fileObject(output(fixture))[QLatin1String("Entry1")].toObject(), expected);
    }

    void aFileThatCannotBeOpenedStopsTheRunAndIsNamed()
    {
        MainWindowFixture fixture;
        const QString gone = fixture.path(QStringLiteral("<b>gone</b>.json"));
        writeFile(output(fixture), QByteArray("old"));
        Dialogs dialogs;
        dialogs.press();
        QVERIFY(
            !fixture.window.compileSpeciesFiles({gone}, output(fixture), one, three, title, false));
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Warning);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Error"));
        QCOMPARE(dialogs.boxes.value(0).text, QStringLiteral("Could not open file: ") + gone);
        QCOMPARE(dialogs.boxes.value(0).format, Qt::PlainText);
        QCOMPARE(fileBytes(output(fixture)), QByteArray("old"));
    }

    void anOutputThatCannotBeWrittenShowsNoBoxOfItsOwn()
    {
        MainWindowFixture fixture;
        const Dialogs none;
        QVERIFY(!fixture.window.compileSpeciesFiles(makeSpecies(fixture, 1),
                                                    fixture.path(QStringLiteral("no/db.json")), one,
                                                    three, title, false));
    }

    void theMenuEntryRunsTheDialogAndSaysTheOutcome()
    {
        MainWindowFixture fixture;
        const QStringList files = makeSpecies(fixture, 1);
        Dialogs dialogs;
        dialogs.handle([](QWidget *dialog) {
            dialog->findChild<QPushButton *>(QStringLiteral("pushButton"))->click();
            dialog->findChild<QPushButton *>(QStringLiteral("pushButton_2"))->click();
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        });
        dialogs.choose(output(fixture)).choose(files[0]).press();
        fixture.trigger(QStringLiteral("actionCreateDatabase"));
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Information);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Success"));
        QCOMPARE(dialogs.boxes.value(0).text,
                 QStringLiteral("Species database created successfully."));
        QCOMPARE(nameIn(fileObject(output(fixture)), "Entry1"), QStringLiteral("s0"));

        // The dialog keeps its choices, so that OK alone compiles again: now from a file that is
        // gone.
        QVERIFY(QFile::remove(files[0]));
        dialogs.handle([](QWidget *dialog) {
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        });
        dialogs.press().press();
        fixture.trigger(QStringLiteral("actionCreateDatabase"));
        QCOMPARE(dialogs.boxes.value(1).text, QStringLiteral("Could not open file: ") + files[0]);
        QCOMPARE(dialogs.boxes.value(2).icon, QMessageBox::Warning);
        QCOMPARE(dialogs.boxes.value(2).title, QStringLiteral("Error"));
        QCOMPARE(dialogs.boxes.value(2).text, QStringLiteral("Failed to create species database."));
    }

    void cancellingTheDialogCompilesNothing()
    {
        MainWindowFixture fixture;
        Dialogs dialogs;
        dialogs.escape();
        fixture.trigger(QStringLiteral("actionCreateDatabase"));
        QVERIFY(dialogs.boxes.isEmpty());
    }

    void aLongCompilationShowsItsProgressAndCanBeCancelled()
    {
        MainWindowFixture fixture;
        // Enough for well over a second: the same large file many times.
        QJsonObject large = speciesFileWith(QStringLiteral("large"));
        large[QLatin1String("Filling")] = QString(2'000'000, QLatin1Char('x'));
        const QString file = fixture.path(QStringLiteral("<i>large</i>.json"));
        QDir().mkpath(QFileInfo(file).path());
        writeFile(file, large);
        const QStringList files(5000, file);
        writeFile(output(fixture), QByteArray("old"));

        Dialogs dialogs;
        QString label;
        dialogs.handle([&](QWidget *widget) {
            auto *progress = qobject_cast<QProgressDialog *>(widget);
            QVERIFY(progress);
            QVERIFY(progress->isModal());
            label = progress->labelText();
            const auto buttons = progress->findChildren<QPushButton *>();
            QCOMPARE(buttons.size(), 1);
            QVERIFY(QGuiApplication::overrideCursor());
            QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::BusyCursor);
            buttons.first()->click();
        });
        QVERIFY(
            !fixture.window.compileSpeciesFiles(files, output(fixture), one, three, title, true));
        QVERIFY2(label.startsWith(QLatin1String("File ")), qPrintable(label));
        QVERIFY2(label.contains(QLatin1String(" of 5000: i>.json"))
                     || label.contains(QFileInfo(file).fileName()),
                 qPrintable(label));
        QVERIFY(dialogs.boxes.isEmpty());
        QCOMPARE(fileBytes(output(fixture)), QByteArray("old"));
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
    }

private:
    static QString output(const MainWindowFixture &fixture)
    {
        return fixture.path(QStringLiteral("db.json"));
    }

    static QStringList makeSpecies(const MainWindowFixture &fixture, int count)
    {
        QStringList files;
        for (int i = 0; i < count; ++i) {
            const QString name = QStringLiteral("s%1").arg(i);
            files.append(fixture.path(name + QStringLiteral(".json")));
            writeFile(files.last(), speciesFileWith(name, {QStringLiteral("one")}));
        }
        return files;
    }

    static QString nameIn(const QJsonObject &database, const char *entry)
    {
        return database[QLatin1String(entry)][QLatin1String("Species")][QLatin1String("Name")]
            .toString();
    }

    static void checkInvalid(const QByteArray &bytes)
    {
        MainWindowFixture fixture;
        QStringList files = makeSpecies(fixture, 2);
        writeFile(files[1], bytes);
        Dialogs dialogs;
        dialogs.press();
        QVERIFY(
            !fixture.window.compileSpeciesFiles(files, output(fixture), one, three, title, false));
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Critical);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Error"));
        QCOMPARE(dialogs.boxes.value(0).text,
                 QStringLiteral("Invalid species type in file: ") + files[1]);
        QVERIFY(!QFile::exists(output(fixture)));
    }
};

QTEST_MAIN(TestMainWindowDatabase)
#include "tst_mainwindow_database.moc"

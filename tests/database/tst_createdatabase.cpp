// SPDX-License-Identifier: GPL-3.0-or-later
#include "database/createdatabase.h"
#include "settings/lastfolder.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/warnings.h"

#include <QAccessible>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// The dialog for a database: its files, its output and its header.
class TestCreateDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        failOnWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
        for (const char *name : {"a.json", "b.json"})
            writeFile(path(name), QByteArray("{}"));
        setLastFolder(path("x"));
    }

    void startsWithItsTextsAndDefaults()
    {
        CreateDatabase dialog;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Create database"));
        QCOMPARE(dialog.size(), QSize(724, 495));
        QCOMPARE(dialog.version(), QStringLiteral("1.0"));
        QCOMPARE(dialog.databaseName(), QStringLiteral("3.0"));
        QVERIFY(!dialog.title().isEmpty());
        QVERIFY(!dialog.iscompact());
        QVERIFY(dialog.myfiles().isEmpty());
        QCOMPARE(dialog.createfilename(), QString());
        const auto text = [&](const char *name) {
            return dialog.findChild<QLabel *>(QLatin1String(name))->text();
        };
        QCOMPARE(text("label"), QStringLiteral("Database version:"));
        QCOMPARE(text("label_2"), QStringLiteral("Data release:"));
        QCOMPARE(text("label_3"), QStringLiteral("Title:"));
        QCOMPARE(text("label_4"), QStringLiteral("TextLabel"));
        QCOMPARE(text("label_5"), QString());
        QCOMPARE(button(dialog, "pushButton")->text(), QStringLiteral("Set database"));
        QCOMPARE(button(dialog, "pushButton_2")->text(), QStringLiteral("Add species"));
        QCOMPARE(button(dialog, "pushButton_3")->text(), QStringLiteral("Clear files"));
        QCOMPARE(dialog.findChild<QCheckBox *>()->text(), QStringLiteral("Compact"));
    }

    void okWithNothingChosenAsksForSpeciesOnly()
    {
        CreateDatabase dialog;
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        dialog.show();
        Dialogs dialogs;
        dialogs.press();
        ok(dialog);
        QCOMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Warning);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Error"));
        QCOMPARE(dialogs.boxes.value(0).text,
                 QStringLiteral("At least one species has to be added to the database."));
        QVERIFY(dialog.isVisible());
        QCOMPARE(accepted.size(), 0);
    }

    void cancellingTheSaveDialogForgetsTheOutputAndOkAsksForIt()
    {
        CreateDatabase dialog;
        dialog.show();
        Dialogs dialogs;
        dialogs.choose(path("db.json"));
        button(dialog, "pushButton")->click();
        QCOMPARE(dialog.createfilename(), path("db.json"));
        QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("label_5"))->text(),
                 QStringLiteral("db.json"));
        QCOMPARE(dialogs.fileDialogTitles,
                 QStringList{QStringLiteral("Database will be saved to...")});
        QCOMPARE(dialogs.fileDialogFolders, QStringList{m_folder->path()});
        dialogs.escape();
        button(dialog, "pushButton")->click();
        QCOMPARE(dialog.createfilename(), QString());
        QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("label_5"))->text(), QString());
        QCOMPARE(lastFolder(), m_folder->path());

        add(dialog, dialogs, "a.json");
        dialogs.press();
        ok(dialog);
        QCOMPARE(dialogs.boxes.value(0).text,
                 QStringLiteral("Where shall I save the database to? (Click on Set database)"));
        QVERIFY(dialog.isVisible());
    }

    void aFileAddedTwiceIsListedTwice()
    {
        CreateDatabase dialog;
        dialog.show();
        Dialogs dialogs;
        add(dialog, dialogs, "a.json");
        add(dialog, dialogs, "a.json");
        QCOMPARE(dialog.myfiles(), (QList<QString>{path("a.json"), path("a.json")}));
        QCOMPARE(listed(dialog), (QStringList{QStringLiteral("a.json"), QStringLiteral("a.json")}));
    }

    void theListShowsNamesWhileTheFilesAreFullPathsInTheSameOrder()
    {
        CreateDatabase dialog;
        dialog.show();
        Dialogs dialogs;
        add(dialog, dialogs, "b.json");
        add(dialog, dialogs, "a.json");
        QCOMPARE(listed(dialog), (QStringList{QStringLiteral("b.json"), QStringLiteral("a.json")}));
        QCOMPARE(dialog.myfiles(), (QList<QString>{path("b.json"), path("a.json")}));
        QCOMPARE(dialogs.fileDialogTitles.value(0),
                 QStringLiteral("Select JSON Files to be added to the database"));
    }

    void clearEmptiesListAndOutputAndKeepsTheTexts()
    {
        CreateDatabase dialog;
        dialog.show();
        Dialogs dialogs;
        add(dialog, dialogs, "a.json");
        dialogs.choose(path("db.json"));
        button(dialog, "pushButton")->click();
        dialog.findChild<QLineEdit *>(QStringLiteral("lineEdit"))->setText(QStringLiteral("2.5"));
        dialog.findChild<QCheckBox *>()->setChecked(true);
        button(dialog, "pushButton_3")->click();
        QVERIFY(dialog.myfiles().isEmpty());
        QVERIFY(listed(dialog).isEmpty());
        QCOMPARE(dialog.createfilename(), QString());
        QCOMPARE(dialog.version(), QStringLiteral("2.5"));
        QVERIFY(dialog.iscompact());
    }

    void okWithFilesAndOutputClosesAndKeepsWhatWasChosen()
    {
        CreateDatabase dialog;
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        dialog.show();
        Dialogs dialogs;
        add(dialog, dialogs, "a.json");
        dialogs.choose(path("db.json"));
        button(dialog, "pushButton")->click();
        ok(dialog);
        QCOMPARE(accepted.size(), 1);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.myfiles().size(), 1);
        dialog.show();
        dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel)->click();
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.myfiles().size(), 1);
        QCOMPARE(dialog.createfilename(), path("db.json"));
    }

    void everyControlHasANameAndIsReachedByTab()
    {
        CreateDatabase dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QWidget *first = QApplication::focusWidget();
        QVERIFY(first);
        QStringList reached;
        do {
            QWidget *focused = QApplication::focusWidget();
            reached.append(focused->objectName());
            QVERIFY2(
                !QAccessible::queryAccessibleInterface(focused)->text(QAccessible::Name).isEmpty(),
                qPrintable(focused->objectName()));
            QTest::keyClick(focused, Qt::Key_Tab);
        } while (QApplication::focusWidget() != first && reached.size() < 50);
        for (const char *name : {"lineEdit", "lineEdit_2", "lineEdit_3", "pushButton",
                                 "pushButton_2", "pushButton_3", "checkBox", "listWidget"})
            QVERIFY2(reached.contains(QLatin1String(name)), name);
        QCOMPARE(reached.size(), 10);
    }

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    static QPushButton *button(const CreateDatabase &dialog, const char *name)
    {
        return dialog.findChild<QPushButton *>(QLatin1String(name));
    }

    static void ok(const CreateDatabase &dialog)
    {
        dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    }

    void add(const CreateDatabase &dialog, Dialogs &dialogs, const char *name) const
    {
        dialogs.choose(path(name));
        button(dialog, "pushButton_2")->click();
    }

    static QStringList listed(const CreateDatabase &dialog)
    {
        const auto *list = dialog.findChild<QListWidget *>();
        QStringList names;
        for (int row = 0; row < list->count(); ++row)
            names.append(list->item(row)->text());
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestCreateDatabase)
#include "tst_createdatabase.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/speciesfile.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QAccessible>
#include <QDockWidget>
#include <QFile>
#include <QFormLayout>
#include <QIcon>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

namespace
{

QStringList actionNames(const QWidget *widget)
{
    QStringList names;
    for (const QAction *action : widget->actions())
        names.append(action->isSeparator() ? QStringLiteral("-") : action->objectName());
    return names;
}

const QStringList speciesFields{
    QStringLiteral("lineEditSpecies"),    QStringLiteral("textEditAliases"),
    QStringLiteral("lineEditMass"),       QStringLiteral("lineEditSumFormula"),
    QStringLiteral("lineEditInChI"),      QStringLiteral("lineEditCAS"),
    QStringLiteral("lineEditCID"),        QStringLiteral("lineEditAIE"),
    QStringLiteral("lineEditAIEComment"), QStringLiteral("lineEditVIE"),
    QStringLiteral("lineEditVIEComment")};

} // namespace

// The window after construction: start state, actions, menus, form.
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void startIsEmptyWithThePlainTitleAndReadsNoSettings()
    {
        const QSettings settings(QStringLiteral("Tarnwick Institute"), QStringLiteral("ZORAVEL"));
        QSettings(settings.organizationName(), settings.applicationName()).clear();
        QFile::remove(settings.fileName());
        MainWindow window;
        QCOMPARE(window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit"));
        QVERIFY(window.findChild<QMdiArea *>()->subWindowList().isEmpty());
        for (const QString &name : speciesFields)
            QCOMPARE(window.findChild<CleanTextEdit *>(name)->cleanedHtml(), QString());
        QVERIFY(window.findChild<QLabel *>(QStringLiteral("imageLabel"))->pixmap().isNull());
        QVERIFY(!QFile::exists(settings.fileName()));
    }

    void slotsStandInTheOrderThatTheirIndexPromises()
    {
        const QMetaObject &meta = MainWindow::staticMetaObject;
        QStringList names;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
            names.append(QString::fromLatin1(meta.method(i).methodSignature()));
        }
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("setModified() onButtonDownloadClicked() "
                                "onImageDownloaded(QNetworkReply*) applySubscript() "
                                "applySuperscript() "
                                "applyTextFormatting(QTextCharFormat::VerticalAlignment) "
                                "createNewSpectrumWindow() cleanUp() deleteCurrentSpectrum() "
                                "createSpeciesDatabase() selectSpeciesFolder() "
                                "loadPreviousSpeciesFile() loadNextSpeciesFile()"));
    }

    void everyActionHasItsTextShortcutIconAndToolTip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shortcut");
        QTest::addColumn<bool>("hasIcon");
        QTest::addColumn<bool>("noRole");
        const auto row = [](const char *name, const char *text, const char *shortcut, bool hasIcon,
                            bool noRole) {
            QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(shortcut)
                                << hasIcon << noRole;
        };
        row("actionLoadSpecies", "&Open", "Ctrl+O", true, false);
        row("actionSaveSpecies", "&Save", "Ctrl+S", true, false);
        row("actionLoadSpectrum", "&Open", "Ctrl+Shift+O", false, false);
        row("actionCopy", "&Copy", "Ctrl+Shift+C", true, false);
        row("actionPaste", "&Paste", "Ctrl+Shift+V", true, false);
        row("actionNew", "&New", "Ctrl+Shift+N", true, false);
        row("actionDelete", "&Delete", "Ctrl+Shift+D", true, false);
        row("actionClean", "&Clean", "Ctrl+D", true, false);
        row("actionExit", "E&xit", "", true, false);
        row("actionSaveSpeciesAs", "Save &as", "", true, false);
        row("actionSaveSpectrumAs", "Save &as", "", false, false);
        row("actionSuperscript", "sup", "Ctrl+P", true, true);
        row("actionSubscript", "sub", "Ctrl+B", true, true);
        row("actionSelectFolder", "Select Folder", "", true, true);
        row("actionPreviousFile", "Previous File", "", true, true);
        row("actionNextFile", "Next File", "", true, true);
        row("actionCreateDatabase", "Create &database...", "", false, false);
    }
    void everyActionHasItsTextShortcutIconAndToolTip()
    {
        QFETCH(QString, text);
        QFETCH(QString, shortcut);
        QFETCH(bool, hasIcon);
        QFETCH(bool, noRole);
        const MainWindow window;
        const auto *action =
            window.findChild<QAction *>(QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(action);
        QCOMPARE(action->parent(), &window);
        QCOMPARE(action->text(), text);
        QCOMPARE(action->shortcut(), QKeySequence(shortcut));
        QCOMPARE(action->icon().isNull(), !hasIcon);
        if (hasIcon)
            QVERIFY(!action->icon().pixmap(16, 16).isNull());
        QCOMPARE(action->menuRole() == QAction::NoRole, noRole);
    }

    void toolTipsOfTheFormattingActionsNameTheirKeys()
    {
        const MainWindow window;
        QCOMPARE(window.findChild<QAction *>(QStringLiteral("actionSuperscript"))->toolTip(),
                 QStringLiteral("Ctrl + P"));
        QCOMPARE(window.findChild<QAction *>(QStringLiteral("actionSubscript"))->toolTip(),
                 QStringLiteral("Ctrl + B"));
    }

    void ctrlBIsSubscriptCtrlPSuperscriptCtrlDCleanAndCtrlShiftDDelete()
    {
        const MainWindow window;
        const auto shortcutOf = [&](const QString &name) {
            return window.findChild<QAction *>(name)->shortcut();
        };
        QCOMPARE(shortcutOf(QStringLiteral("actionSubscript")), QKeySequence(Qt::CTRL | Qt::Key_B));
        QCOMPARE(shortcutOf(QStringLiteral("actionSuperscript")),
                 QKeySequence(Qt::CTRL | Qt::Key_P));
        QCOMPARE(shortcutOf(QStringLiteral("actionClean")), QKeySequence(Qt::CTRL | Qt::Key_D));
        QCOMPARE(shortcutOf(QStringLiteral("actionDelete")),
                 QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D));
    }

    void menusAndToolBarHoldTheirActionsInOrder()
    {
        const MainWindow window;
        const auto *bar = window.findChild<QMenuBar *>(QStringLiteral("menubar"));
        QCOMPARE(bar->actions().size(), 2);
        QCOMPARE(bar->actions().at(0)->text(), QStringLiteral("&Species"));
        QCOMPARE(bar->actions().at(1)->text(), QStringLiteral("S&pectrum"));
        QCOMPARE(actionNames(window.findChild<QMenu *>(QStringLiteral("menuSpecies")))
                     .join(QLatin1Char(' ')),
                 QStringLiteral("actionLoadSpecies actionSaveSpecies actionSaveSpeciesAs - "
                                "actionClean actionCreateDatabase actionExit"));
        QCOMPARE(actionNames(window.findChild<QMenu *>(QStringLiteral("menuSpectrum")))
                     .join(QLatin1Char(' ')),
                 QStringLiteral("actionNew actionDelete - actionLoadSpectrum actionSaveSpectrumAs "
                                "- actionCopy actionPaste"));
        const auto *toolBar = window.findChild<QToolBar *>(QStringLiteral("toolBar"));
        QCOMPARE(actionNames(toolBar).join(QLatin1Char(' ')),
                 QStringLiteral("actionSuperscript actionSubscript - actionSelectFolder "
                                "actionPreviousFile actionNextFile"));
        QCOMPARE(window.toolBarArea(toolBar), Qt::TopToolBarArea);
        QCOMPARE(toolBar->windowTitle(), QStringLiteral("toolBar"));
        QVERIFY(window.findChild<QStatusBar *>(QStringLiteral("statusbar")));
    }

    void windowHasItsSizeNameAndCentralArea()
    {
        MainWindow window;
        QCOMPARE(window.objectName(), QStringLiteral("MainWindow"));
        QCOMPARE(window.size(), QSize(1272, 873));
        QCOMPARE(window.iconSize(), QSize(16, 16));
        QVERIFY(window.acceptDrops());
        auto *area = qobject_cast<QMdiArea *>(window.centralWidget());
        QVERIFY(area);
        QCOMPARE(area->objectName(), QStringLiteral("mdiArea"));
        QCOMPARE(area->viewMode(), QMdiArea::TabbedView);
        QCOMPARE(area->horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
        QCOMPARE(area->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    }

    void dockCannotBeClosedButFloatedAndMoved()
    {
        const MainWindowFixture fixture;
        const auto *dock = fixture.find<QDockWidget>(QStringLiteral("speciesDock"));
        QCOMPARE(dock->features(),
                 QDockWidget::DockWidgetFloatable | QDockWidget::DockWidgetMovable);
        QCOMPARE(dock->windowTitle(), QStringLiteral("Species profile"));
        QCOMPARE(fixture.window.dockWidgetArea(const_cast<QDockWidget *>(dock)),
                 Qt::LeftDockWidgetArea);
        QCOMPARE(dock->styleSheet(),
                 QStringLiteral("QDockWidget::title { background-color: #a0a0a0; padding: 4px; }\n"
                                "QWidget { background-color: #c9c9c9; }\n"));
        const auto *closeButton =
            dock->findChild<QWidget *>(QStringLiteral("qt_dockwidget_closebutton"));
        QVERIFY(closeButton);
        QVERIFY(!closeButton->isVisible());
    }

    void formHasItsLabelsFieldsAndTabOrder()
    {
        const MainWindow window;
        const auto *form = window.findChild<QFormLayout *>(QStringLiteral("formLayout"));
        const QStringList labels{QStringLiteral("Name"),        QStringLiteral("Aliases"),
                                 QStringLiteral("Mass / amu"),  QStringLiteral("Sum formula"),
                                 QStringLiteral("InChI"),       QStringLiteral("CAS number"),
                                 QStringLiteral("PubChem CID"), QString(),
                                 QStringLiteral("AIE"),         QStringLiteral("VIE")};
        QCOMPARE(form->rowCount(), labels.size());
        for (int row = 0; row < labels.size(); ++row) {
            const QLayoutItem *item = form->itemAt(row, QFormLayout::LabelRole);
            const auto *label = item ? qobject_cast<QLabel *>(item->widget()) : nullptr;
            QCOMPARE(label ? label->text() : QString(), labels[row]);
        }

        QStringList expected = speciesFields;
        expected.insert(6, QStringLiteral("buttonDownload"));
        QStringList order;
        const QWidget *first = window.findChild<QWidget *>(expected.first());
        const QWidget *widget = first;
        do {
            if (expected.contains(widget->objectName()))
                order.append(widget->objectName());
            widget = widget->nextInFocusChain();
        } while (widget != first);
        QCOMPARE(order, expected);
    }

    void imageLabelKeepsItsHeightAndStretchesInWidth()
    {
        const MainWindow window;
        const auto *label = window.findChild<QLabel *>(QStringLiteral("imageLabel"));
        QCOMPARE(label->minimumSize(), QSize(200, 150));
        QCOMPARE(label->maximumSize(), QSize(20000, 150));
        QCOMPARE(label->alignment(), Qt::AlignCenter);
        QVERIFY(!label->hasMouseTracking());
    }

    void noFormEditorTakesADroppedFile()
    {
        const MainWindow window;
        for (const QString &name : speciesFields) {
            const auto *editor = window.findChild<CleanTextEdit *>(name);
            QVERIFY2(!editor->acceptDrops(), qPrintable(name));
            QVERIFY2(!editor->viewport()->acceptDrops(), qPrintable(name));
        }
    }

    void everyInputHasANameForScreenReaders()
    {
        const MainWindow window;
        QStringList names;
        for (const QString &field : speciesFields) {
            QAccessibleInterface *interface =
                QAccessible::queryAccessibleInterface(window.findChild<CleanTextEdit *>(field));
            const QString name = interface->text(QAccessible::Name);
            QVERIFY2(!name.isEmpty(), qPrintable(field));
            QVERIFY2(!names.contains(name), qPrintable(name));
            names.append(name);
        }
    }

    void resourcesAreRegisteredInAProgramThatLinksTheWindow()
    {
        QVERIFY(!QIcon(QStringLiteral(":/icons/zoravel.icns")).availableSizes().isEmpty());
        for (const char *name :
             {"document-open", "document-save", "document-save-as", "document-new", "edit-copy",
              "edit-paste", "edit-delete", "edit-clear-history", "application-exit",
              "format-text-superscript", "format-text-subscript", "folder-new", "go-previous",
              "go-next"}) {
            const QString path =
                QStringLiteral(":/icons/resources/%1.svg").arg(QLatin1String(name));
            QVERIFY2(QFile::exists(path), name);
        }
    }

    void datasetKeysAreRecognisedByTheirPattern()
    {
        QCOMPARE(MainWindow::reDataset.pattern(), QStringLiteral("^Dataset\\d+$"));
        QCOMPARE(MainWindow::reDataset.patternOptions(), QRegularExpression::NoPatternOption);
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "screenshots/scene.h"

#include "app/interfacescale.h"
#include "widgets/contrast.h"

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTextStream>
#include <QToolTip>

#include <map>

// Takes the pictures of the documentation: opens the editor's window as the program does, uses it
// as the pages tell, and grabs what is to be seen.
//
//   screenshots EXAMPLES OUTPUT [NAME]...   all pictures, or those of these names, into a folder

namespace
{

void takeWindow(Scene &scene)
{
    scene.open(QStringLiteral("benzene.json"));
    scene.save(scene.window.grab());
}

void takeMenus(Scene &scene)
{
    QList<QPixmap> menus;
    for (const char *name : {"menuSpecies", "menuSpectrum"}) {
        auto *menu = scene.find<QMenu>(name);
        menu->ensurePolished();
        menu->adjustSize();
        menus.append(menu->grab());
    }
    scene.save(beside(menus));
}

void takeToolBar(Scene &scene)
{
    scene.open(QStringLiteral("benzene.json"));
    scene.save(scene.cut({0, 0, 420, 48}));
}

void takeSubscript(Scene &scene)
{
    auto *formula = scene.find<QTextEdit>("lineEditSumFormula");
    const auto row = [&] { return scene.cutAround({scene.find("label_5"), formula}); };
    formula->setFocus();
    QTest::keyClicks(formula, QStringLiteral("C6H6"));
    QList<QPixmap> rows{row()};
    QTest::keyClick(formula, Qt::Key_Home);
    QTest::keyClick(formula, Qt::Key_Right);
    QTest::keyClick(formula, Qt::Key_Right, Qt::ShiftModifier);
    rows.append(row());
    scene.trigger("actionSubscript");
    QTest::keyClick(formula, Qt::Key_End);
    QTest::keyClick(formula, Qt::Key_Left, Qt::ShiftModifier);
    scene.trigger("actionSubscript");
    QTest::keyClick(formula, Qt::Key_End);
    rows.append(row());
    scene.save(below(rows));
}

void takeImageMenu(Scene &scene)
{
    scene.open(QStringLiteral("benzene.json"));
    auto *label = scene.find("imageLabel");
    const QPoint place(40, label->height() / 2);
    QPixmap picture;
    scene.whenMenuIsOpen([&](QMenu *menu) {
        picture = scene.cutAround({scene.find("label_6"), scene.find("lineEditCAS"), label});
        const QPoint corner = scene.placeInCut(label->mapTo(&scene.window, place));
        paintOver(picture, corner, menu->grab());
    });
    emit label->customContextMenuRequested(place);
    scene.save(picture);
}

void takeTypes(Scene &scene)
{
    scene.open(QStringLiteral("benzene.json"));
    const auto form = [&] {
        return scene.cutAround({scene.inSpectrum("label_2"), scene.inSpectrum("lineEditTitle"),
                                scene.inSpectrum("textEditComments")});
    };
    QList<QPixmap> forms{form()};
    scene.showSpectrum(2);
    forms.append(form());
    scene.save(beside(forms));
}

void takePastedPoints(Scene &scene)
{
    // As a spreadsheet of a country with decimal commas puts two columns on the clipboard.
    scene.newSpectrumLike(QStringLiteral("water.json"), 0, [](double energy, double intensity) {
        return QStringLiteral("%1\t%2").arg(energy).arg(intensity).replace(QLatin1Char('.'),
                                                                           QLatin1Char(','));
    });
    QList<QPixmap> pictures{scene.cutPointsAndChart()};
    scene.click("buttonCommaToDot");
    scene.readPoints();
    pictures.append(scene.cutPointsAndChart());
    scene.save(below(pictures));
}

void takeMarks(Scene &scene)
{
    scene.newSpectrum(
        QStringLiteral("hν / eV\tI\n9.23\t12.5\n9,24\t1000\n9.25\t480\n9.26\n9.27\t95"));
    scene.readPoints();
    QWidget *count = scene.inSpectrum("label_14");
    QPixmap picture = scene.cutPointsAndChart();
    QToolTip::showText(count->mapToGlobal(QPoint()), count->toolTip(), count);
    paintOver(picture, {20, 130}, scene.toolTip());
    scene.save(picture);
}

void takeNormalised(Scene &scene)
{
    scene.newSpectrumLike(QStringLiteral("nitric-oxide.json"), 0,
                          [](double energy, double intensity) {
                              return QStringLiteral("%1\t%2").arg(energy).arg(intensity * 3.7e-6);
                          });
    scene.readPoints();
    QList<QPixmap> pictures{scene.cutPointsAndChart()};
    scene.click("buttonNormalize");
    pictures.append(scene.cutPointsAndChart());
    scene.save(below(pictures));
}

void takeResampled(Scene &scene)
{
    scene.open(QStringLiteral("acetone.json"));
    QList<QPixmap> pictures{scene.cutPointsAndChart()};
    scene.click("buttonSparse");
    pictures.append(scene.cutPointsAndChart());
    scene.save(below(pictures));
}

void takeLines(Scene &scene)
{
    scene.open(QStringLiteral("furan.json"));
    scene.showSpectrum(1);
    scene.save(scene.cutPointsAndChart());
}

void takeReadOut(Scene &scene)
{
    scene.open(QStringLiteral("benzene.json"));
    scene.moveOverChart({9.32, 340});
    scene.save(scene.cutAround({scene.inSpectrum("chartSpectrum")}));
}

void takeSavePrompt(Scene &scene)
{
    scene.open(QStringLiteral("benzene.json"));
    scene.trigger("actionNew");
    scene.whenDialogIsOpen([&](QWidget *box) {
        scene.save(box->grab());
        static_cast<QMessageBox *>(box)->button(QMessageBox::Discard)->click();
    });
    scene.trigger("actionClean");
}

void takeDatabase(Scene &scene)
{
    scene.whenDialogIsOpen([&](QWidget *dialog) {
        scene.chooseFiles(dialog, "pushButton", {QStringLiteral("collection.json")});
        scene.chooseFiles(dialog, "pushButton_2",
                          {QStringLiteral("acetone.json"), QStringLiteral("ammonia.json"),
                           QStringLiteral("benzene.json")});
        dialog->resize(dialog->width(), 300);
        scene.save(dialog->grab());
        dialog->close();
    });
    scene.trigger("actionCreateDatabase");
}

const std::map<QString, void (*)(Scene &)> scenes{
    {QStringLiteral("window"), takeWindow},
    {QStringLiteral("menus"), takeMenus},
    {QStringLiteral("tool-bar"), takeToolBar},
    {QStringLiteral("subscript"), takeSubscript},
    {QStringLiteral("structure-image"), takeImageMenu},
    {QStringLiteral("types"), takeTypes},
    {QStringLiteral("decimal-commas"), takePastedPoints},
    {QStringLiteral("marked-lines"), takeMarks},
    {QStringLiteral("normalized"), takeNormalised},
    {QStringLiteral("resampled"), takeResampled},
    {QStringLiteral("line-spectrum"), takeLines},
    {QStringLiteral("read-out"), takeReadOut},
    {QStringLiteral("save-prompt"), takeSavePrompt},
    {QStringLiteral("create-database"), takeDatabase},
};

} // namespace

int main(int argc, char *argv[])
{
    // As the program starts.
    qputenv("QT_SCALE_FACTOR", QByteArray::number(interfaceScale));
    const InterfaceShrink shrink = prepareScreens(argc, argv);
    const QApplication application(argc, argv);
    shrinkInterface(shrink);
    QApplication::setPalette(readableSelection(QApplication::palette()));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/zoravel.icns")));
    QApplication::setCursorFlashTime(0);

    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3)
        return 2;
    const QStringList wanted = arguments.sliced(3);
    QTextStream out(stdout);
    for (const auto &[name, take] : scenes) {
        if (!wanted.isEmpty() && !wanted.contains(name))
            continue;
        Scene scene(arguments[1], arguments[2] + QLatin1Char('/') + name + QLatin1String(".png"));
        take(scene);
        if (!scene.isSaved()) {
            QTextStream(stderr) << name << ": no picture was saved" << Qt::endl;
            return 1;
        }
        out << name << Qt::endl;
    }
    return 0;
}
